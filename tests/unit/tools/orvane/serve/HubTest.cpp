#include <cmath>

#include <gtest/gtest.h>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/serve/Hub.h"

namespace {

using namespace orvane::tool;
using orvane::velmar::Value;

constexpr std::chrono::milliseconds kNoPatience(0);

class HubTest : public testing::Test {
protected:
    static Wanted wanted(char id, const std::vector<std::string>& names) {
        return {std::string(16, id), parseDatarefArguments(names), {}};
    }

    std::shared_ptr<EventStream> open(char id, const std::vector<std::string>& names) {
        auto stream = hub.Open(std::string(16, id));
        hub.Want(wanted(id, names));
        return stream;
    }

    // As the reader does.
    void layOut() { hub.SetDatarefs(hub.All().datarefs, {}); }

    // Without the time, which begins a reading.
    static std::string textOf(EventStream& stream) {
        std::string text = stream.Next(kNoPatience).value_or("closed");
        const std::size_t reading = text.find("data: [");
        return reading == std::string::npos ? text : text.substr(text.find_first_of(",]", reading));
    }

    Hub hub;
};

TEST_F(HubTest, SendsEachPageOnlyWhatItWants) {
    const auto one = open('a', {"x:int", "y:float"});
    const auto other = open('b', {"y:float"});
    layOut();
    hub.Show({Value(7), Value(0.5F)}, {0, 1});
    EXPECT_EQ(textOf(*one), ",0,7,1,0.5]\n\n");
    EXPECT_EQ(textOf(*other), ",0,0.5]\n\n");
    hub.Show({Value(8), Value(0.5F)}, {0});
    EXPECT_EQ(textOf(*one), ",0,8]\n\n");
    EXPECT_EQ(textOf(*other), ":\n\n");
}

TEST_F(HubTest, ShowsTheElementsOfArraysAndWhatIsNotANumber) {
    const auto page = open('a', {"x:float[2]", "z:int"});
    layOut();
    hub.Show({Value(std::vector<float>{1.5F, NAN}), Value(3)}, {0, 1});
    EXPECT_EQ(textOf(*page), ",0,1.5,1,null,2,3]\n\n");
}

TEST_F(HubTest, ClosesThePageThatDoesNotRead) {
    const auto lazy = open('a', {"x:int"});
    const auto eager = open('b', {"x:int"});
    layOut();
    for (int i = 0; i < 100'000 && !lazy->IsClosed(); ++i) {
        hub.Show({Value(i)}, {0});
        ASSERT_TRUE(eager->Next(kNoPatience));
    }
    EXPECT_FALSE(lazy->Next(kNoPatience));
    EXPECT_FALSE(eager->IsClosed());
}

TEST_F(HubTest, ForgetsAPageThatIsGone) {
    auto page = open('a', {"x:int"});
    EXPECT_EQ(hub.All().datarefs.size(), 1U);
    page.reset();
    hub.Show({}, {});
    EXPECT_EQ(hub.All().datarefs.size(), 0U);
    EXPECT_THROW(hub.Want(wanted('a', {"x:int"})), Failure);
}

TEST_F(HubTest, LetsOnePageHaveOneStream) {
    const auto older = open('a', {"x:int"});
    const auto newer = open('a', {"x:int"});
    EXPECT_TRUE(older->IsClosed());
    EXPECT_FALSE(newer->IsClosed());
}

TEST_F(HubTest, TakesALimitedNumberOfPages) {
    std::vector<std::shared_ptr<EventStream>> streams;
    for (char id = 'a'; id < 'a' + 16; ++id) {
        streams.push_back(open(id, {}));
    }
    EXPECT_EQ(hub.Open(std::string(16, 'z')), nullptr);
    streams.pop_back();
    EXPECT_NE(hub.Open(std::string(16, 'z')), nullptr);
}

TEST_F(HubTest, RefusesADatarefThatAnotherPageReadsAsAnotherType) {
    const auto one = open('a', {"x:int"});
    const auto other = hub.Open(std::string(16, 'b'));
    EXPECT_THROW(hub.Want(wanted('b', {"x:float"})), Failure);
    EXPECT_THROW(hub.Want(wanted('b', {"x[1]"})), Failure);
    hub.Want(wanted('b', {"x"}));
    EXPECT_EQ(hub.All().datarefs.size(), 1U);
}

TEST_F(HubTest, TellsALaterPageOfTheConnection) {
    hub.Tell(LiveState::Lost, "gone");
    const auto page = hub.Open(std::string(16, 'a'));
    const std::string text = page->Next(kNoPatience).value_or("");
    EXPECT_NE(text.find(R"("state":"lost","text":"gone"})"), std::string::npos) << text;
}

} // namespace
