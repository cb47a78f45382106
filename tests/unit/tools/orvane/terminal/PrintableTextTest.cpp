#include <gtest/gtest.h>

#include "tools/orvane/terminal/PrintableText.h"

using orvane::tool::printable;

namespace {

TEST(PrintableTextTest, LeavesTextAsItIs) {
    EXPECT_EQ(printable(""), "");
    EXPECT_EQ(printable("sim/q:float[4]@m/s ~"), "sim/q:float[4]@m/s ~");
    EXPECT_EQ(printable("\u00B0C, \u20AC, \u98DB, \U0001F6E9"),
              "\u00B0C, \u20AC, \u98DB, \U0001F6E9");
}

TEST(PrintableTextTest, WritesControlCharactersAsNumbers) {
    EXPECT_EQ(printable("\x1B[2J"), "\\x1B[2J");
    EXPECT_EQ(printable("two\r\nlines\t"), "two\\x0D\\x0Alines\\x09");
    EXPECT_EQ(printable(std::string_view("\0\x7F", 2)), "\\x00\\x7F");
    // U+009B, which begins a sequence as ESC [ does.
    EXPECT_EQ(printable("\xC2\x9B"), "\\xC2\\x9B");
}

TEST(PrintableTextTest, WritesMarksThatTurnTheTextRoundAsNumbers) {
    EXPECT_EQ(printable("\u202Efdp.cfg"), "\\xE2\\x80\\xAEfdp.cfg");
    EXPECT_EQ(printable("\u2066\u200F"), "\\xE2\\x81\\xA6\\xE2\\x80\\x8F");
}

TEST(PrintableTextTest, WritesWhatIsNotUtf8AsNumbers) {
    EXPECT_EQ(printable("\xFF"), "\\xFF");
    EXPECT_EQ(printable("caf\xE9"), "caf\\xE9");
    EXPECT_EQ(printable("\x80"
                        "a"),
              "\\x80a");
    EXPECT_EQ(printable("\xE2\x82"), "\\xE2\\x82") << "cut";
    EXPECT_EQ(printable("\xC0\xAF"), "\\xC0\\xAF") << "longer than it needs to be";
    EXPECT_EQ(printable("\xED\xA0\x80"), "\\xED\\xA0\\x80") << "a surrogate";
    EXPECT_EQ(printable("\xF4\x90\x80\x80"), "\\xF4\\x90\\x80\\x80") << "beyond the last";
}

TEST(PrintableTextTest, DoublesBackslashes) {
    EXPECT_EQ(printable("a\\x1Bb"), "a\\\\x1Bb");
}

} // namespace
