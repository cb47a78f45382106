#include <cmath>

#include <gtest/gtest.h>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/set/Assignment.h"

using orvane::tool::Assignment;
using orvane::tool::ExitCode;
using orvane::tool::Failure;
using orvane::tool::makeAssignment;
using orvane::tool::parseAssignment;
using orvane::tool::wasTaken;
using orvane::velmar::Type;
using orvane::velmar::Value;

namespace {

Assignment assignment(const std::string& text) {
    return makeAssignment(parseAssignment(text));
}

std::string refusalOf(const std::string& text) {
    try {
        assignment(text);
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Code(), ExitCode::WrongUsage);
        return failure.what();
    }
    return "accepted";
}

TEST(AssignmentTest, WritesWithTheTypeThatIsGiven) {
    const Assignment made = assignment("a:int[2]=1,2");
    ASSERT_EQ(made.candidates.size(), 1U);
    EXPECT_EQ(made.candidates[0].argument.name, "a");
    EXPECT_EQ(made.candidates[0].argument.type, Type::IntArray);
    EXPECT_EQ(made.candidates[0].argument.size, 2U);
    EXPECT_EQ(made.candidates[0].value, Value(std::vector<std::int32_t>{1, 2}));
}

TEST(AssignmentTest, TriesAWholeNumberAsFloatAndInt) {
    const Assignment made = assignment("a=1");
    ASSERT_EQ(made.candidates.size(), 2U);
    EXPECT_EQ(made.candidates[0].value, Value(1.0F));
    EXPECT_EQ(made.candidates[1].value, Value(std::int32_t{1}));
}

TEST(AssignmentTest, TriesAFractionAsFloatOnly) {
    const Assignment made = assignment("a=1.5");
    ASSERT_EQ(made.candidates.size(), 1U);
    EXPECT_EQ(made.candidates[0].value, Value(1.5F));
}

TEST(AssignmentTest, TakesCommasForAnArray) {
    const Assignment made = assignment("a=1,2,3");
    ASSERT_EQ(made.candidates.size(), 2U);
    EXPECT_EQ(made.candidates[0].argument.type, Type::FloatArray);
    EXPECT_EQ(made.candidates[0].argument.size, 3U);
    EXPECT_EQ(made.candidates[1].value, Value(std::vector<std::int32_t>{1, 2, 3}));
    EXPECT_EQ(assignment("a=1,2.5").candidates.size(), 1U);
}

TEST(AssignmentTest, SaysWhichValueIsWrong) {
    EXPECT_EQ(refusalOf("a=on"), "a: \"on\" is not a number that a float can hold");
    EXPECT_EQ(refusalOf("a:byte=300"), "a:byte: \"300\" is not a whole number from 0 to 255");
    EXPECT_EQ(refusalOf("a:int[2]=1"), "a:int[2]: expected 2 elements, got 1 in \"1\"");
}

TEST(AssignmentTest, IsTakenWhenItReadsBack) {
    EXPECT_TRUE(wasTaken(Value(1.0F), Value(0.0F), Value(1.0F)));
    EXPECT_TRUE(wasTaken(Value(1.0F), Value(1.0F), Value(1.0F)));
}

TEST(AssignmentTest, IsTakenWhenItIsNotANumberAndReadsBack) {
    const Value nan(std::nanf(""));
    EXPECT_TRUE(wasTaken(nan, Value(0.0F), nan));
    EXPECT_FALSE(wasTaken(nan, Value(0.0F), Value(0.0F)));
    EXPECT_TRUE(wasTaken(Value(5.0F), nan, Value(5.0F)));
    EXPECT_FALSE(wasTaken(Value(5.0F), nan, nan));
    EXPECT_TRUE(wasTaken(Value(std::vector<float>{1, std::nanf("")}),
                         Value(std::vector<float>{0, 0}),
                         Value(std::vector<float>{1, -std::nanf("")})));
    EXPECT_TRUE(wasTaken(Value(HUGE_VALF), Value(0.0F), Value(HUGE_VALF)));
}

TEST(AssignmentTest, TakesANumberForAnElementAndAListForSeveral) {
    EXPECT_EQ(assignment("a[3]=1").candidates[0].value, Value(1.0F));
    EXPECT_EQ(assignment("a[3]=1").candidates[1].value, Value(1));
    EXPECT_EQ(assignment("a[2:4]=1,2").candidates[0].value, Value(std::vector<float>{1, 2}));
    EXPECT_EQ(assignment("a[2:4]:int=1,2").candidates.size(), 1U);
    EXPECT_EQ(refusalOf("a[2:5]=1,2"), "a[2:5]: expected 3 elements, got 2 in \"1,2\"");
    EXPECT_EQ(refusalOf("a[3]=1,2"), "a[3]: \"1,2\" is not a number that a float can hold");
}

TEST(AssignmentTest, IsTakenWhenTheDatarefHasMovedOnSince) {
    EXPECT_TRUE(wasTaken(Value(43200.0F), Value(10.0F), Value(43200.05F)));
    EXPECT_TRUE(wasTaken(Value(43200.0F), Value(43200.0F), Value(43200.05F)));
}

TEST(AssignmentTest, IsNotTakenWhenTheDatarefStaysOrMovesByItself) {
    EXPECT_FALSE(wasTaken(Value(1.0F), Value(0.0F), Value(0.0F)));
    EXPECT_FALSE(wasTaken(Value(0.0F), Value(100.0F), Value(100.1F)));
    EXPECT_FALSE(wasTaken(Value(std::vector<float>{1, 2}), Value(std::vector<float>{0, 0}),
                          Value(std::vector<float>{0, 0})));
}

} // namespace
