#include "platform_ui/TrayWatch.h"

#include "platform_ui/QtTray.h"
#include "support/Environment.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

// What needs a screen or a bus is tried on the virtual screen; here there is neither.

TEST(TrayWatch, WithoutASessionBusItKnowsAtOnceThatThereIsNoHost) {
    const QTemporaryDir empty;
    const EnvironmentVariable bus("DBUS_SESSION_BUS_ADDRESS");
    const EnvironmentVariable runtime("XDG_RUNTIME_DIR", empty.path().toLocal8Bit());
    TrayWatch watch;
    const QSignalSpy changed(&watch, &TrayWatch::Changed);
    EXPECT_FALSE(watch.IsHostKnown());
    QElapsedTimer time;
    time.start();
    watch.Start();
    EXPECT_LT(time.elapsed(), 10000);  // a call that nobody answers is given up after 25 s
    EXPECT_TRUE(watch.IsHostKnown());
    EXPECT_FALSE(watch.HasHost());
    EXPECT_EQ(changed.count(), 1);
}

TEST(TrayWatch, WithoutAnXServerThereIsNoTrayToEmbedIn) {
    EXPECT_FALSE(TrayWatch::HasEmbeddingTray());
}

TEST(QtTray, WithoutANotificationAreaThereIsNoIconAndNothingHappens) {
    const QTemporaryDir empty;
    const EnvironmentVariable bus("DBUS_SESSION_BUS_ADDRESS");
    const EnvironmentVariable runtime("XDG_RUNTIME_DIR", empty.path().toLocal8Bit());
    QtTray tray;
    int told = 0;
    const auto tell = [&told] { ++told; };
    tray.Open({tell, tell, tell});
    tray.SetNeeded(true);
    tray.SetToolTip(QStringLiteral("Tip"));
    tray.ShowBalloonTip(4, QStringLiteral("Title"), QStringLiteral("Text"), BalloonIcon::Warning);
    QTest::qWait(50);
    EXPECT_FALSE(tray.IsThere());
    EXPECT_EQ(tray.Place(), QRect());
    EXPECT_EQ(told, 0);
    EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty()) << "the toolkit's own window for an icon";
}
