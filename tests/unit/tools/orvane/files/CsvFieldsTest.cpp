#include <gtest/gtest.h>

#include "tools/orvane/files/CsvFields.h"

namespace {

using orvane::tool::csvFields;
using Fields = std::vector<std::string>;

TEST(CsvFieldsTest, SplitsAtCommas) {
    EXPECT_EQ(csvFields("a,b c,"), (Fields{"a", "b c", ""}));
    EXPECT_EQ(csvFields(""), Fields{""});
    EXPECT_EQ(csvFields(","), (Fields{"", ""}));
}

TEST(CsvFieldsTest, TakesQuotedFieldsAsTheyAre) {
    EXPECT_EQ(csvFields("1,\"2,3\",\"say \"\"so\"\"\""), (Fields{"1", "2,3", "say \"so\""}));
    EXPECT_EQ(csvFields("\"\""), Fields{""});
}

TEST(CsvFieldsTest, RefusesQuotesThatDoNotMatch) {
    EXPECT_FALSE(csvFields("1,\"2"));
    EXPECT_FALSE(csvFields("\"1\"2,3"));
    EXPECT_FALSE(csvFields("\"1\"\""));
}

} // namespace
