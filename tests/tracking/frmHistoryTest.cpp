#include "tracking/frmHistory.h"

#include "controls/Icons.h"
#include "tracking/HistoryBench.h"

#include <QHeaderView>

namespace {

using HistoryWindow = HistoryBench;

TEST_F(HistoryWindow, OfAFirstUserIsEmptyAndSaysNothing) {
    Open();
    EXPECT_EQ(Grid().RowCount(), 0);
    EXPECT_FALSE(Button("cmdCancel").isEnabled());
    EXPECT_TRUE(Timer().isActive());
}

TEST_F(HistoryWindow, ShowsTheNewestSendTimeFirstWithTheBodyOnOneLine) {
    const qint32 old = AddOwn(5, 120,
                              {{QStringLiteral("msgText"), QStringLiteral("One\r\ntwo - Tail")},
                               {QStringLiteral("msgBodyTextSize"), 8}});
    const qint32 recent = AddOwn(3, 5);
    Open();
    EXPECT_EQ(Rows(), (QList<qint32>{recent, old}));
    EXPECT_EQ(RowOf(old).PreviewText, QStringLiteral("One two"));
    EXPECT_EQ(RowOf(old).TextOf(1), QStringLiteral("07 Mar 12:30"));
    EXPECT_EQ(RowOf(old).TextOf(2), QStringLiteral("Ann"));
    EXPECT_EQ(RowOf(old).TextOf(0), QString());
    EXPECT_EQ(RowOf(old).Items[1].TextColour, QColor(92, 92, 92));
    for (int item = 0; item < 3; ++item) {
        EXPECT_EQ(RowOf(old).Items[item].BackColour, QColor(255, 255, 255)) << item;
    }
    EXPECT_EQ(Form->windowTitle(), QStringLiteral("  Larkspan Messenger - Message History"));
}

TEST_F(HistoryWindow, WithoutABodySizeShowsTheWholeText) {
    const qint32 none = AddOwn(0, 1, {{QStringLiteral("msgText"), QStringLiteral("Hello - Tail")}});
    const qint32 zero = AddOwn(0, 2,
                               {{QStringLiteral("msgText"), QStringLiteral("Hello - Tail")},
                                {QStringLiteral("msgBodyTextSize"), 0}});
    Open();
    EXPECT_EQ(RowOf(none).PreviewText, QStringLiteral("Hello - Tail"));
    EXPECT_EQ(RowOf(zero).PreviewText, QStringLiteral("Hello - Tail"));
}

TEST_F(HistoryWindow, HasThreeColumnsAndThePublicOneAFourth) {
    Open();
    EXPECT_EQ(Grid().model()->columnCount(), 3);
    EXPECT_EQ(Grid().ColumnCaption(1), QStringLiteral("Time"));
    EXPECT_EQ(Grid().ColumnCaption(2), QStringLiteral("Recipient"));
    EXPECT_EQ(Grid().header()->sectionSize(0), 32);
    EXPECT_EQ(Grid().header()->length(), Grid().viewport()->width() - 4);
    Open(true);
    EXPECT_EQ(Grid().model()->columnCount(), 4);
    EXPECT_EQ(Grid().ColumnCaption(3), QStringLiteral("From"));
    EXPECT_EQ(Form->windowTitle(), QStringLiteral("  Larkspan Messenger - Public Message History"));
    for (const char* name : {"cmdCancel", "cmdClear", "cmdPrint"}) {
        EXPECT_TRUE(Button(name).isHidden()) << name;
    }
    EXPECT_FALSE(Button("cmdClose").isHidden());
}

TEST_F(HistoryWindow, OfALongHistoryTheHundredNewestAreShown) {
    QList<qint32> ids;
    for (int i = 0; i < 103; ++i) {
        ids.append(AddOwn(5, 200 - i));
    }
    Open();
    EXPECT_EQ(Grid().RowCount(), 100);
    EXPECT_EQ(Rows().first(), ids.last());
    EXPECT_FALSE(Rows().contains(ids[2]));
    EXPECT_TRUE(Rows().contains(ids[3]));
}

TEST_F(HistoryWindow, ShowsOnlyThisWorkstationsOwnMessages) {
    AddRow(5);
    const qint32 own = AddOwn(5);
    Open();
    EXPECT_EQ(Rows(), QList<qint32>{own});
}

TEST_F(HistoryWindow, AMessageThatIsGoneFromTheOutboxHasNoRowAndIsNeverAskedForAgain) {
    const qint32 old = AddOwn(0, 30);
    const qint32 gone = AddOwn(0, 20);  // slot 1, to which the record of `old` belongs
    const qint32 recent = AddOwn(0, 10);
    Office.ExecuteOnOutbox(QStringLiteral("DELETE FROM Message WHERE msgID = %1").arg(gone));
    Open();
    EXPECT_EQ(Rows(), (QList<qint32>{recent, old}));
    Office.ExecuteOnOutbox(QStringLiteral("INSERT INTO Message (msgID, msgStatus) VALUES (%1, 5)").arg(gone));
    Form->UpdateHistory(false);
    EXPECT_EQ(RowOf(old).Items[0].Icon, 0);
}

TEST_F(HistoryWindow, TellsEachStatusByIconSentenceAndColour) {
    const qint32 noTime = AddOwn(5);
    const qint32 failed = AddOwn(7, 61, {{QStringLiteral("msgDeliveryStatus"), 65}});
    const qint32 canceled =
        AddOwn(2, 62, {{QStringLiteral("msgErrorReason"), QStringLiteral("Canceled by user")}});
    const qint32 odd = AddOwn(9, 63);
    Open();
    EXPECT_EQ(Sentence(noTime), QStringLiteral(" The message has been delivered. "));
    EXPECT_EQ(RowOf(noTime).Items[0].TextColour, QColor(0, 128, 0));
    EXPECT_EQ(Sentence(failed), QStringLiteral(" The message could not be delivered. [0x41] "));
    EXPECT_EQ(RowOf(failed).Items[0].Icon, 6);
    EXPECT_EQ(RowOf(failed).Items[0].TextColour, QColor(128, 0, 0));
    EXPECT_EQ(Sentence(canceled), QStringLiteral(" The message was canceled. Canceled by user"));
    EXPECT_EQ(Sentence(odd), QStringLiteral(" The message status [9] is unusual. "));
    EXPECT_EQ(RowOf(odd).Items[0].Icon, 8);
    const QStringList names = {
        QStringLiteral("waiting"),     QStringLiteral("sending"),     QStringLiteral("canceled"),
        QStringLiteral("enroute"),     QStringLiteral("failed"),      QStringLiteral("delivered"),
        QStringLiteral("undelivered"), QStringLiteral("unconfirmed"), QStringLiteral("unusual")};
    for (int icon = 0; icon < names.size(); ++icon) {
        const QIcon drawn = Icons::Get(QStringLiteral("history-") + names[icon]);
        ASSERT_FALSE(drawn.isNull());
        EXPECT_EQ(Grid().Image(icon).pixmap(24).toImage(), drawn.pixmap(24).toImage()) << icon;
    }
}

TEST_F(HistoryWindow, FollowsTheStatusAtEachPass) {
    const qint32 id = AddOwn(0);
    Open();
    EXPECT_EQ(Sentence(id), QStringLiteral(" The message is waiting to be processed. "));
    SetStatus(id, 3);
    Form->UpdateHistory(false);
    EXPECT_EQ(Sentence(id), QStringLiteral(" The message is en route with the network operator. "));
    EXPECT_EQ(RowOf(id).Items[0].Icon, 3);
}

TEST_F(HistoryWindow, AsksOnceMoreForFinalMessagesAndThenNeverAgain) {
    const qint32 id = AddOwn(5);
    Open();
    SetStatus(id, 6);
    Form->UpdateHistory(false);
    EXPECT_EQ(RowOf(id).Items[0].Icon, 7) << "the first pass behind the load asks for every message";
    SetStatus(id, 5);
    Form->UpdateHistory(false);
    EXPECT_EQ(RowOf(id).Items[0].Icon, 7) << "final by now";
}

TEST_F(HistoryWindow, FindsTheRecordByItsSlotWhereOrdersDiffer) {
    // Submitted later, but scheduled for earlier: newest in the file, second on the screen.
    const qint32 first = AddOwn(0, 10);
    const qint32 second = AddOwn(0, 20);
    Open();
    EXPECT_EQ(Rows(), (QList<qint32>{first, second}));
    SetStatus(second, 7);  // slot 0
    Form->UpdateHistory(false);
    EXPECT_EQ(RowOf(first).Items[0].Icon, 6);
    EXPECT_EQ(RowOf(second).Items[0].Icon, 0);
}

TEST_F(HistoryWindow, EachMessageOfOneSendShowsItsOwnStatus) {
    QList<qint32> ids;
    for (const char* name : {"Ann", "Bob", "Cid", "Dan"}) {
        ids.append(AddOwn(0, 10, {{QStringLiteral("msgRecipient"), QString::fromLatin1(name)}}));
    }
    Open();
    EXPECT_EQ(Rows(), (QList<qint32>{ids[3], ids[2], ids[1], ids[0]}));
    const QList<qint32> statuses = {5, 7, 3, 2};
    for (int i = 0; i < ids.size(); ++i) {
        SetStatus(ids[i], statuses[i]);
    }
    Form->UpdateHistory(false);
    for (int i = 0; i < ids.size(); ++i) {
        EXPECT_EQ(RowOf(ids[i]).Items[0].Value.toInt(), statuses[i]) << i;
    }
}

TEST_F(HistoryWindow, SortedByAnotherColumnItStillFindsTheRecordByItsSlot) {
    const qint32 zoe = AddOwn(0, 20, {{QStringLiteral("msgRecipient"), QStringLiteral("Zoe")}});
    const qint32 ann = AddOwn(0, 10, {{QStringLiteral("msgRecipient"), QStringLiteral("Ann")}});
    Open();
    Grid().sortByColumn(2, Qt::DescendingOrder);
    ASSERT_EQ(Rows(), (QList<qint32>{zoe, ann}));
    SetStatus(ann, 5);
    Form->UpdateHistory(false);
    EXPECT_EQ(RowOf(ann).Items[0].Icon, 5);
    EXPECT_EQ(RowOf(zoe).Items[0].Icon, 0);
}

TEST_F(HistoryWindow, ColumnsAreAsWideAsTheirSamplesAndSortedByTimeNewestFirst) {
    Open();
    const QFontMetrics metrics = Grid().fontMetrics();
    constexpr int MostMargin = 12;
    const auto expectSample = [&](int column, const QString& sample) {
        const int width = metrics.horizontalAdvance(sample);
        EXPECT_GE(Grid().header()->sectionSize(column), width) << column;
        EXPECT_LE(Grid().header()->sectionSize(column), width + MostMargin) << column;
    };
    expectSample(1, QStringLiteral("00 www 00:00"));
    EXPECT_EQ(Grid().header()->sortIndicatorSection(), 1);
    EXPECT_EQ(Grid().header()->sortIndicatorOrder(), Qt::DescendingOrder);
    EXPECT_TRUE(Grid().IsPreviewMode());
    EXPECT_EQ(Grid().header()->sectionResizeMode(0), QHeaderView::Fixed);
    EXPECT_EQ(Grid().ColumnAlignment(0) & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
    Open(true);
    expectSample(1, QStringLiteral("00 www 00:00"));
    expectSample(2, QStringLiteral("wwwwPeter M. Merriottwwww"));
}

TEST_F(HistoryWindow, TakesTheIconOfTheMainWindow) {
    QWidget main;
    QPixmap drawing(16, 16);
    drawing.fill(Qt::red);
    main.setWindowIcon(QIcon(drawing));
    const frmHistory form(Services(), &main);
    EXPECT_EQ(form.windowIcon().cacheKey(), main.windowIcon().cacheKey());
}

TEST_F(HistoryWindow, TwoNewMessagesOfOnePassStandInTheOrderOfTheirTimes) {
    AddRow(5, 60);
    Open(true);
    const qint32 older = AddRow(0, 10);
    const qint32 newer = AddRow(0, 5);
    Form->UpdateHistory(false);
    EXPECT_EQ(Rows().mid(0, 2), (QList<qint32>{newer, older}));
}

TEST_F(HistoryWindow, ACorruptHistoryFileIsToldOnOpening) {
    QFile file(Office.Folders.ApplicationFolder() + QStringLiteral("history.sms"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(1070, 'x'));
    file.close();
    Office.Boxes.Expect();
    Open();
    EXPECT_EQ(Grid().RowCount(), 0);
    EXPECT_FALSE(file.exists());
}

TEST_F(HistoryWindow, ThePublicOneSaysWhoSent) {
    const qint32 signedOne = AddRow(5, 10,
                                    {{QStringLiteral("msgSignature"), QStringLiteral("Reception")},
                                     {QStringLiteral("msgStation"), QStringLiteral("DESK1")}});
    const qint32 bare = AddRow(5, 20, {{QStringLiteral("msgStation"), QStringLiteral("DESK2")}});
    Open(true);
    EXPECT_EQ(RowOf(signedOne).TextOf(3), QStringLiteral("Reception on DESK1"));
    EXPECT_EQ(RowOf(bare).TextOf(3), QStringLiteral("DESK2"));
    EXPECT_EQ(RowOf(bare).Items[3].TextColour, QColor(92, 92, 92));
}

TEST_F(HistoryWindow, OfThePublicOneTheOldestGoesWhenANewMessageComes) {
    QList<qint32> ids;
    for (int i = 0; i < 100; ++i) {
        ids.append(AddRow(5, 200 - i));
    }
    Open(true);
    ASSERT_EQ(Grid().RecordCount(), 100);
    const qint32 fresh = AddRow(0, 1);
    Form->UpdateHistory(false);
    EXPECT_EQ(Grid().RecordCount(), 100);
    EXPECT_EQ(Rows().first(), fresh);
    EXPECT_EQ(HistoryRows::MessageIDOf(Grid().Record(0)), fresh);
    EXPECT_FALSE(Rows().contains(ids.first()));
    SetStatus(fresh, 3);
    Form->UpdateHistory(false);
    EXPECT_EQ(RowOf(fresh).Items[0].Icon, 3) << "slot 0 is its own";
}

TEST_F(HistoryWindow, InThePublicOneAScheduledMessageComesInAMinuteBeforeItsTime) {
    const qint32 later = AddRow(0, -3);
    Open(true);
    EXPECT_FALSE(Rows().contains(later));
    Office.Time.Time = Office.Time.Time.addSecs(119);
    Form->UpdateHistory(false);
    EXPECT_FALSE(Rows().contains(later));
    Office.Time.Time = Office.Time.Time.addSecs(1);
    Form->UpdateHistory(false);
    EXPECT_TRUE(Rows().contains(later));
}

TEST_F(HistoryWindow, ThePublicOneKeepsSelectionAndCursorWhenARowComesIn) {
    const qint32 id = AddRow(3, 30);
    AddRow(3, 40);
    Open(true);
    Select({id});
    AddRow(0, 1);
    Form->UpdateHistory(false);
    ASSERT_EQ(Grid().SelectedRecords().size(), 1);
    EXPECT_EQ(HistoryRows::MessageIDOf(Grid().SelectedRecords().first()), id);
}

TEST_F(HistoryWindow, StripTailTakesOffWhatWasPutBehindAMessage) {
    Host.Tail = QStringLiteral("Corrib Ltd");
    Host.Signature = QStringLiteral("Reception");
    Open();
    EXPECT_EQ(Form->StripTail(QStringLiteral(" Hello : Reception - Corrib Ltd ")), QStringLiteral("Hello"));
    EXPECT_EQ(Form->StripTail(QStringLiteral("Hello")), QStringLiteral("Hello"));
    EXPECT_EQ(Form->StripTail(QStringLiteral("Hello : Reception -")), QStringLiteral("Hello"));
    EXPECT_EQ(Form->StripTail(QStringLiteral("Hello : Somebody - Corrib Ltd")),
              QStringLiteral("Hello : Somebody -"));
}

TEST_F(HistoryWindow, CloseAndEscapeHideIt) {
    AddOwn(5);
    Open();
    Button("cmdClose").click();
    EXPECT_FALSE(Form->isVisible());
    Form->show();
    QTest::keyClick(&Grid(), Qt::Key_Escape);
    EXPECT_FALSE(Form->isVisible());
}

}  // namespace
