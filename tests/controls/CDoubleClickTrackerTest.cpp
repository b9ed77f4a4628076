#include "controls/CDoubleClickTracker.h"

#include "support/FakeMachine.h"

#include <gtest/gtest.h>

namespace {

constexpr int DoubleClickTime = 400;

class CDoubleClickTrackerTest : public ::testing::Test {
protected:
    void Wait(int milliseconds) { m_clock.Time = m_clock.Time.addMSecs(milliseconds); }

    FakeClock m_clock;
    CDoubleClickTracker m_tracker{m_clock, DoubleClickTime};
};

TEST_F(CDoubleClickTrackerTest, TheFirstPressIsNoDoubleClick) {
    EXPECT_FALSE(m_tracker.IsDoubleClick(0, 0));
}

TEST_F(CDoubleClickTrackerTest, TwoPressesAtOnePointWithinTheTimeAreADoubleClick) {
    EXPECT_FALSE(m_tracker.IsDoubleClick(10, 20));
    Wait(DoubleClickTime);
    EXPECT_TRUE(m_tracker.IsDoubleClick(10, 20));
}

TEST_F(CDoubleClickTrackerTest, OneMillisecondTooLateIsTwoClicks) {
    EXPECT_FALSE(m_tracker.IsDoubleClick(10, 20));
    Wait(DoubleClickTime + 1);
    EXPECT_FALSE(m_tracker.IsDoubleClick(10, 20));
}

TEST_F(CDoubleClickTrackerTest, FourUnitsApartIsStillADoubleClick) {
    EXPECT_FALSE(m_tracker.IsDoubleClick(10, 20));
    EXPECT_TRUE(m_tracker.IsDoubleClick(14, 16));
}

TEST_F(CDoubleClickTrackerTest, FiveUnitsApartInEitherDirectionIsTwoClicks) {
    EXPECT_FALSE(m_tracker.IsDoubleClick(10, 20));
    EXPECT_FALSE(m_tracker.IsDoubleClick(15, 20));
    EXPECT_FALSE(m_tracker.IsDoubleClick(15, 25));
    EXPECT_FALSE(m_tracker.IsDoubleClick(10, 25));
    EXPECT_FALSE(m_tracker.IsDoubleClick(10, 20));
}

TEST_F(CDoubleClickTrackerTest, AThirdPressStartsANewPair) {
    EXPECT_FALSE(m_tracker.IsDoubleClick(10, 20));
    EXPECT_TRUE(m_tracker.IsDoubleClick(10, 20));
    EXPECT_FALSE(m_tracker.IsDoubleClick(10, 20));
    EXPECT_TRUE(m_tracker.IsDoubleClick(10, 20));
}

TEST_F(CDoubleClickTrackerTest, APressTooFarAwayIsTheFirstOfTheNextPair) {
    EXPECT_FALSE(m_tracker.IsDoubleClick(10, 20));
    EXPECT_FALSE(m_tracker.IsDoubleClick(100, 20));
    EXPECT_TRUE(m_tracker.IsDoubleClick(100, 20));
}

}  // namespace
