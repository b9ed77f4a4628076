#include "addressbook/TabOrder.h"

#include <gtest/gtest.h>

using TabOrder::Join;
using TabOrder::Move;
using TabOrder::Moves;
using TabOrder::Restore;
using TabOrder::Split;
using Order = QList<qint16>;

TEST(TabOrder, IsSavedAsNumbersBetweenCommas) {
    EXPECT_EQ(Join({-1, 5, 2, -2, -3}), u"-1,5,2,-2,-3");
    EXPECT_EQ(Join({-1}), u"-1");
    EXPECT_EQ(Join({}), QString());
}

TEST(TabOrder, ComesBackAsItWasSaved) {
    EXPECT_EQ(Split(QStringLiteral("-1,5,2,-2,-3")), (Order{-1, 5, 2, -2, -3}));
    EXPECT_EQ(Split(Join({-1, 32767, -2})), (Order{-1, 32767, -2}));
}

TEST(TabOrder, AnEmptyValueGivesNoList) {
    EXPECT_TRUE(Split(QString()).isEmpty());
    EXPECT_TRUE(Split(QStringLiteral("")).isEmpty());
}

TEST(TabOrder, AMalformedEntryIsZero) {
    EXPECT_EQ(Split(QStringLiteral("-1,x,,99999,2")), (Order{-1, 0, 0, 0, 2}));
    EXPECT_EQ(Split(QStringLiteral(",")), (Order{0, 0}));
}

TEST(TabOrder, BlanksAroundAnEntryAreSkipped) {
    EXPECT_EQ(Split(QStringLiteral(" -1, 5 ")), (Order{-1, 5}));
}

TEST(TabOrder, WithoutAStoredOrderTheTabsStandInTheFixedOrder) {
    EXPECT_EQ(Restore({-1, 1, 2, 3, -2, -3}, {}), (Order{-1, 1, 2, 3, -2, -3}));
    EXPECT_TRUE(Moves({-1, 1, 2}, {}).isEmpty());
}

TEST(TabOrder, TheOrderOfTheLastRunComesBack) {
    EXPECT_EQ(Restore({-1, 1, 2, 3, -2, -3}, {-1, 3, -2, 1, -3, 2}), (Order{-1, 3, -2, 1, -3, 2}));
}

TEST(TabOrder, AnOrderThatStandsAlreadyMovesNothing) {
    EXPECT_TRUE(Moves({-1, 1, 2, -2}, {-1, 1, 2, -2}).isEmpty());
}

TEST(TabOrder, FavouritesThenEverybodyStandInFrontWithTheGroupsBehind) {
    EXPECT_EQ(Restore({-1, 1, 2, -2}, {-2, -1}), (Order{-2, -1, 1, 2}));
}

TEST(TabOrder, AGroupOfAnotherStationIsFoundBehindTheFavourites) {
    EXPECT_EQ(Restore({-1, 1, 9, 2, -2}, {-1, 1, 2, -2}), (Order{-1, 1, 2, -2, 9}));
}

TEST(TabOrder, NewGroupsKeepTheirOrderAmongThemselves) {
    EXPECT_EQ(Restore({-1, 7, 1, 8, 2, 9, -2, -3}, {-1, 1, 2, -2, -3}), (Order{-1, 1, 2, -2, -3, 7, 8, 9}));
}

TEST(TabOrder, ADeletedGroupLeavesAHoleThatTheNextTabsFill) {
    EXPECT_EQ(Restore({-1, 1, 3, -2, -3}, {-1, 1, 2, 3, -2, -3}), (Order{-1, 1, 3, -2, -3}));
    EXPECT_EQ(Restore({-1, 1, -2, -3}, {-1, 1, 2, -2, -3}), (Order{-1, 1, -2, -3}));
}

TEST(TabOrder, AHoleLetsATabThatIsNotInTheListStandInFront) {
    // 2 was deleted and 9 is new: position 1 keeps whatever tab stands there, and that is 9.
    EXPECT_EQ(Restore({-1, 9, 1, -2}, {-1, 2, 1, -2}), (Order{-1, 9, 1, -2}));
}

TEST(TabOrder, APositionBehindTheLastTabIsTheEnd) {
    EXPECT_EQ(Restore({-1, 1, -2}, {-1, 5, 6, 7, 1, -2}), (Order{-1, 1, -2}));
    EXPECT_EQ(Restore({-1, -2, 1}, {5, 6, 7, 8, -1}), (Order{-2, 1, -1}));
}

TEST(TabOrder, APrivateTabThatWasSwitchedOffIsAnEntryNotFound) {
    EXPECT_EQ(Restore({-1, 1, 2, -2}, {-3, -1, 1, 2, -2}), (Order{-1, 1, 2, -2}));
    EXPECT_EQ(Restore({-1, 1, 2, -2}, {-1, 2, 1, -2, -3}), (Order{-1, 2, 1, -2}));
}

TEST(TabOrder, APrivateTabThatWasSwitchedOnStaysBehind) {
    EXPECT_EQ(Restore({-1, 1, 2, -2, -3}, {-1, 2, 1, -2}), (Order{-1, 2, 1, -2, -3}));
}

TEST(TabOrder, AMalformedEntryFindsNoTabAndIsSkipped) {
    EXPECT_EQ(Restore({-1, 1, 2, -2}, Split(QStringLiteral("-1,what,1,-2"))), (Order{-1, 2, 1, -2}));
}

TEST(TabOrder, OfTwoTabsWithOneNumberTheFirstMoves) {
    EXPECT_EQ(Moves({1, 4, 4}, {4}), (QList<Move>{{1, 0}}));
}

TEST(TabOrder, MovesLeadStepByStepToTheRestoredOrder) {
    EXPECT_EQ(Moves({-1, 1, 2, -2}, {-2, -1}), (QList<Move>{{3, 0}}));
    EXPECT_EQ(Moves({-1, 1, 2, -2}, {2, 1}), (QList<Move>{{2, 0}, {2, 1}}));
}
