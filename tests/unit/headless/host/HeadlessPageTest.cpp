// docs/headless.md says what the program does.

#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "headless/xplm/FunctionTable.h"

using headless::describe;
using headless::SdkFunction;
using headless::sdkFunctions;

namespace {

std::string page() {
    std::ostringstream text;
    text << std::ifstream(HEADLESS_PAGE).rdbuf();
    return text.str();
}

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

} // namespace

TEST(HeadlessPageTest, HasTheTableOfFunctions) {
    const std::string text = page();
    const std::size_t begin = text.find("\n### XPLMCamera");
    ASSERT_NE(begin, std::string::npos);
    EXPECT_EQ(text.substr(begin), tables());
}
