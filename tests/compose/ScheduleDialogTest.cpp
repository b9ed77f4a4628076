#include "compose/frmGetTime.h"
#include "controls/ModalDoor.h"
#include "support/FakeMachine.h"

#include <QApplication>
#include <QDateEdit>
#include <QKeyEvent>
#include <QPushButton>
#include <QTest>
#include <QTimeEdit>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

class ScheduleDialogTest : public ::testing::Test {
protected:
    void Open(const QDateTime& now) {
        Time.Time = now;
        Dialog = std::make_unique<frmGetTime>(Time);
        Dialog->show();
        dtDate = Dialog->findChild<QDateEdit*>(QStringLiteral("dtDate"));
        dtTime = Dialog->findChild<QTimeEdit*>(QStringLiteral("dtTime"));
        ASSERT_NE(dtDate, nullptr);
        ASSERT_NE(dtTime, nullptr);
    }
    void Press(const char* name) {
        QTest::mouseClick(Dialog->findChild<QPushButton*>(QString::fromLatin1(name)), Qt::LeftButton);
    }

    FakeClock Time;
    std::unique_ptr<frmGetTime> Dialog;
    QDateEdit* dtDate = nullptr;
    QTimeEdit* dtTime = nullptr;
};

TEST_F(ScheduleDialogTest, OpensCanceledAnHourFromNowWithAYearToChooseFrom) {
    Open(QDateTime(QDate(2026, 3, 7), QTime(14, 30, 15)));
    EXPECT_TRUE(Dialog->IsCanceled());
    EXPECT_EQ(Dialog->windowTitle(), QStringLiteral("Larkspan Messenger - Schedule"));
    EXPECT_EQ(dtDate->date(), QDate(2026, 3, 7));
    EXPECT_EQ(dtDate->minimumDate(), QDate(2026, 3, 7));
    EXPECT_EQ(dtDate->maximumDate(), QDate(2027, 3, 7));
    EXPECT_EQ(dtTime->displayFormat(), QStringLiteral("HH:mm"));
    EXPECT_EQ(dtTime->text(), QStringLiteral("15:30"));
    EXPECT_EQ(Dialog->SendTime(), QDateTime(QDate(2026, 3, 7), QTime(15, 30)));
}

TEST_F(ScheduleDialogTest, At23HoursTheTimeBoxStandsAt00AndTheDateStays) {
    Open(QDateTime(QDate(2026, 12, 31), QTime(23, 42, 1)));
    EXPECT_EQ(dtTime->text(), QStringLiteral("00:42"));
    EXPECT_EQ(dtDate->date(), QDate(2026, 12, 31));
    EXPECT_EQ(Dialog->SendTime(), QDateTime(QDate(2026, 12, 31), QTime(0, 42)));
}

TEST_F(ScheduleDialogTest, At22HoursTheTimeBoxStandsAt23) {
    Open(QDateTime(QDate(2026, 3, 7), QTime(22, 5)));
    EXPECT_EQ(dtTime->text(), QStringLiteral("23:05"));
}

TEST_F(ScheduleDialogTest, OnTheLeapDayTheYearEndsOnTheLastOfFebruary) {
    Open(QDateTime(QDate(2028, 2, 29), QTime(8, 0)));
    EXPECT_EQ(dtDate->maximumDate(), QDate(2029, 2, 28));
}

TEST_F(ScheduleDialogTest, ATimeEarlierTodayIsAccepted) {
    Open(QDateTime(QDate(2026, 3, 7), QTime(14, 30)));
    dtTime->setTime(QTime(3, 0));
    Press("cmdOK");
    EXPECT_FALSE(Dialog->IsCanceled());
    EXPECT_FALSE(Dialog->isVisible());
    EXPECT_EQ(Dialog->SendTime(), QDateTime(QDate(2026, 3, 7), QTime(3, 0)));
}

TEST_F(ScheduleDialogTest, EnterAcceptsFromEitherBoxAndEscapeCancels) {
    for (int box = 0; box < 2; ++box) {
        Open(QDateTime(QDate(2026, 3, 7), QTime(14, 30)));
        QWidget* focus = box == 0 ? static_cast<QWidget*>(dtDate) : static_cast<QWidget*>(dtTime);
        QTest::keyClick(focus, Qt::Key_Return);
        EXPECT_FALSE(Dialog->IsCanceled());
        EXPECT_FALSE(Dialog->isVisible());
        Open(QDateTime(QDate(2026, 3, 7), QTime(14, 30)));
        focus = box == 0 ? static_cast<QWidget*>(dtDate) : static_cast<QWidget*>(dtTime);
        QTest::keyClick(focus, Qt::Key_Escape);
        EXPECT_TRUE(Dialog->IsCanceled());
        EXPECT_FALSE(Dialog->isVisible());
    }
}

TEST_F(ScheduleDialogTest, CancelAndTheCloseButtonHideItCanceled) {
    Open(QDateTime(QDate(2026, 3, 7), QTime(14, 30)));
    Press("cmdCancel");
    EXPECT_TRUE(Dialog->IsCanceled());
    EXPECT_FALSE(Dialog->isVisible());
    Open(QDateTime(QDate(2026, 3, 7), QTime(14, 30)));
    Dialog->close();
    EXPECT_TRUE(Dialog->IsCanceled());
}

TEST_F(ScheduleDialogTest, AnEnterKeyThatIsHeldDownDoesNotAccept) {
    Open(QDateTime(QDate(2026, 3, 7), QTime(14, 30)));
    QTimer::singleShot(0, Dialog.get(), [this] {
        for (QWidget* widget : {static_cast<QWidget*>(dtDate), static_cast<QWidget*>(dtTime),
                                static_cast<QWidget*>(Dialog.get())}) {
            QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
            QApplication::sendEvent(widget, &repeat);
        }
        EXPECT_TRUE(Dialog->isVisible());
        Dialog->close();
    });
    ScreenModalDoor().ShowModal(*Dialog, nullptr);
    EXPECT_TRUE(Dialog->IsCanceled());
}

}  // namespace
