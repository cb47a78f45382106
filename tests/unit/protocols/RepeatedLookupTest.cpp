#include <gtest/gtest.h>

#include "protocols/RepeatedLookup.h"

namespace {

class RepeatedLookupTest : public testing::Test {
protected:
    RepeatedLookupTest() {
        for (const int identifier : {1, 2, 3}) {
            targets[identifier] = std::make_unique<int>(identifier * 10);
        }
    }

    // The target's value; 0 if there is none.
    int find(int identifier, std::size_t position) {
        const int* const found = lookup.Find(targets, identifier, position);
        return found != nullptr ? *found : 0;
    }

    RepeatedLookup<int, int> lookup;
    RepeatedLookup<int, int>::Targets targets;
};

TEST_F(RepeatedLookupTest, FindsTheSameItemsAgain) {
    for (int message = 0; message < 3; ++message) {
        EXPECT_EQ(find(3, 0), 30);
        EXPECT_EQ(find(1, 1), 10);
        EXPECT_EQ(find(2, 2), 20);
    }
}

TEST_F(RepeatedLookupTest, FindsOtherItemsAtThePlacesOfFormerOnes) {
    find(1, 0);
    find(2, 1);
    EXPECT_EQ(find(2, 0), 20);
    EXPECT_EQ(find(3, 1), 30);
    EXPECT_EQ(find(1, 0), 10);
}

TEST_F(RepeatedLookupTest, FindsNothingWhereThereIsNothing) {
    EXPECT_EQ(find(0, 0), 0);
    EXPECT_EQ(find(4, 0), 0);
    EXPECT_EQ(find(1, 0), 10);
    EXPECT_EQ(find(4, 0), 0);
}

TEST_F(RepeatedLookupTest, FindsItemsBeyondThoseThatItRemembers) {
    for (int message = 0; message < 2; ++message) {
        for (std::size_t position = 0; position < 100; ++position) {
            EXPECT_EQ(find(2, position), 20);
        }
        EXPECT_EQ(find(3, 1000), 30);
    }
}

TEST_F(RepeatedLookupTest, FindsANewTargetOnceTheOldOneIsForgotten) {
    EXPECT_EQ(find(1, 0), 10);
    lookup.Forget();
    targets[1] = std::make_unique<int>(11);
    EXPECT_EQ(find(1, 0), 11);
    lookup.Forget();
    targets.erase(1);
    EXPECT_EQ(find(1, 0), 0);
}

} // namespace
