#include "ComposeBench.h"

#include "compose/frmConfirmRecipient.h"
#include "controls/ModalDoor.h"
#include "support/PaintCount.h"

#include <QPointer>
#include <QTimer>

namespace {

class ConfirmRecipientTest : public ComposeBench {
protected:
    void SetUp() override {
        ComposeBench::SetUp();
        AddRecipient(1, QStringLiteral("Byrne"), true);
        AddRecipient(2, QStringLiteral("Costa"));
        AddRecipient(3, QStringLiteral("Doyle"), true);
        txtMessage().SetText(QStringLiteral("Hello"));
        ShowWindow();
    }
    static ListView& List(QDialog& dialog) { return FindIn<ListView>(dialog, "lvRecipient"); }
    static void Press(QDialog& dialog, const char* button) {
        QTest::mouseClick(&FindIn<QPushButton>(dialog, button), Qt::LeftButton);
    }
    static void DoubleClick(ListView& list, int row) {
        const QPoint place = list.visualRect(list.model()->index(row, 0)).center();
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
    }
    static void HoldKey(QWidget& widget, Qt::Key key) {
        QKeyEvent repeat(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(&widget, &repeat);
    }
};

TEST_F(ConfirmRecipientTest, OnlyTheRecipientsThatWantConfirmationAreShownAndTicked) {
    Door.ExpectDialog([](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Larkspan Messenger - Confirm Recipients"));
        EXPECT_EQ(FindIn<QLabel>(dialog, "Please").text(),
                  QStringLiteral(
                      "You must confirm which of the following recipients are to receive your message."));
        const RowModel& rows = List(dialog).Rows();
        ASSERT_EQ(rows.Count(), 2);
        EXPECT_EQ(rows.At(0).Key, QStringLiteral("C1"));
        EXPECT_EQ(rows.At(0).Text, QStringLiteral("Byrne, Ann"));
        EXPECT_TRUE(rows.At(0).IsChecked);
        EXPECT_EQ(rows.At(1).Key, QStringLiteral("C3"));
        EXPECT_TRUE(static_cast<frmConfirmRecipient&>(dialog).IsCanceled());
        Press(dialog, "cmdOkay");
        EXPECT_FALSE(static_cast<frmConfirmRecipient&>(dialog).IsCanceled());
    });
    EXPECT_TRUE(Area->ConfirmRecipients());
    EXPECT_EQ(Door.Owner, &Window);
    EXPECT_EQ(Office.Pump.Calls, QList<int>{2});
    EXPECT_EQ(lvRecipients().Rows().Count(), 3);
}

TEST_F(ConfirmRecipientTest, TheWindowIsPaintedAnewBeforeEventsAreLetThrough) {
    PaintCount paints(Window);
    Door.ExpectDialog([&](QDialog& dialog) {
        Press(dialog, "cmdCancel");
        paints.Count = 0;
    });
    int paintsBefore = -1;
    Office.Pump.OnProcess = [&](int) { paintsBefore = paints.Count; };
    EXPECT_FALSE(Area->ConfirmRecipients());
    EXPECT_EQ(paintsBefore, 1);
}

TEST_F(ConfirmRecipientTest, OneConfirmContactAndOneOrdinaryOneShowOneRow) {
    lvRecipients().Rows().RemoveKeys({QStringLiteral("C3")});
    Door.ExpectDialog([](QDialog& dialog) {
        EXPECT_EQ(List(dialog).Rows().Count(), 1);
        Press(dialog, "cmdOkay");
    });
    EXPECT_TRUE(Area->ConfirmRecipients());
    EXPECT_EQ(lvRecipients().Rows().KeyList(), (QStringList{QStringLiteral("C1"), QStringLiteral("C2")}));
}

TEST_F(ConfirmRecipientTest, WhoIsNotTickedLeavesTheListAndTheContacts) {
    Door.ExpectDialog([](QDialog& dialog) {
        DoubleClick(List(dialog), 0);
        EXPECT_FALSE(List(dialog).Rows().At(0).IsChecked);
        Press(dialog, "cmdOkay");
    });
    EXPECT_TRUE(Area->ConfirmRecipients());
    EXPECT_EQ(lvRecipients().Rows().KeyList(), (QStringList{QStringLiteral("C2"), QStringLiteral("C3")}));
    EXPECT_EQ(RecipientContacts.ContactByKey(QStringLiteral("C1")), nullptr);
    EXPECT_EQ(RecipientCaption(), QStringLiteral("Recipient List [3]"))
        << "the count catches up at the next refresh";
}

TEST_F(ConfirmRecipientTest, ASecondDoubleClickAndTheSpaceKeyToggleTheTickToo) {
    Door.ExpectDialog([](QDialog& dialog) {
        DoubleClick(List(dialog), 1);
        DoubleClick(List(dialog), 1);
        EXPECT_TRUE(List(dialog).Rows().At(1).IsChecked);
        List(dialog).setFocus();
        List(dialog).SelectKey(QStringLiteral("C3"));
        QTest::keyClick(&List(dialog), Qt::Key_Space);
        EXPECT_FALSE(List(dialog).Rows().At(1).IsChecked);
        Press(dialog, "cmdCancel");
    });
    EXPECT_FALSE(Area->ConfirmRecipients());
}

TEST_F(ConfirmRecipientTest, CancelEscapeAndTheCloseButtonChangeNothing) {
    const QList<RecordingDoor::DialogAnswer> ways = {
        [](QDialog& dialog) { Press(dialog, "cmdCancel"); },
        [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
        [](QDialog& dialog) { dialog.close(); },
    };
    for (const auto& way : ways) {
        Door.ExpectDialog([&way](QDialog& dialog) {
            DoubleClick(List(dialog), 0);
            way(dialog);
        });
        EXPECT_FALSE(Area->ConfirmRecipients());
        EXPECT_EQ(lvRecipients().Rows().Count(), 3);
        EXPECT_EQ(RecipientContacts.Count(), 3);
    }
}

TEST_F(ConfirmRecipientTest, EnterInTheListIsOkay) {
    Door.ExpectDialog([](QDialog& dialog) {
        List(dialog).setFocus();
        QTest::keyClick(&List(dialog), Qt::Key_Return);
    });
    EXPECT_TRUE(Area->ConfirmRecipients());
}

TEST_F(ConfirmRecipientTest, TheKeyThatOpenedTheDialogAndIsStillHeldDownDoesNotConfirm) {
    frmConfirmRecipient dialog(RecipientContacts, Office.Time);
    dialog.SetRecipients(lvRecipients());
    QTimer::singleShot(0, &dialog, [&dialog] {
        for (QWidget* widget : {static_cast<QWidget*>(&List(dialog)), static_cast<QWidget*>(&dialog),
                                static_cast<QWidget*>(&FindIn<QPushButton>(dialog, "cmdOkay"))}) {
            HoldKey(*widget, Qt::Key_Return);
            HoldKey(*widget, Qt::Key_Space);
        }
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_TRUE(List(dialog).Rows().At(0).IsChecked);
        Press(dialog, "cmdCancel");
    });
    ScreenModalDoor().ShowModal(dialog, &Window);
    EXPECT_TRUE(dialog.IsCanceled());
}

TEST_F(ConfirmRecipientTest, TheDialogIsGoneWhenTheWindowIsPaintedAndEventsAreLetThrough) {
    QPointer<QDialog> dialog;
    Door.ExpectDialog([&](QDialog& shown) {
        dialog = &shown;
        Press(shown, "cmdOkay");
    });
    PaintCount paints(Window);
    bool isGoneAtThePaint = false;
    paints.OnPaint = [&] { isGoneAtThePaint = dialog == nullptr; };
    bool isGoneAtThePasses = false;
    Office.Pump.OnProcess = [&](int) { isGoneAtThePasses = dialog == nullptr; };
    EXPECT_TRUE(Area->ConfirmRecipients());
    EXPECT_TRUE(isGoneAtThePaint);
    EXPECT_TRUE(isGoneAtThePasses);
}

TEST_F(ConfirmRecipientTest, ARowThatDeleteTookOutIsNotAskedAbout) {
    lvRecipients().SelectKey(QStringLiteral("C1"));
    QTest::keyClick(&lvRecipients(), Qt::Key_Delete);
    EXPECT_TRUE(Area->HasConfirmRecipients());
    lvRecipients().SelectKey(QStringLiteral("C3"));
    QTest::keyClick(&lvRecipients(), Qt::Key_Delete);
    EXPECT_FALSE(Area->HasConfirmRecipients());
}

TEST_F(ConfirmRecipientTest, TheOnlyRecipientUntickedStopsTheSendWithoutAMessage) {
    lvRecipients().Rows().RemoveKeys({QStringLiteral("C2"), QStringLiteral("C3")});
    Door.ExpectDialog([](QDialog& dialog) {
        DoubleClick(List(dialog), 0);
        Press(dialog, "cmdOkay");
    });
    QTest::mouseClick(&cmdSendNow(), Qt::LeftButton);
    EXPECT_EQ(lvRecipients().Rows().Count(), 0);
    EXPECT_TRUE(Office.MessageRows().isEmpty());
    EXPECT_EQ(txtMessage().Text(), QStringLiteral("Hello"));
    EXPECT_EQ(Busy.Value(), Busy::Idle);
    EXPECT_FALSE(Host.Calls.contains(QStringLiteral("StartTracking")));
}

TEST_F(ConfirmRecipientTest, WithEverybodyUntickedASecondPressAsksNothingAndSwitchesNothingOn) {
    lvRecipients().Rows().RemoveKeys({QStringLiteral("C2"), QStringLiteral("C3")});
    Door.ExpectDialog([](QDialog& dialog) {
        DoubleClick(List(dialog), 0);
        Press(dialog, "cmdOkay");
    });
    QTest::mouseClick(&cmdSendNow(), Qt::LeftButton);
    ASSERT_EQ(lvRecipients().Rows().Count(), 0);
    for (QPushButton* button : {&cmdSendNow(), &cmdSendLater()}) {
        ASSERT_TRUE(button->isEnabled()) << "the display was not refreshed";
        QTest::mouseClick(button, Qt::LeftButton);
        EXPECT_EQ(Door.Dialogs.size(), 1) << "no time for a message to nobody";
        EXPECT_TRUE(Host.Calls.isEmpty()) << "no poll";
        EXPECT_EQ(Busy.Value(), Busy::Idle);
    }
}

TEST_F(ConfirmRecipientTest, AllOfManyUntickedStopTheSendWithoutAMessage) {
    lvRecipients().Rows().RemoveKeys({QStringLiteral("C2")});
    for (qint16 id = 4; id <= 12; ++id) {
        AddRecipient(id, QStringLiteral("S%1").arg(id), true);
    }
    ASSERT_EQ(lvRecipients().Rows().Count(), 11);
    const auto untickAll = [](QDialog& dialog) {
        ASSERT_EQ(List(dialog).Rows().Count(), 11);
        for (int row = 0; row < 11; ++row) {
            List(dialog).EnsureVisible(row);
            DoubleClick(List(dialog), row);
            EXPECT_FALSE(List(dialog).Rows().At(row).IsChecked) << row;
        }
        Press(dialog, "cmdOkay");
    };
    Door.ExpectDialog(untickAll);
    QTest::mouseClick(&cmdSendNow(), Qt::LeftButton);
    EXPECT_EQ(lvRecipients().Rows().Count(), 0);
    EXPECT_EQ(RecipientContacts.Count(), 1) << "the one whose row was taken out alone";
    EXPECT_TRUE(Office.MessageRows().isEmpty());
    EXPECT_TRUE(History.ReadHistory().isEmpty());
    EXPECT_EQ(Tracker.SlotAt(0).msgID, 0);
    EXPECT_EQ(txtMessage().Text(), QStringLiteral("Hello"));
    EXPECT_EQ(Busy.Value(), Busy::Idle);
    EXPECT_TRUE(Host.Calls.isEmpty()) << "no reset, and no poll";
    EXPECT_EQ(Door.Dialogs.size(), 1);
}

TEST_F(ConfirmRecipientTest, AllUntickedBeforeAScheduleAsksForNoTime) {
    lvRecipients().Rows().RemoveKeys({QStringLiteral("C2")});
    Door.ExpectDialog([](QDialog& dialog) {
        DoubleClick(List(dialog), 0);
        DoubleClick(List(dialog), 1);
        Press(dialog, "cmdOkay");
    });
    QTest::mouseClick(&cmdSendLater(), Qt::LeftButton);
    EXPECT_EQ(Door.Dialogs, QStringList{QStringLiteral("Larkspan Messenger - Confirm Recipients")});
    EXPECT_EQ(lvRecipients().Rows().Count(), 0);
    EXPECT_TRUE(Office.MessageRows().isEmpty());
    EXPECT_EQ(Busy.Value(), Busy::Idle);
}

TEST_F(ConfirmRecipientTest, TheOthersGoOutWithoutBeingAsked) {
    Door.ExpectDialog([](QDialog& dialog) {
        DoubleClick(List(dialog), 0);
        DoubleClick(List(dialog), 1);
        Press(dialog, "cmdOkay");
    });
    QTest::mouseClick(&cmdSendNow(), Qt::LeftButton);
    ASSERT_EQ(Office.MessageRows().size(), 1);
    EXPECT_EQ(Office.MessageRows().first().value(QStringLiteral("msgRecipient")).toString(),
              QStringLiteral("Ann Costa"));
}

TEST_F(ConfirmRecipientTest, ACanceledConfirmationSendsNothing) {
    Door.ExpectDialog([](QDialog& dialog) { Press(dialog, "cmdCancel"); });
    QTest::mouseClick(&cmdSendNow(), Qt::LeftButton);
    EXPECT_TRUE(Office.MessageRows().isEmpty());
    EXPECT_EQ(lvRecipients().Rows().Count(), 3);
    EXPECT_EQ(Busy.Value(), Busy::Idle);
}

TEST_F(ConfirmRecipientTest, TheStateIsSendingWhileTheDialogOfSendNowIsOpenAndScheduleForSendLater) {
    qint32 state = -1;
    const auto answer = [this, &state](QDialog& dialog) {
        state = Busy.Value();
        Press(dialog, "cmdCancel");
    };
    Door.ExpectDialog(answer);
    QTest::mouseClick(&cmdSendNow(), Qt::LeftButton);
    EXPECT_EQ(state, Busy::Sending);
    Door.ExpectDialog(answer);
    QTest::mouseClick(&cmdSendLater(), Qt::LeftButton);
    EXPECT_EQ(state, Busy::ScheduleDialog);
    EXPECT_EQ(Busy.Value(), Busy::Idle);
}

}  // namespace
