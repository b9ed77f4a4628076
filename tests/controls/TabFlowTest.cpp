#include "controls/TabFlow.h"

#include <gtest/gtest.h>

namespace {

TEST(TabFlow, TabsThatFitStandInOneRow) {
    const auto places = TabFlow::IntoRows({40, 50, 60}, 154, 20, 2);
    ASSERT_EQ(places.size(), 3);
    EXPECT_EQ(places[0].Rect, QRect(0, 0, 40, 18));
    EXPECT_EQ(places[1].Rect, QRect(42, 0, 50, 18));
    EXPECT_EQ(places[2].Rect, QRect(94, 0, 60, 18));
    EXPECT_EQ(places[2].Row, 0);
}

TEST(TabFlow, ATabThatWouldBeCutOffBeginsTheNextRow) {
    const auto places = TabFlow::IntoRows({40, 50, 60}, 153, 20, 2);
    EXPECT_EQ(places[2].Row, 1);
    EXPECT_EQ(places[2].Rect, QRect(0, 20, 60, 18));
}

TEST(TabFlow, ATabWiderThanTheRowIsNarrowedToIt) {
    const auto places = TabFlow::IntoRows({40, 500, 40}, 200, 20, 2);
    EXPECT_EQ(places[1].Rect, QRect(0, 20, 200, 18));
    EXPECT_EQ(places[2].Row, 2);
}

TEST(TabFlow, NoTabIsNarrowerThanARowIsHigh) {
    EXPECT_EQ(TabFlow::IntoRows({5}, 200, 20, 2)[0].Rect.width(), 20);
    EXPECT_EQ(TabFlow::IntoRows({50}, 10, 20, 2)[0].Rect.width(), 20);
}

TEST(TabFlow, OverHeightFillsTheHeightWithoutGapsOrOverlap) {
    const auto places = TabFlow::OverHeight(28, QSize(26, 361));
    ASSERT_EQ(places.size(), 28);
    EXPECT_EQ(places.first().Rect.top(), 0);
    for (int i = 1; i < 28; ++i) {
        EXPECT_EQ(places[i].Rect.top(), places[i - 1].Rect.bottom() + 1);
    }
    EXPECT_EQ(places.last().Rect.bottom(), 360);
}

TEST(TabFlow, TheNearestTabInTheNextRowIsFound) {
    const auto places = TabFlow::IntoRows({40, 40, 40, 40, 40}, 130, 20, 2);
    ASSERT_EQ(places[3].Row, 1);
    EXPECT_EQ(TabFlow::NearestInNextRow(places, 0, 1), 3);
    EXPECT_EQ(TabFlow::NearestInNextRow(places, 2, 1), 4);
    EXPECT_EQ(TabFlow::NearestInNextRow(places, 4, -1), 1);
    EXPECT_EQ(TabFlow::NearestInNextRow(places, 0, -1), -1);
    EXPECT_EQ(TabFlow::NearestInNextRow(places, -1, 1), -1);
}

}  // namespace
