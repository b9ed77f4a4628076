#include "controls/KeyRepeats.h"

#include <QKeyEvent>
#include <QWidget>
#include <QWindow>

#include <gtest/gtest.h>

namespace {

constexpr quint32 EnterCode = 36;
constexpr quint32 SpaceCode = 65;

class KeyRepeatsTest : public ::testing::Test {
protected:
    /// What the receiver of a key sees: "press", "repeat", "release", "shortcut"; empty if nothing arrives.
    QString Send(QObject& receiver, QEvent::Type type, quint64 timestamp, quint32 code = EnterCode) {
        QKeyEvent event(type, Qt::Key_Return, Qt::NoModifier, code, 0, 0);
        event.setTimestamp(timestamp);
        event.setAccepted(false);
        QString seen;
        Result = Keys.Deliver(&receiver, &event, [&](QObject* to, QEvent* what) {
            EXPECT_EQ(to, &receiver);
            what->setAccepted(IsTaken);
            const bool isRepeat = static_cast<QKeyEvent*>(what)->isAutoRepeat();
            seen = type == QEvent::KeyRelease         ? QStringLiteral("release")
                   : type == QEvent::ShortcutOverride ? QStringLiteral("shortcut")
                   : isRepeat                         ? QStringLiteral("repeat")
                                                      : QStringLiteral("press");
            return true;
        });
        IsAccepted = event.isAccepted();
        return seen;
    }
    QString Press(quint64 timestamp, quint32 code = EnterCode) {
        return Send(Window, QEvent::KeyPress, timestamp, code);
    }
    QString Release(quint64 timestamp, quint32 code = EnterCode) {
        return Send(Window, QEvent::KeyRelease, timestamp, code);
    }

    QWindow Window;
    KeyRepeats Keys;
    bool IsTaken = true;
    bool IsAccepted = false;
    bool Result = false;
};

TEST_F(KeyRepeatsTest, APressInTheMomentOfItsReleaseIsARepeat) {
    EXPECT_EQ(Press(1000), QStringLiteral("press"));
    EXPECT_EQ(Release(1500), QStringLiteral("release"));
    EXPECT_EQ(Press(1500), QStringLiteral("repeat"));
    EXPECT_EQ(Release(1540), QStringLiteral("release"));
    EXPECT_EQ(Press(1541), QStringLiteral("repeat"));
}

TEST_F(KeyRepeatsTest, APressSoonAfterTheReleaseIsANewOne) {
    Press(1000);
    Release(1010);
    EXPECT_EQ(Press(1012), QStringLiteral("press"));
}

TEST_F(KeyRepeatsTest, AnotherKeyInTheMomentOfTheReleaseIsANewPress) {
    Press(1000);
    Release(1010);
    EXPECT_EQ(Press(1010, SpaceCode), QStringLiteral("press"));
}

TEST_F(KeyRepeatsTest, KeysWithoutATimeAreAsTheyCome) {
    Release(0);
    EXPECT_EQ(Press(0), QStringLiteral("press"));
}

TEST_F(KeyRepeatsTest, ARepeatTriggersNoShortcut) {
    Release(1500);
    EXPECT_EQ(Send(Window, QEvent::ShortcutOverride, 1500), QString());
    EXPECT_TRUE(IsAccepted) << "taken by somebody: no shortcut is looked for";
    EXPECT_TRUE(Result);
    EXPECT_EQ(Send(Window, QEvent::ShortcutOverride, 1700), QStringLiteral("shortcut"));
}

TEST_F(KeyRepeatsTest, WhetherARepeatWasTakenReachesTheWindowSystem) {
    Release(1500);
    IsTaken = false;
    Press(1500);
    EXPECT_FALSE(IsAccepted);
    Release(1600);
    IsTaken = true;
    Press(1600);
    EXPECT_TRUE(IsAccepted);
}

TEST_F(KeyRepeatsTest, OnlyWhatComesToAWindowIsLookedAt) {
    QObject other;
    Send(other, QEvent::KeyRelease, 1500);
    EXPECT_EQ(Press(1500), QStringLiteral("press"));
    Release(1600);
    EXPECT_EQ(Send(other, QEvent::KeyPress, 1600), QStringLiteral("press"));
}

}  // namespace
