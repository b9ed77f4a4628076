#include "platform/EventPump.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QObject>

#include <functional>

namespace {

void Post(QObject& context, const std::function<void()>& step) {
    QMetaObject::invokeMethod(&context, step, Qt::QueuedConnection);
}

}  // namespace

TEST(ApplicationEventPump, LetsPendingEventsRun) {
    QObject context;
    bool isRun = false;
    Post(context, [&] { isRun = true; });
    ApplicationEventPump().Process(1);
    EXPECT_TRUE(isRun);
}

TEST(ApplicationEventPump, RunsNothingWithoutAPass) {
    QObject context;
    bool isRun = false;
    Post(context, [&] { isRun = true; });
    ApplicationEventPump().Process(0);
    EXPECT_FALSE(isRun);
}
