#include "ComposeBench.h"

#include "core/NumberedFailure.h"

#include <QDateEdit>
#include <QTimeEdit>

namespace {

class SendTest : public ComposeBench {
protected:
    void SetUp() override {
        ComposeBench::SetUp();
        ShowWindow();
        txtMessage().SetText(QStringLiteral("Hello"));
    }
    void PressNow() { QTest::mouseClick(&cmdSendNow(), Qt::LeftButton); }
    void PressLater() { QTest::mouseClick(&cmdSendLater(), Qt::LeftButton); }
    /// One column of all rows of the outbox, in their order.
    QStringList Column(const char* name) {
        QStringList values;
        const QList<QVariantMap> rows = Office.MessageRows();
        for (const QVariantMap& row : rows) {
            values.append(row.value(QString::fromLatin1(name)).toString());
        }
        return values;
    }
    static void PressIn(QDialog& dialog, const char* button) {
        QTest::mouseClick(&FindIn<QPushButton>(dialog, button), Qt::LeftButton);
    }
    QStringList TrackedNumbers() {
        QStringList numbers;
        for (int slot = 0; slot < MessageTracker::SlotCount; ++slot) {
            if (Tracker.SlotAt(slot).msgID != 0) {
                numbers.append(Tracker.SlotAt(slot).number);
            }
        }
        return numbers;
    }
};

TEST_F(SendTest, TheButtonsNeedARecipientATextAndNothingToFillIn) {
    EXPECT_FALSE(cmdSendNow().isEnabled());
    AddRecipient(1, QStringLiteral("Byrne"));
    EXPECT_TRUE(cmdSendNow().isEnabled());
    EXPECT_TRUE(cmdSendLater().isEnabled());
    txtMessage().SetText(QString());
    EXPECT_FALSE(cmdSendNow().isEnabled());
    EXPECT_FALSE(cmdSendLater().isEnabled());
    txtMessage().SetText(QStringLiteral("   "));
    EXPECT_TRUE(cmdSendNow().isEnabled()) << "blanks are a text";
    txtMessage().SetText(QStringLiteral("Call @? today"));
    EXPECT_FALSE(cmdSendNow().isEnabled());
    EXPECT_FALSE(cmdSendLater().isEnabled());
    txtMessage().SetText(QStringLiteral("Call @ ? today"));
    EXPECT_TRUE(cmdSendLater().isEnabled());
}

TEST_F(SendTest, APressWritesARowForEachRecipientInListOrder) {
    AddRecipient(2, QStringLiteral("Costa"));
    AddRecipient(1, QStringLiteral("Byrne"));
    PressNow();
    EXPECT_EQ(Column("msgRecipient"),
              (QStringList{QStringLiteral("Ann Costa"), QStringLiteral("Ann Byrne")}));
    EXPECT_EQ(Column("msgText"), (QStringList{QStringLiteral("Hello  -"), QStringLiteral("Hello  -")}));
    EXPECT_EQ(Office.MessageRows().first().value(QStringLiteral("msgBodyTextSize")).toInt(), 5);
    EXPECT_EQ(History.ReadHistory().size(), 2);
    EXPECT_EQ(TrackedNumbers().size(), 2);
}

TEST_F(SendTest, TheHistoryReachesTheDiskOnceForASendHoweverItEnds) {
    const QString second = Office.Folders.ApplicationFolder() + QStringLiteral(".larkspan-history");
    History.AddToHistory(1, QStringLiteral("Before"), QStringLiteral("Hi"), Office.Time.Time);
    for (const bool isStopped : {false, true}) {
        for (qint16 id = 1; id <= 3; ++id) {
            AddRecipient(id, QStringLiteral("Byrne"));
        }
        if (isStopped) {
            RecipientContacts.RemoveByKey(QStringLiteral("C3"));
        }
        txtMessage().SetText(QStringLiteral("Hello"));
        Office.Files.HastyWrites = Office.Files.Syncs = 0;
        PressNow();
        EXPECT_EQ(Office.Files.HastyWrites, isStopped ? 2 : 3);
        EXPECT_EQ(Office.Files.Syncs, 1);
        EXPECT_FALSE(QFile::exists(second));
    }
    EXPECT_EQ(History.ReadHistory().size(), 6);
}

TEST_F(SendTest, APressWithAnotherMouseButtonIsNotTheFirstOfADoubleClick) {
    AddRecipient(1, QStringLiteral("Byrne"));
    Office.Keys.Down = {KeyState::Key::Control};
    const QPoint middle = cmdSendNow().rect().center();
    auto send = [&, time = quint64{1000}](QEvent::Type type, Qt::MouseButton button) mutable {
        const bool isRelease = type == QEvent::MouseButtonRelease;
        QMouseEvent event(type, middle, cmdSendNow().mapToGlobal(middle), button,
                          isRelease ? Qt::NoButton : button, Qt::NoModifier);
        event.setTimestamp(time += 10);
        QApplication::sendEvent(&cmdSendNow(), &event);
    };
    for (const Qt::MouseButton other : {Qt::RightButton, Qt::MiddleButton}) {
        send(QEvent::MouseButtonPress, other);
        send(QEvent::MouseButtonRelease, other);
        send(QEvent::MouseButtonDblClick, other);
        send(QEvent::MouseButtonRelease, other);
    }
    EXPECT_TRUE(Office.MessageRows().isEmpty());
    send(QEvent::MouseButtonPress, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, Qt::LeftButton);
    EXPECT_EQ(Office.MessageRows().size(), 1);
    send(QEvent::MouseButtonPress, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, Qt::LeftButton);
    EXPECT_EQ(Office.MessageRows().size(), 1) << "that was a double click";
}

TEST_F(SendTest, ASuccessfulSendClearsTheCompositionAndTracksFromNowOn) {
    AddRecipient(1, QStringLiteral("Byrne"));
    PressNow();
    EXPECT_EQ(lvRecipients().Rows().Count(), 0);
    EXPECT_EQ(RecipientContacts.Count(), 0);
    EXPECT_TRUE(txtMessage().Text().isEmpty());
    EXPECT_EQ(RecipientCaption(), QStringLiteral("Recipient List"));
    EXPECT_EQ(Host.Calls,
              (QStringList{QStringLiteral("ClearContactInfo"), QStringLiteral("ContactListFocus(true)"),
                           QStringLiteral("StartTracking")}));
    EXPECT_EQ(Busy.Value(), Busy::Idle);
    EXPECT_FALSE(cmdSendNow().isEnabled());
    txtMessage().undo();
    EXPECT_TRUE(txtMessage().Text().isEmpty()) << "a sent text does not come back by accident";
}

TEST_F(SendTest, TheStateIsSendingUntilThePollIsSwitchedOn) {
    AddRecipient(1, QStringLiteral("Byrne"));
    QList<qint32> states;
    Host.OnCall = [&] { states.append(Busy.Value()); };
    PressNow();
    EXPECT_EQ(states, (QList<qint32>{Busy::Sending, Busy::Sending, Busy::Idle}));
}

TEST_F(SendTest, APlaceToFillInIsSelectedAndNothingIsSent) {
    AddRecipient(1, QStringLiteral("Byrne"));
    txtMessage().SetText(QStringLiteral("Call @? or @?"));
    txtEndWidth().setFocus();
    Area->SendNow();
    EXPECT_EQ(txtMessage().textCursor().selectionStart(), 5);
    EXPECT_EQ(txtMessage().textCursor().selectionEnd(), 7);
    EXPECT_TRUE(txtMessage().hasFocus());
    EXPECT_EQ(Busy.Value(), Busy::Idle);
    txtEndWidth().setFocus();
    txtMessage().Select(0, 0);
    Area->SendLater();
    EXPECT_EQ(txtMessage().textCursor().selectionStart(), 5);
    EXPECT_EQ(txtMessage().textCursor().selectionEnd(), 7);
    EXPECT_TRUE(txtMessage().hasFocus());
    EXPECT_EQ(Busy.Value(), Busy::Idle);
    EXPECT_TRUE(Office.MessageRows().isEmpty());
    EXPECT_TRUE(Host.Calls.isEmpty());
}

TEST_F(SendTest, TheTimeOfAPressIsTakenWhenEverybodyIsConfirmed) {
    AddRecipient(1, QStringLiteral("Byrne"), true);
    Door.ExpectDialog([this](QDialog& dialog) {
        Office.Time.Time = QDateTime(QDate(2026, 3, 7), QTime(16, 5, 9));
        PressIn(dialog, "cmdOkay");
    });
    PressNow();
    EXPECT_EQ(Column("msgSendTime"), QStringList{QStringLiteral("2026-03-07 16:05:09")});
}

TEST_F(SendTest, WithCtrlHeldAllRowsAreWrittenAndListAndTextStay) {
    AddRecipient(1, QStringLiteral("Byrne"));
    AddRecipient(2, QStringLiteral("Costa"));
    Office.Keys.Down = {KeyState::Key::Control};
    PressNow();
    EXPECT_EQ(Column("msgRecipient").size(), 2);
    EXPECT_EQ(lvRecipients().Rows().Count(), 2);
    EXPECT_EQ(RecipientContacts.Count(), 2);
    EXPECT_EQ(txtMessage().Text(), QStringLiteral("Hello"));
    EXPECT_EQ(TrackedNumbers().size(), 2);
    EXPECT_EQ(Host.Calls, QStringList{QStringLiteral("StartTracking")});
}

TEST_F(SendTest, CtrlCountsAtTheClickAndNotAfterTheDialog) {
    AddRecipient(1, QStringLiteral("Byrne"), true);
    Office.Keys.Down = {KeyState::Key::Control};
    Door.ExpectDialog([this](QDialog& dialog) {
        Office.Keys.Down.clear();
        PressIn(dialog, "cmdOkay");
    });
    PressNow();
    EXPECT_EQ(Column("msgRecipient").size(), 1);
    EXPECT_EQ(lvRecipients().Rows().Count(), 1);
    Door.ExpectDialog([this](QDialog& dialog) {
        Office.Keys.Down = {KeyState::Key::Control};
        PressIn(dialog, "cmdOkay");
    });
    PressNow();
    EXPECT_EQ(Column("msgRecipient").size(), 2);
    EXPECT_EQ(lvRecipients().Rows().Count(), 0);
}

TEST_F(SendTest, ALongSurnamePushesOneRecipientOverTheLimitAndThatOneStays) {
    AddRecipient(1, QString(60, u'n'));
    AddRecipient(2, QStringLiteral("Costa"));
    const QString text = QStringLiteral("@SN") + QString(120, u'x');
    txtMessage().SetText(text);
    PressNow();
    EXPECT_EQ(Column("msgRecipient"), QStringList{QStringLiteral("Ann Costa")});
    EXPECT_EQ(lvRecipients().Rows().KeyList(), QStringList{QStringLiteral("C1")});
    EXPECT_EQ(txtMessage().Text(), text);
    EXPECT_EQ(RecipientCaption(), QStringLiteral("Recipient List [1]"));
    EXPECT_FALSE(Host.Calls.contains(QStringLiteral("ClearContactInfo")));
    EXPECT_TRUE(cmdSendNow().isEnabled());
}

TEST_F(SendTest, AtSendTimeBracketsCountOnce) {
    AddRecipient(1, QStringLiteral("Byrne"));
    SetMaxMessageSize(204);
    txtMessage().SetText(QString(100, u'['));
    EXPECT_EQ(Used(), QStringLiteral("200"));
    EXPECT_EQ(Left(), QStringLiteral("0"));
    Office.OutboxValues.MaxMessageSize = 160;  // room for 104 characters, none for 204 units
    Area->SendNow();
    EXPECT_EQ(Column("msgText"), QStringList{QString(100, u'[') + QStringLiteral("  -")});
}

TEST_F(SendTest, LeadingBlanksAreTrimmedAndTheBodySizeCountsTheTrimmedText) {
    AddRecipient(1, QStringLiteral("Byrne"));
    txtMessage().SetText(QStringLiteral("   Dear @FN @SN  "));
    PressNow();
    ASSERT_EQ(Office.MessageRows().size(), 1);
    EXPECT_EQ(Column("msgText"), QStringList{QStringLiteral("Dear Ann Byrne  -")});
    EXPECT_EQ(Office.MessageRows().first().value(QStringLiteral("msgBodyTextSize")).toInt(), 14);
    EXPECT_EQ(History.ReadHistory().first().Text, QStringLiteral("Dear @FN @SN"));
}

TEST_F(SendTest, SignatureAndTailGoOutBehindTheMessage) {
    AddRecipient(1, QStringLiteral("Byrne"));
    SetTails({QStringLiteral("Hartley House")}, {0});
    txtEndWidth().setText(QStringLiteral(" Front Desk "));
    PressNow();
    EXPECT_EQ(Column("msgText"), QStringList{QStringLiteral("Hello : Front Desk - Hartley House")});
}

TEST_F(SendTest, APrivateContactIsSentToItsTrueNumberAndTrackedWithoutIt) {
    Contact contact;
    contact.SetID(1);
    contact.Surname = QStringLiteral("Byrne");
    contact.PhoneNumber = QStringLiteral("+353861234567");
    contact.IsPrivate = true;
    AddressContacts.Add(contact);
    Area->AddKeyToRecipients(QStringLiteral("C1"), false);
    Area->UpdateStateDisplay();
    PressNow();
    EXPECT_EQ(Column("msgAddress"), QStringList{QStringLiteral("+353861234567")});
    EXPECT_EQ(TrackedNumbers(), QStringList{QStringLiteral("(Private Number)")});
}

TEST_F(SendTest, AnOutboxThatCannotBeOpenedLeavesTheCompositionAsItIs) {
    AddRecipient(1, QStringLiteral("Byrne"));
    Office.OutboxDB().Filename = QStringLiteral("/nowhere/smsmessages.mdb");
    Office.Boxes.Expect();
    PressNow();
    ASSERT_EQ(Office.Boxes.Shown.size(), 1);
    EXPECT_EQ(Office.Boxes.Shown.first().Title, QStringLiteral("Larkspan Messenger"));
    EXPECT_TRUE(
        Office.Boxes.Shown.first().Text.startsWith(QStringLiteral("Could not open Outbox Database\r\n")));
    EXPECT_EQ(Office.Boxes.Shown.first().Icon, BoxIcon::Critical);
    EXPECT_EQ(lvRecipients().Rows().Count(), 1);
    EXPECT_EQ(RecipientContacts.Count(), 1);
    EXPECT_EQ(txtMessage().Text(), QStringLiteral("Hello"));
    EXPECT_TRUE(TrackedNumbers().isEmpty());
    EXPECT_EQ(Busy.Value(), Busy::Idle);
    EXPECT_EQ(Host.Calls, QStringList{QStringLiteral("StartTracking")});
}

TEST_F(SendTest, ARowThatCannotBeWrittenKeepsItsRecipientAndTheOthersAreSent) {
    AddRecipient(1, QStringLiteral("Byrne"));
    AddRecipient(2, QStringLiteral("Costa"));
    Office.ExecuteOnOutbox(
        QStringLiteral("CREATE TRIGGER refuse BEFORE INSERT ON Message WHEN NEW.msgRecipient = 'Ann Byrne' "
                       "BEGIN SELECT RAISE(ABORT, 'refused'); END"));
    Office.Boxes.Expect();
    PressNow();
    EXPECT_EQ(Column("msgRecipient"), QStringList{QStringLiteral("Ann Costa")});
    EXPECT_EQ(lvRecipients().Rows().KeyList(), QStringList{QStringLiteral("C1")});
    EXPECT_EQ(txtMessage().Text(), QStringLiteral("Hello"));
    EXPECT_EQ(History.ReadHistory().size(), 1);
    EXPECT_EQ(TrackedNumbers().size(), 1);
}

TEST_F(SendTest, ARowWithoutItsContactStopsTheLoopAndTheProgramGoesOn) {
    AddRecipient(1, QStringLiteral("Byrne"));
    AddRecipient(2, QStringLiteral("Costa"));
    RecipientContacts.RemoveByKey(QStringLiteral("C2"));
    PressNow();
    EXPECT_EQ(Column("msgRecipient"), QStringList{QStringLiteral("Ann Byrne")});
    EXPECT_EQ(lvRecipients().Rows().Count(), 2) << "recipients are not removed";
    EXPECT_EQ(Busy.Value(), Busy::Idle);
    EXPECT_EQ(Host.Calls, QStringList{QStringLiteral("StartTracking")});
    EXPECT_TRUE(cmdSendNow().isEnabled());
}

TEST_F(SendTest, ANumberBeyond32767IsWrittenButNeitherTrackedNorInTheHistory) {
    Office.AddMessageRow({{QStringLiteral("msgID"), 32767},
                          {QStringLiteral("msgRecipient"), QStringLiteral("x")},
                          {QStringLiteral("msgText"), QStringLiteral("x")}});
    AddRecipient(1, QStringLiteral("Byrne"));
    PressNow();
    EXPECT_EQ(Column("msgID").last(), QStringLiteral("32768"));
    EXPECT_TRUE(History.ReadHistory().isEmpty());
    EXPECT_TRUE(TrackedNumbers().isEmpty());
    EXPECT_EQ(lvRecipients().Rows().Count(), 1);
    EXPECT_EQ(txtMessage().Text(), QStringLiteral("Hello"));
    EXPECT_EQ(Busy.Value(), Busy::Idle);
}

TEST_F(SendTest, AFailingResetIsLoggedAndReturns) {
    AddRecipient(1, QStringLiteral("Byrne"));
    LogToFile();
    Host.OnCall = [] {
        throw NumberedFailure(91, QStringLiteral("gone"), QStringLiteral("ShowContactInfo"));
    };
    Area->Reset();
    EXPECT_TRUE(LogText().endsWith(QStringLiteral("Reset Error 91 gone ShowContactInfo\n")))
        << LogText().toStdString();
    EXPECT_EQ(lvRecipients().Rows().Count(), 1) << "it stops at the failing step";
}

TEST_F(SendTest, AFailingSwitchOfTheButtonsIsLoggedAndTheProgramGoesOn) {
    /// Fails as soon as the button is switched on or off.
    class Refusal final : public QObject {
    public:
        bool eventFilter(QObject* /*watched*/, QEvent* event) override {
            if (event->type() == QEvent::EnabledChange) {
                throw NumberedFailure(91, QStringLiteral("no button"), QStringLiteral("cmdSendNow"));
            }
            return false;
        }
    };
    LogToFile();
    Refusal refusal;
    cmdSendNow().installEventFilter(&refusal);
    AddRecipient(1, QStringLiteral("Byrne"));
    EXPECT_TRUE(LogText().endsWith(QStringLiteral("EnableButtons Error 91 no button cmdSendNow\n")))
        << LogText().toStdString();
    EXPECT_EQ(LogText().count(QStringLiteral("EnableButtons Error ")), 1);
    EXPECT_EQ(RecipientCaption(), QStringLiteral("Recipient List [1]"));
    cmdSendNow().removeEventFilter(&refusal);
    Area->UpdateStateDisplay();
    EXPECT_TRUE(cmdSendNow().isEnabled());
}

TEST_F(SendTest, AScheduleForTomorrowWrittenTodayGivesTodayAndThatTime) {
    AddRecipient(1, QStringLiteral("Byrne"));
    txtMessage().SetText(QStringLiteral("On @TD in @MN"));
    Door.ExpectDialog([this](QDialog& dialog) {
        EXPECT_EQ(Busy.Value(), Busy::ScheduleDialog);
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Larkspan Messenger - Schedule"));
        FindIn<QDateEdit>(dialog, "dtDate").setDate(QDate(2026, 3, 8));
        FindIn<QTimeEdit>(dialog, "dtTime").setTime(QTime(9, 15));
        PressIn(dialog, "cmdOK");
    });
    PressLater();
    ASSERT_EQ(Office.MessageRows().size(), 1);
    EXPECT_EQ(Column("msgSendTime"), QStringList{QStringLiteral("2026-03-08 09:15:00")});
    EXPECT_TRUE(Column("msgText").first().startsWith(QStringLiteral("On 07.Mar in Mar")));
    EXPECT_EQ(Door.Owner, &Window);
    EXPECT_EQ(Busy.Value(), Busy::Idle);
    EXPECT_FALSE(Host.Calls.contains(QStringLiteral("StartTracking")))
        << "the poll is not touched on this path";
    EXPECT_EQ(lvRecipients().Rows().Count(), 0);
}

TEST_F(SendTest, SendLaterTakesTheRecipientsOutEvenWithCtrlHeld) {
    AddRecipient(1, QStringLiteral("Byrne"));
    Office.Keys.Down = {KeyState::Key::Control};
    Door.ExpectDialog([](QDialog& dialog) { PressIn(dialog, "cmdOK"); });
    PressLater();
    EXPECT_EQ(Office.MessageRows().size(), 1);
    EXPECT_EQ(lvRecipients().Rows().Count(), 0);
}

TEST_F(SendTest, TheStateIsSendingWhileTheScheduledRowsAreWritten) {
    AddRecipient(1, QStringLiteral("Byrne"));
    QList<qint32> states;
    Host.OnCall = [&] { states.append(Busy.Value()); };
    Door.ExpectDialog([](QDialog& dialog) { PressIn(dialog, "cmdOK"); });
    PressLater();
    EXPECT_EQ(states, (QList<qint32>{Busy::Sending, Busy::Sending}));
}

TEST_F(SendTest, ACanceledScheduleChangesNothingNotEvenTheFocusInTheList) {
    AddRecipient(1, QStringLiteral("Byrne"));
    AddRecipient(2, QStringLiteral("Costa"));
    lvRecipients().SelectKey(QStringLiteral("C2"));
    lvRecipients().setFocus();
    const QList<RecordingDoor::DialogAnswer> ways = {
        [](QDialog& dialog) { PressIn(dialog, "cmdCancel"); },
        [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
        [](QDialog& dialog) { dialog.close(); },
    };
    for (const auto& way : ways) {
        Door.ExpectDialog(way);
        Area->SendLater();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&Window));
        EXPECT_TRUE(Office.MessageRows().isEmpty());
        EXPECT_EQ(lvRecipients().SelectedKeys(), QStringList{QStringLiteral("C2")});
        EXPECT_EQ(lvRecipients().CurrentKey(), QStringLiteral("C2"));
        EXPECT_TRUE(lvRecipients().hasFocus());
        EXPECT_EQ(txtMessage().Text(), QStringLiteral("Hello"));
        EXPECT_EQ(Busy.Value(), Busy::Idle);
        EXPECT_TRUE(Host.Calls.isEmpty());
    }
}

TEST_F(SendTest, SendLaterAsksForConfirmationBeforeTheTime) {
    AddRecipient(1, QStringLiteral("Byrne"), true);
    Door.ExpectDialog([](QDialog& dialog) { PressIn(dialog, "cmdOkay"); });
    Door.ExpectDialog([](QDialog& dialog) { PressIn(dialog, "cmdCancel"); });
    PressLater();
    EXPECT_EQ(Door.Dialogs, (QStringList{QStringLiteral("Larkspan Messenger - Confirm Recipients"),
                                         QStringLiteral("Larkspan Messenger - Schedule")}));
    Door.ExpectDialog([](QDialog& dialog) { PressIn(dialog, "cmdCancel"); });
    PressLater();
    EXPECT_EQ(Door.Dialogs.size(), 3) << "without confirmation nobody is asked for a time";
}

TEST_F(SendTest, AltSAndAltLPressTheButtons) {
    AddRecipient(1, QStringLiteral("Byrne"));
    Office.Keys.Down = {KeyState::Key::Control};
    QTest::keyClick(&Window, Qt::Key_S, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return Office.MessageRows().size() == 1; }));
    Door.ExpectDialog([](QDialog& dialog) { PressIn(dialog, "cmdCancel"); });
    QTest::keyClick(&Window, Qt::Key_L, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return Door.Dialogs.size() == 1; }));
}

}  // namespace
