#include "support/FakeEngine.h"
#include "tracking/HistoryBench.h"

#include <QPlainTextEdit>
#include <QPrintPreviewWidget>

namespace {

using HistoryActions = HistoryBench;

BoxRequest CancelQuestion(const QString& rest) {
    return {QStringLiteral("Larkspan Messenger"), QStringLiteral("Are you sure you want to CANCEL ") + rest,
            BoxIcon::Question, BoxButtons::YesNo};
}

TEST_F(HistoryActions, OfThreeSelectedTwoArePendingAndOnlyTheseAreCanceled) {
    const qint32 delivered = AddOwn(5, 30);
    const qint32 two = AddOwn(0, 20);
    const qint32 one = AddOwn(0, 10);
    Open();
    Select({one, two, delivered});
    EXPECT_EQ(Form->PendingCount(), 2);
    EXPECT_TRUE(Button("cmdCancel").isEnabled());
    Door.ExpectMenu(QStringLiteral("Cancel 2 Messages"));
    Office.Boxes.Expect(BoxAnswer::Yes);
    RightClick(delivered);
    EXPECT_EQ(Door.Menus.last(), (QStringList{QStringLiteral("Cancel 2 Messages"),
                                              QStringLiteral("New Message with 'Hello...'")}));
    EXPECT_EQ(Office.Boxes.Shown.last(), CancelQuestion(QStringLiteral("2 messages")));
    EXPECT_EQ(StatusOf(one), 2);
    EXPECT_EQ(StatusOf(two), 2);
    EXPECT_EQ(StatusOf(delivered), 5);
    EXPECT_EQ(Sentence(one), QStringLiteral(" The message was canceled. Canceled by user"));
}

TEST_F(HistoryActions, CancelIsOnOfferOnlyWhileAPendingMessageIsSelected) {
    const qint32 pending = AddOwn(0, 10);
    const qint32 sent = AddOwn(3, 20);
    Open();
    Select({sent});
    EXPECT_FALSE(Button("cmdCancel").isEnabled());
    Select({sent, pending});
    EXPECT_TRUE(Button("cmdCancel").isEnabled());
}

TEST_F(HistoryActions, AFirstRowThatIsPendingOffersToCancelAtOnce) {
    AddOwn(0);
    Open();
    EXPECT_TRUE(Button("cmdCancel").isEnabled());
}

TEST_F(HistoryActions, NoLeavesTheRowsAsTheyWereAndTheTimerOff) {
    const qint32 id = AddOwn(0);
    Open();
    Office.Boxes.Expect(BoxAnswer::No);
    Button("cmdCancel").click();
    EXPECT_EQ(Office.Boxes.Shown.last(), CancelQuestion(QStringLiteral("1 message")));
    EXPECT_EQ(StatusOf(id), 0);
    EXPECT_EQ(Sentence(id), QStringLiteral(" The message is waiting to be processed. "));
    EXPECT_FALSE(Timer().isActive());
}

TEST_F(HistoryActions, YesLeavesTheTimerOffToo) {
    AddOwn(0);
    Open();
    Office.Boxes.Expect(BoxAnswer::Yes);
    Button("cmdCancel").click();
    EXPECT_FALSE(Timer().isActive());
}

TEST_F(HistoryActions, ACancelInTheMiddleOfATickLeavesTheTimerOff) {
    AddOwn(0);
    Open();
    Office.Boxes.Expect(BoxAnswer::No);
    bool isPressed = false;
    Office.Pump.OnProcess = [&](int) {
        if (!isPressed) {
            isPressed = true;
            Button("cmdCancel").click();
        }
    };
    FireTimer();
    EXPECT_TRUE(isPressed);
    EXPECT_FALSE(Timer().isActive());
}

TEST_F(HistoryActions, AMessageThatTheGatewayTookStandsInTheListAndIsTrackedOn) {
    const qint32 taken = AddOwn(0, 10);
    const qint32 waiting = AddOwn(0, 20);
    Open();
    for (const qint32 id : {taken, waiting}) {
        Tracker.Track(id, QStringLiteral("Ann"), QStringLiteral("+3531"), QStringLiteral("Hi"));
    }
    Select({taken, waiting});
    SetStatus(taken, 1);
    Office.Boxes.Expect(BoxAnswer::Yes);
    QString told;
    bool isOpen = false;
    Door.ExpectDialog([&](QDialog& dialog) {
        isOpen = Office.OutboxDB().IsConnected();
        told = dialog.findChild<QPlainTextEdit*>(QStringLiteral("txtMessage"))->toPlainText();
        dialog.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    });
    Button("cmdCancel").click();
    EXPECT_EQ(Door.Dialogs.last(), QStringLiteral("Larkspan Messenger - Cancel Messages"));
    EXPECT_EQ(Door.Owner, Form.get());
    EXPECT_EQ(told,
              QStringLiteral("The following messages could not be canceled:\n\nMessage ID#%1\n").arg(taken));
    EXPECT_EQ(Tracker.SlotAt(0).msgID, taken);
    EXPECT_EQ(Tracker.SlotAt(1).msgID, 0) << "the canceled one is no longer tracked";
    EXPECT_EQ(StatusOf(waiting), 2);
    EXPECT_TRUE(isOpen) << "the list comes before the outbox is closed";
    EXPECT_FALSE(Office.OutboxDB().IsConnected());
}

TEST_F(HistoryActions, EachMessageThatCannotBeCanceledHasALineInTheOrderOfTheRows) {
    const qint32 older = AddOwn(0, 20);
    const qint32 newer = AddOwn(0, 10);
    Open();
    Select({older, newer});
    SetStatus(older, 1);
    SetStatus(newer, 3);
    Office.Boxes.Expect(BoxAnswer::Yes);
    QString told;
    Door.ExpectDialog([&](QDialog& dialog) {
        told = dialog.findChild<QPlainTextEdit*>(QStringLiteral("txtMessage"))->toPlainText();
        dialog.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    });
    Button("cmdCancel").click();
    EXPECT_TRUE(told.endsWith(QStringLiteral(":\n\nMessage ID#%1\nMessage ID#%2\n").arg(newer).arg(older)))
        << told.toStdString();
}

TEST_F(HistoryActions, AnOutboxThatCannotBeOpenedIsToldAndNothingIsCanceled) {
    const qint32 id = AddOwn(0);
    Open();
    const QString path = Office.OutboxDB().Filename;
    Office.Boxes.Expect(BoxAnswer::Yes);
    Office.Boxes.Expect();
    Office.OutboxDB().Filename = path + QStringLiteral(".gone");
    Office.Boxes.OnShow = [&] {
        if (Office.Boxes.Shown.last().Icon == BoxIcon::Critical) {
            Office.OutboxDB().Filename = path;
            SetStatus(id, 5);
        }
    };
    Button("cmdCancel").click();
    const BoxRequest box = Office.Boxes.Shown.last();
    EXPECT_TRUE(box.Text.startsWith(QStringLiteral("Could not open the Message database\r\nGE:0x80004005")))
        << box.Text.toStdString();
    EXPECT_EQ(box.Icon, BoxIcon::Critical);
    EXPECT_EQ(box.Title, QStringLiteral("Larkspan Messenger"));
    EXPECT_EQ(StatusOf(id), 5);
    EXPECT_TRUE(Sentence(id).contains(QStringLiteral("delivered"))) << "a last look comes all the same";
}

TEST_F(HistoryActions, TheMenuCancelsTheOnePendingMessageUnderTheNameOfTheRowClicked) {
    const qint32 pending = AddOwn(0, 10);
    const qint32 sent = AddOwn(3, 20,
                               {{QStringLiteral("msgRecipient"), QStringLiteral("Bob & Co")},
                                {QStringLiteral("msgText"), QStringLiteral("Hi")}});
    Open();
    Select({pending, sent});
    Door.ExpectMenu(QString());
    RightClick(sent);
    EXPECT_EQ(Door.Menus.last().first(), QStringLiteral("Cancel message to Bob & Co"));
}

TEST_F(HistoryActions, ARightClickBesideTheRowsDoesNothing) {
    AddOwn(0);
    Open();
    const QPoint below(20, Grid().viewport()->height() - 5);
    ASSERT_EQ(Grid().HitTest(below), nullptr);
    QTest::mouseClick(Grid().viewport(), Qt::RightButton, {}, below);
    EXPECT_TRUE(Door.Menus.isEmpty());
}

TEST_F(HistoryActions, InThePublicHistoryOnlyANewMessageIsOnOffer) {
    const qint32 id = AddRow(0, 10);
    Open(true);
    Select({id});
    Door.ExpectMenu(QString());
    RightClick(id);
    EXPECT_EQ(Door.Menus.last(), QStringList{QStringLiteral("New Message with 'Hello...'")});
}

TEST_F(HistoryActions, ANewMessageTakesTheWholeTextOfTheRowClicked) {
    const QString text = QStringLiteral("A text that is longer than the thirty characters of the menu");
    const qint32 id = AddOwn(5, 10, {{QStringLiteral("msgText"), text}});
    Open();
    Door.ExpectMenu(QStringLiteral("New Message with 'A text that is longer than the...'"));
    RightClick(id);
    EXPECT_EQ(Host.Calls,
              (QStringList{QStringLiteral("text ") + text, QStringLiteral("UpdateStateDisplay")}));
    EXPECT_FALSE(Form->isVisible());
}

TEST_F(HistoryActions, TheMenuKeyOpensTheMenuOfTheCurrentRow) {
    AddOwn(0);
    Open();
    Door.ExpectMenu(QString());
    QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(1, 1));
    QCoreApplication::sendEvent(&Grid(), &key);
    EXPECT_EQ(Door.Menus.size(), 1);
}

TEST_F(HistoryActions, ARowThatGoesBeforeItsMenuIsThereOpensNone) {
    const qint32 id = AddRow(5, 10);
    Open(true);
    Office.Pump.OnProcess = [&](int) {
        Office.Pump.OnProcess = {};
        Grid().DeleteAllRecords();
        Grid().Populate();
    };
    RightClick(id);
    EXPECT_TRUE(Door.Menus.isEmpty());
}

TEST_F(HistoryActions, ARowThatGoesWhileItsMenuIsOpenStillGivesItsText) {
    const qint32 id = AddRow(5, 10, {{QStringLiteral("msgText"), QStringLiteral("Keep me")}});
    Open(true);
    Door.OnMenu = [this] {
        Grid().DeleteAllRecords();
        Grid().Populate();
    };
    Door.ExpectMenu(QStringLiteral("New Message with 'Keep me...'"));
    RightClick(id);
    EXPECT_EQ(Host.Calls.value(0), QStringLiteral("text Keep me"));
}

TEST_F(HistoryActions, ATickWhileAMenuIsOpenMayTakeItsRowAndTheTextIsStillThatOfTheRowClicked) {
    QList<qint32> ids;
    for (int i = 0; i < 100; ++i) {
        ids.append(AddRow(5, 200 - i, {{QStringLiteral("msgText"), QStringLiteral("Text %1").arg(i)}}));
    }
    Open(true);
    Grid().scrollToBottom();
    Door.OnMenu = [this] {
        AddRow(0, 1);
        FireTimer();
    };
    Door.ExpectMenu(QStringLiteral("New Message with 'Text 0...'"));
    RightClick(ids.first());
    EXPECT_FALSE(Rows().contains(ids.first())) << "its record went";
    EXPECT_EQ(Rows().size(), 100);
    EXPECT_EQ(Host.Calls.value(0), QStringLiteral("text Text 0"));
}

TEST_F(HistoryActions, ATickWhileTheClearQuestionStandsShowsTheStatusAndTheAnswerStillClears) {
    const qint32 id = AddOwn(0);
    Open();
    int icon = -1;
    Office.Boxes.OnShow = [&] {
        SetStatus(id, 3);
        FireTimer();
        icon = RowOf(id).Items[0].Icon;
        EXPECT_FALSE(Form->grab().isNull());
    };
    Office.Boxes.Expect(BoxAnswer::Yes);
    Button("cmdClear").click();
    EXPECT_EQ(icon, 3);
    EXPECT_EQ(Grid().RowCount(), 0);
    EXPECT_TRUE(History.ReadHistory().isEmpty());
    EXPECT_TRUE(Timer().isActive());
}

TEST_F(HistoryActions, ATickWhileThePrintPreviewIsOpenShowsTheStatusAndLeavesThePagesWhole) {
    const qint32 id = AddRow(0, 10);
    Open(true);
    Door.ExpectDialog([&](QDialog& preview) {
        SetStatus(id, 5);
        AddRow(0, 1);
        FireTimer();
        EXPECT_EQ(RowOf(id).Items[0].Icon, 5);
        EXPECT_FALSE(preview.grab().isNull());
        preview.findChild<QPrintPreviewWidget*>()->updatePreview();
        EXPECT_FALSE(preview.grab().isNull());
        preview.hide();
    });
    Button("cmdPrint").click();
    EXPECT_EQ(Grid().RowCount(), 2);
}

TEST_F(HistoryActions, EnterPressesTheButtonThatHasTheFocusAndElsewhereCloses) {
    AddOwn(0);
    Open();
    Form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(Form.get()));
    Button("cmdClear").setFocus();
    Office.Boxes.Expect(BoxAnswer::No);
    QTest::keyClick(&Button("cmdClear"), Qt::Key_Return);
    EXPECT_EQ(Office.Boxes.Shown.size(), 1);
    Button("cmdCancel").setFocus();
    Office.Boxes.Expect(BoxAnswer::No);
    QTest::keyClick(&Button("cmdCancel"), Qt::Key_Return);
    EXPECT_EQ(Office.Boxes.Shown.size(), 2);
    Button("cmdPrint").setFocus();
    Door.ExpectDialog([](QDialog& dialog) { dialog.hide(); });
    QTest::keyClick(&Button("cmdPrint"), Qt::Key_Enter);
    EXPECT_TRUE(Form->isVisible());
    Grid().setFocus();
    QTest::keyClick(&Grid(), Qt::Key_Return);
    EXPECT_FALSE(Form->isVisible());
}

TEST_F(HistoryActions, ADoubleClickTakesTheTextWithoutUpdatingTheDisplay) {
    const qint32 id = AddOwn(5);
    Open();
    QTest::mouseDClick(Grid().viewport(), Qt::LeftButton, {}, PointOf(id));
    EXPECT_EQ(Host.Calls, QStringList{QStringLiteral("text Hello")});
    EXPECT_FALSE(Form->isVisible());
}

TEST_F(HistoryActions, ADoubleClickWithNoRowUnderItDoesNothing) {
    AddOwn(5);
    Open();
    QTest::mouseDClick(Grid().viewport(), Qt::LeftButton, {}, QPoint(20, Grid().viewport()->height() - 5));
    EXPECT_TRUE(Host.Calls.isEmpty());
    EXPECT_TRUE(Form->isVisible());
}

TEST_F(HistoryActions, ClearAsksAndKeepsEverythingOnNo) {
    const qint32 id = AddOwn(5);
    Open();
    Office.Boxes.Expect(BoxAnswer::No);
    Button("cmdClear").click();
    EXPECT_EQ(Office.Boxes.Shown.last(),
              (BoxRequest{QStringLiteral("Larkspan Messenger"),
                          QStringLiteral("Do you wish to clear your message history?"), BoxIcon::Question,
                          BoxButtons::YesNo}));
    EXPECT_EQ(Rows(), QList<qint32>{id});
    EXPECT_EQ(History.ReadHistory().size(), 1);
}

TEST_F(HistoryActions, ClearEmptiesGridAndFileAndTheTimerGoesOn) {
    const qint32 id = AddOwn(0);
    Open();
    Office.Boxes.Expect(BoxAnswer::Yes);
    Button("cmdClear").click();
    EXPECT_EQ(Grid().RowCount(), 0);
    EXPECT_EQ(Grid().RecordCount(), 0);
    EXPECT_TRUE(History.ReadHistory().isEmpty());
    EXPECT_FALSE(Button("cmdCancel").isEnabled());
    EXPECT_TRUE(Timer().isActive());
    SetStatus(id, 5);
    Form->UpdateHistory(false);  // writes to a grid without records do nothing
    EXPECT_EQ(Grid().RowCount(), 0);
}

TEST_F(HistoryActions, AfterClearTheMessagesThatCanChangeAreStillAskedFor) {
    const qint32 waiting = AddOwn(0);
    Open();
    Office.Boxes.Expect(BoxAnswer::Yes);
    Button("cmdClear").click();
    FakeEngine engine;
    Office.OutboxValues.OutboxDB =
        std::make_unique<DB>(DBServices{engine, Office.Time, Office.Pump, Office.Drives, Office.Folders});
    FireTimer();
    EXPECT_EQ(engine.Statements.filter(QStringLiteral("MsgID = %1 ").arg(waiting)).size(), 1)
        << engine.Statements.join(u'\n').toStdString();
}

TEST_F(HistoryActions, PrintShowsThePagesFirst) {
    AddOwn(5);
    Open();
    Door.ExpectDialog([](QDialog& dialog) { dialog.hide(); });
    Button("cmdPrint").click();
    EXPECT_EQ(Door.Dialogs.last(), QStringLiteral("Larkspan Messenger - Message History"));
}

}  // namespace
