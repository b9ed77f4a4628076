#include "core/BusyState.h"

#include <gtest/gtest.h>

#include <stdexcept>

TEST(BusyState, IsIdleAtFirst) {
    const BusyState state;
    EXPECT_EQ(state.Value(), 0);
    EXPECT_TRUE(state.IsIdle());
}

TEST(BusyState, HasTheNumbersOfTheOperations) {
    EXPECT_EQ(Busy::SetupWizard, 1);
    EXPECT_EQ(Busy::StartingUp, 2);
    EXPECT_EQ(Busy::ScheduleDialog, 3);
    EXPECT_EQ(Busy::Sending, 4);
    EXPECT_EQ(Busy::HistoryOpen, 6);
}

TEST(BusyState, GoesBackToIdleAtTheEndOfAnOperation) {
    BusyState state;
    {
        const BusyScope scope(state, Busy::Sending);
        EXPECT_EQ(state.Value(), 4);
        EXPECT_FALSE(state.IsIdle());
    }
    EXPECT_TRUE(state.IsIdle());
}

TEST(BusyState, GoesBackToIdleWhenAnOperationThrows) {
    BusyState state;
    try {
        const BusyScope scope(state, Busy::HistoryOpen);
        throw std::runtime_error("a failing step");
    } catch (const std::runtime_error&) {
        EXPECT_TRUE(state.IsIdle());
    }
}
