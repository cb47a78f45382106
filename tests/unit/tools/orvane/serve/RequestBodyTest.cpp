#include <gtest/gtest.h>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/serve/RequestBody.h"

namespace {

using namespace orvane::tool;

const std::string kId = R"("id":"0123456789abcdef")";

std::string bodyOf(const std::string& rest) {
    return "{" + kId + "," + rest + "}";
}

template <typename Parse>
std::string refusalOf(Parse parse, const std::string& body) {
    try {
        parse(body);
    } catch (const Failure& failure) {
        return failure.what();
    }
    return "";
}

TEST(RequestBodyTest, ReadsWhatAPageWants) {
    const Wanted wanted =
        parseWanted(bodyOf(R"("names":["test/int:int@kg","test/ints[2]"],"commands":["test/a"])"));
    EXPECT_EQ(wanted.id, "0123456789abcdef");
    ASSERT_EQ(wanted.datarefs.size(), 2U);
    EXPECT_EQ(wanted.datarefs[0].name, "test/int");
    EXPECT_EQ(wanted.datarefs[0].unit, "kg");
    EXPECT_EQ(wanted.datarefs[1].arrayName, "test/ints");
    EXPECT_EQ(wanted.commands, (std::vector<std::string>{"test/a"}));
}

TEST(RequestBodyTest, RefusesWhatIsNotAnObjectOfTexts) {
    for (const char* const body :
         {"", "{", "[]", "7", "\"id\"", "{\"id\":\"0123456789abcdef\"} x"}) {
        EXPECT_EQ(refusalOf(parseWanted, body), "not an object of JSON") << body;
    }
    EXPECT_EQ(refusalOf(parseWanted, R"({"id":7})"), "\"id\" is not a text");
    EXPECT_EQ(refusalOf(parseWanted, R"({"id":"short"})"),
              "\"id\" is not 16 to 64 letters and digits");
    EXPECT_EQ(refusalOf(parseWanted, bodyOf(R"("names":{})")),
              "\"names\" is not an array of at most 256 texts");
    EXPECT_EQ(refusalOf(parseWanted, bodyOf(R"("names":[7],"commands":[])")),
              "\"names\" is not a text");
}

TEST(RequestBodyTest, RefusesTooManyNames) {
    std::string names = "\"test/0\"";
    for (int i = 1; i <= 256; ++i) {
        names += ",\"test/" + std::to_string(i) + "\"";
    }
    EXPECT_EQ(refusalOf(parseWanted, bodyOf("\"names\":[" + names + "],\"commands\":[]")),
              "\"names\" is not an array of at most 256 texts");
}

TEST(RequestBodyTest, RefusesNamesThatThePluginMustNotSee) {
    EXPECT_EQ(refusalOf(parseCommand, bodyOf("\"command\":\"" + std::string(256, 'x') + "\"")),
              "a command's name has at most 255 characters");
    for (const char* const name : {"", "a\\u0000b", "a\\nb", "\\u007f"}) {
        EXPECT_EQ(refusalOf(parseCommand, bodyOf(std::string("\"command\":\"") + name + "\"")),
                  "\"command\" is empty, too long, or not plain text")
            << name;
    }
    EXPECT_EQ(refusalOf(parseWanted, bodyOf(R"("names":["a","a"],"commands":[])")),
              "a: named twice");
    EXPECT_EQ(refusalOf(parseWanted, bodyOf(R"("names":[],"commands":["a","a"])")),
              "a: named twice");
}

TEST(RequestBodyTest, ChecksAValueLikeTheSetCommand) {
    const Assignment assignment = parseSet(R"({"assignment":"test/int:int=17"})");
    ASSERT_EQ(assignment.candidates.size(), 1U);
    EXPECT_EQ(std::get<std::int32_t>(assignment.candidates[0].value), 17);
    EXPECT_NE(refusalOf(parseSet, R"({"assignment":"test/int:int=1.5"})"), "");
    EXPECT_EQ(refusalOf(parseSet, R"({"assignment":"test/int"})"),
              "test/int: a value is missing: NAME=VALUE or NAME:TYPE=VALUE");
}

} // namespace
