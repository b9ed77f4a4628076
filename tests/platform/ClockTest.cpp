#include "platform/Clock.h"

#include <gtest/gtest.h>

TEST(SystemClock, TellsTheLocalTime) {
    const QDateTime before = QDateTime::currentDateTime();
    const QDateTime now = SystemClock().Now();
    EXPECT_EQ(now.timeSpec(), Qt::LocalTime);
    EXPECT_LE(before, now);
    EXPECT_LE(now, QDateTime::currentDateTime());
}

TEST(SystemClock, SleepsAtLeastAsLongAsItIsTold) {
    SystemClock clock;
    const qint64 before = clock.Ticks();
    clock.Sleep(3);
    EXPECT_GE(clock.Ticks() - before, 3);
}

TEST(SystemClock, DoesNotSleepForZeroOrLess) {
    SystemClock clock;
    clock.Sleep(0);
    const qint64 before = clock.Ticks();
    clock.Sleep(-100000);
    EXPECT_LT(clock.Ticks() - before, 100000);
}
