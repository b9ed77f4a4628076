#include "core/Trap.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

TEST(Trap, LetsTheNextStepRunAfterAFailure) {
    bool isNextRun = false;
    EXPECT_FALSE(Trap([] { throw std::runtime_error("a failing step"); }));
    EXPECT_TRUE(Trap([&] { isNextRun = true; }));
    EXPECT_TRUE(isNextRun);
}

TEST(Trap, TrapsWhatIsNoException) {
    EXPECT_FALSE(Trap([] { throw 5; }));
}

TEST(Trap, HandsTheFailureOn) {
    std::string description;
    const auto keep = [&](const std::exception& failure) { description = failure.what(); };
    EXPECT_TRUE(TrapTo([] {}, keep));
    EXPECT_EQ(description, "");
    EXPECT_FALSE(TrapTo([] { throw std::runtime_error("a failing step"); }, keep));
    EXPECT_EQ(description, "a failing step");
    EXPECT_FALSE(TrapTo([] { throw 5; }, keep));
    EXPECT_EQ(description, "unknown");
}
