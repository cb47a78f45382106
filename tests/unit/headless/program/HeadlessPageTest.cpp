// docs/headless.md says what the program does.

#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "headless/scenario/Statement.h"
#include "headless/xplm/FunctionTable.h"
#include "support/Text.h"

using headless::describe;
using headless::SdkFunction;
using headless::sdkFunctions;

namespace {

// A table for each header of the SDK.
std::string tables() {
    std::ostringstream text;
    std::string_view header;
    for (const SdkFunction& function : sdkFunctions()) {
        if (function.header != header) {
            header = function.header;
            text << "\n### " << header << "\n\n| function | here | what differs |\n|---|---|---|\n";
        }
        text << "| `" << function.name << "` | " << describe(function.kind) << " | "
             << function.difference << " |\n";
    }
    return text.str();
}

// A bar would end the column.
std::string inColumn(std::string text) {
    for (std::size_t at = 0; (at = text.find('|', at)) != std::string::npos; at += 2) {
        text.insert(at, "\\");
    }
    return text;
}

std::string tableOfStatements() {
    std::string text = "| statement | what it does |\n|---|---|\n";
    for (const headless::StatementKind& kind : headless::statementKinds()) {
        text += "| `" + inColumn(kind.usage) + "` | " + kind.description + " |\n";
    }
    return text;
}

} // namespace

TEST(HeadlessPageTest, HasTheTableOfStatements) {
    EXPECT_NE(contentOf(HEADLESS_PAGE).find("\n" + tableOfStatements() + "\n"), std::string::npos)
        << tableOfStatements();
}

TEST(HeadlessPageTest, HasTheTableOfFunctions) {
    const std::string text = contentOf(HEADLESS_PAGE);
    const std::size_t begin = text.find("\n### XPLMCamera");
    ASSERT_NE(begin, std::string::npos);
    EXPECT_EQ(text.substr(begin), tables());
}
