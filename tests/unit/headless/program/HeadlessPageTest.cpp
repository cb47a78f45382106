// docs/headless.md says what the program does.

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "headless/scenario/Statement.h"
#include "headless/xplm/FunctionTable.h"
#include "support/Text.h"

using headless::describe;
using headless::FunctionKind;
using headless::SdkFunction;
using headless::sdkFunctions;

namespace {

using Functions = std::vector<SdkFunction>;

// In the order of the SDK's headers.
std::vector<Functions> functionsByHeader() {
    std::vector<Functions> headers;
    for (const SdkFunction& function : sdkFunctions()) {
        if (headers.empty() || headers.back().front().header != function.header) {
            headers.emplace_back();
        }
        headers.back().push_back(function);
    }
    return headers;
}

// The kind of most functions of a header.
FunctionKind usualKind(const Functions& functions) {
    const auto count = [&](FunctionKind kind) {
        return std::count_if(functions.begin(), functions.end(),
                             [=](const SdkFunction& each) { return each.kind == kind; });
    };
    return std::max({FunctionKind::Real, FunctionKind::KeepsState, FunctionKind::AnswersZero},
                    [&](FunctionKind a, FunctionKind b) { return count(a) < count(b); });
}

// A line for each header, and one for each function that differs from the simulator or from the
// others of its header.
std::string tables() {
    std::ostringstream headers;
    std::ostringstream functions;
    for (const Functions& all : functionsByHeader()) {
        const FunctionKind usual = usualKind(all);
        headers << "| `" << all.front().header << "` | " << all.size() << " | " << describe(usual)
                << " |\n";
        for (const SdkFunction& function : all) {
            if (function.kind != usual || !function.difference.empty()) {
                functions << "| `" << function.name << "` | " << describe(function.kind) << " | "
                          << function.difference << " |\n";
            }
        }
    }
    return "| header | functions | here, unless listed below |\n|---|--:|---|\n" + headers.str() +
           "\n| function | here | what differs |\n|---|---|---|\n" + functions.str();
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

TEST(HeadlessPageTest, HasTheTablesOfFunctions) {
    const std::string text = contentOf(HEADLESS_PAGE);
    const std::size_t begin = text.find("| header | functions |");
    ASSERT_NE(begin, std::string::npos);
    EXPECT_EQ(text.substr(begin), tables());
}
