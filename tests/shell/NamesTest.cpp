#include "shell/MainControls.h"
#include "shell/MainWindow.h"

#include <QTimer>

#include <gtest/gtest.h>

namespace {

/// Buttons whose windows are not part of the program yet.
const QStringList Later = {QStringLiteral("cmdReports"),    QStringLiteral("cmdConfig"),
                           QStringLiteral("cmdAddContact"), QStringLiteral("cmdEditContact"),
                           QStringLiteral("cmdSearch"),     QStringLiteral("cmdPrint"),
                           QStringLiteral("cmdQBPrevious"), QStringLiteral("cmdNextQBPage")};

bool IsInside(const QWidget* widget, bool (*isOwner)(const QObject*)) {
    for (const QWidget* at = widget; at != nullptr; at = at->parentWidget()) {
        if (isOwner(at)) {
            return true;
        }
    }
    return false;
}

}  // namespace

TEST(Names, EachControlIsInItsArea) {
    MainWindow window;
    window.Open();
    for (const MainControl& control : MainControls()) {
        EXPECT_TRUE(IsInside(window.Find(control.Name), control.IsOwner)) << control.Name;
    }
}

TEST(Names, AKeyOfTheWindowLeadsToEachControlThatHasOne) {
    MainWindow window;
    window.Open();
    int keys = 0;
    for (const MainControl& named : MainControls()) {
        if (named.Key > 0) {
            const QWidget* control = window.Find(named.Name);
            window.Find("cmdExit")->setFocus();
            window.AltKey(static_cast<Qt::Key>(named.Key));
            EXPECT_TRUE(control->hasFocus() || control->isAncestorOf(QApplication::focusWidget()))
                << named.Name;
            ++keys;
        }
    }
    EXPECT_EQ(keys, 3);
}

TEST(Names, TimersHaveTheirIntervalsAndAreOffAtLoad) {
    MainWindow window;
    window.Open();
    const auto* poll = window.Form->findChild<QTimer*>(QStringLiteral("tmrCheckMsgStatus"));
    const auto* ads = window.Form->findChild<QTimer*>(QStringLiteral("tmrAdupdate"));
    ASSERT_NE(poll, nullptr);
    ASSERT_NE(ads, nullptr);
    EXPECT_EQ(poll->interval(), 5000);
    EXPECT_EQ(ads->interval(), 20000);
    EXPECT_FALSE(poll->isActive());
    EXPECT_FALSE(ads->isActive());
    window.Form->StartTracking();
    EXPECT_TRUE(poll->isActive());
    EXPECT_FALSE(ads->isActive()) << "nothing starts it";
}

TEST(Names, ButtonsWhoseWindowsComeLaterAreThereAndDisabled) {
    MainWindow window;
    window.Open();
    for (const QString& name : Later) {
        EXPECT_FALSE(window.Find(name.toLatin1().constData())->isEnabled()) << name.toStdString();
    }
    for (const char* name : {"cmdHistory", "cmdAbout", "cmdMinimize", "cmdExit"}) {
        EXPECT_TRUE(window.Find(name)->isEnabled()) << name;
    }
}

TEST(Names, EveryButtonHasAnIconOrAWordAndAToolTipInTheStrip) {
    MainWindow window;
    window.Open();
    for (const char* name : {"cmdHistory", "cmdReports", "cmdConfig", "cmdAbout", "cmdMinimize", "cmdExit"}) {
        const auto* button = window.Find<QAbstractButton>(name);
        ASSERT_NE(button, nullptr);
        EXPECT_FALSE(button->icon().isNull()) << name;
        EXPECT_FALSE(button->text().isEmpty()) << name;
        EXPECT_FALSE(button->toolTip().trimmed().isEmpty()) << name;
    }
}
