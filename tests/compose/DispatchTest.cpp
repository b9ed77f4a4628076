#include "compose/DispatchFixture.h"

#include "core/Dates.h"
#include "core/Numbers.h"

#include <QFile>
#include <QLocale>

#include <stdexcept>

namespace {

QString Bytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

using DispatchTest = DispatchFixture;

}  // namespace

TEST(Station, IsTheComputerAndTheUserInUpperCase) {
    qputenv("COMPUTERNAME", "desk7");
    qputenv("USERNAME", "aoife");
    EXPECT_EQ(Dispatch::GetStation(), u"desk7\\AOIFE");
}

TEST(Station, HasAnEmptyPieceForAnUnsetVariable) {
    qunsetenv("COMPUTERNAME");
    qputenv("USERNAME", "aoife");
    EXPECT_EQ(Dispatch::GetStation(), u"\\AOIFE");
    qunsetenv("USERNAME");
    EXPECT_EQ(Dispatch::GetStation(), u"\\");
}

class MergeFields : public ::testing::Test {
public:
    const QDateTime Day{QDate(2026, 3, 7), QTime(14, 30)};

    [[nodiscard]] QString Merge(const QString& text, const QString& surname = QStringLiteral("Brennan"),
                                const QString& firstnames = QStringLiteral("Aoife")) const {
        return Dispatch::UpdateFields(text, surname, firstnames, Day);
    }
};

TEST_F(MergeFields, AreReplacedEveryTimeTheyOccur) {
    EXPECT_EQ(Merge(QStringLiteral("@FN @SN, @TD (@MN) @SN@FN")),
              u"Aoife Brennan, 07.Mar (Mar) BrennanAoife");
}

TEST_F(MergeFields, AreCaseSensitive) {
    EXPECT_EQ(Merge(QStringLiteral("@sn @Fn @td @mN")), u"@sn @Fn @td @mN");
}

TEST_F(MergeFields, TakeNamesWithoutTheirBlanks) {
    EXPECT_EQ(Merge(QStringLiteral("[@FN][@SN]"), QStringLiteral(" Van Hel "), QStringLiteral("  ")),
              u"[][Van Hel]");
}

TEST_F(MergeFields, InsideANameAreReplacedInTheirOrder) {
    EXPECT_EQ(Merge(QStringLiteral("@SN"), QStringLiteral("@FN@TD")), u"Aoife07.Mar");
    EXPECT_EQ(Merge(QStringLiteral("@FN"), QStringLiteral("x"), QStringLiteral("@SN")), u"@SN");
    EXPECT_EQ(Merge(QStringLiteral("@SN"), QStringLiteral("@SN")), u"@SN");
}

TEST_F(MergeFields, LeaveTheFillInMarkAlone) {
    EXPECT_EQ(Merge(QStringLiteral("at @? h")), u"at @? h");
}

TEST_F(MergeFields, TakeTheMonthInTheUsersLanguage) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(Merge(QStringLiteral("@TD")), u"07.Mär");
    QLocale::setDefault(before);
}

TEST_F(DispatchTest, AnEmptyListReturnsAtOnce) {
    Send();
    EXPECT_TRUE(Office.MessageRows().isEmpty());
    EXPECT_EQ(Sheet.Resets, 0);
    EXPECT_TRUE(Sheet.Removed.isEmpty());
}

TEST_F(DispatchTest, ARowHasWhatWasComposed) {
    AddRecipient(QStringLiteral("O'Neill"), QStringLiteral("Síle"), QStringLiteral("+353861234567"));
    Sheet.Message = QStringLiteral("Dear @FN, see you.");
    Sheet.Signature = QStringLiteral(" Ann ");
    const QDateTime due(QDate(2026, 3, 9), QTime(8, 5, 30));
    Dispatch::DoSend(Services, Sheet, due, true);
    ASSERT_EQ(Office.MessageRows().size(), 1);
    const QVariantMap row = Office.MessageRows().first();
    EXPECT_EQ(row.value(QStringLiteral("msgRecipient")).toString(), u"Síle O'Neill");
    EXPECT_EQ(row.value(QStringLiteral("msgAddress")).toString(), u"+353861234567");
    EXPECT_EQ(row.value(QStringLiteral("msgText")).toString(), u"Dear Síle, see you. : Ann - Reception");
    EXPECT_EQ(row.value(QStringLiteral("msgSignature")).toString(), u"Ann");
    EXPECT_EQ(row.value(QStringLiteral("msgStation")).toString(), u"DESK7\\AOIFE");
    EXPECT_EQ(row.value(QStringLiteral("msgBodyTextSize")).toInt(), 19);
    EXPECT_EQ(row.value(QStringLiteral("msgStatus")).toInt(), 0);
    EXPECT_TRUE(row.value(QStringLiteral("msgSendTime")).toString().startsWith(QStringLiteral("2026-03-09")));
}

TEST_F(DispatchTest, RowsAreWrittenInTheOrderOfTheList) {
    AddRecipients(4);
    Sheet.Keys.swapItemsAt(0, 2);
    Send();
    EXPECT_EQ(Column(QStringLiteral("msgRecipient")),
              (QStringList{QStringLiteral("F3 S3"), QStringLiteral("F2 S2"), QStringLiteral("F1 S1"),
                           QStringLiteral("F4 S4")}));
}

TEST_F(DispatchTest, HistoryAndTrackerHearOfEachRow) {
    AddRecipients(2);
    Sheet.Message = QStringLiteral("  Hello @FN  ");
    Send();
    const QList<HistoryRecord> history = History.ReadHistory();
    ASSERT_EQ(history.size(), 2);
    EXPECT_EQ(history[0].MessageID, 2) << "newest first";
    EXPECT_EQ(history[0].Recipient, u"F2 S2");
    EXPECT_EQ(history[0].Text, u"Hello @FN") << "the template, without the tail";
    EXPECT_EQ(Dates::FromDays(history[0].SendTime), Office.Time.Time);
    EXPECT_EQ(Tracker.SlotAt(0).msgID, 1);
    EXPECT_EQ(Tracker.SlotAt(0).recipient, u"F1 S1");
    EXPECT_EQ(Tracker.SlotAt(0).number, u"+3531");
    EXPECT_EQ(Tracker.SlotAt(0).text, u"Hello F1") << "merged, without the tail";
    EXPECT_EQ(Tracker.SlotAt(1).msgID, 2);
}

TEST_F(DispatchTest, ATemplateWithLeadingBlanksIsSentTrimmed) {
    AddRecipients(1);
    Sheet.Message = QStringLiteral("   Hello @FN ");
    Send();
    EXPECT_EQ(Column(QStringLiteral("msgText")), QStringList{QStringLiteral("Hello F1  - Reception")});
    EXPECT_EQ(Column(QStringLiteral("msgBodyTextSize")), QStringList{QStringLiteral("8")});
}

TEST_F(DispatchTest, APrivateNumberGoesToTheGatewayAndNotToTheTracker) {
    AddRecipient(QStringLiteral("S"), QStringLiteral("F"), QStringLiteral("+353861234567")).IsPrivate = true;
    Send();
    EXPECT_EQ(Column(QStringLiteral("msgAddress")), QStringList{QStringLiteral("+353861234567")});
    EXPECT_EQ(Tracker.SlotAt(0).number, u"(Private Number)");
}

TEST_F(DispatchTest, OneRecipientWhoseTextIsTooLongIsPassedOverAndStays) {
    AddRecipient(QString(20, u'x'), QStringLiteral("F1"), QStringLiteral("+3531"));
    AddRecipient(QStringLiteral("S2"), QStringLiteral("F2"), QStringLiteral("+3532"));
    Sheet.Message = QStringLiteral("@SN") + QString(140, u'a');
    Send();
    EXPECT_EQ(Column(QStringLiteral("msgRecipient")), QStringList{QStringLiteral("F2 S2")});
    EXPECT_EQ(Sheet.Keys, QStringList{QStringLiteral("C1")});
    EXPECT_NE(Recipients.ContactByKey(QStringLiteral("C1")), nullptr);
    EXPECT_EQ(Recipients.ContactByKey(QStringLiteral("C2")), nullptr);
    EXPECT_EQ(Sheet.Resets, 0) << "the text stays for another attempt";
    EXPECT_EQ(HistoryIDs(), QList<qint32>{1});
}

TEST_F(DispatchTest, ATextOfExactlyTheLargestSizeIsSentAndOneMoreIsNot) {
    AddRecipients(1);
    const auto tail = static_cast<int>(QStringLiteral("  - Reception").size());
    Sheet.Message = QString(160 - tail + 1, u'a');
    Send();
    EXPECT_TRUE(Office.MessageRows().isEmpty());
    Sheet.Message.chop(1);
    Send();
    ASSERT_EQ(Office.MessageRows().size(), 1);
    EXPECT_EQ(Column(QStringLiteral("msgText")).first().size(), 160);
}

TEST_F(DispatchTest, ExtensionCharactersCountOnceHere) {
    AddRecipients(1);
    Sheet.Message = QString(100, u'[');
    Send();
    EXPECT_EQ(Office.MessageRows().size(), 1);
    EXPECT_EQ(Column(QStringLiteral("msgBodyTextSize")), QStringList{QStringLiteral("100")});
}

TEST_F(DispatchTest, KeepingTheRecipientsLeavesListAndTextForTheNextSend) {
    AddRecipients(3);
    Send(false);
    EXPECT_EQ(Office.MessageRows().size(), 3);
    EXPECT_EQ(Sheet.Keys.size(), 3);
    EXPECT_EQ(Recipients.Count(), 3);
    EXPECT_TRUE(Sheet.Removed.isEmpty());
    EXPECT_EQ(Sheet.Resets, 0);
    EXPECT_EQ(Tracker.SlotAt(2).msgID, 3);
    EXPECT_EQ(HistoryIDs(), (QList<qint32>{3, 2, 1}));
}

TEST_F(DispatchTest, AFullSendTakesTheRecipientsOutInOneBatchAndResetsOnce) {
    AddRecipients(3);
    Contact left;
    left.Key = QStringLiteral("C99");
    Recipients.Add(left);
    Send();
    EXPECT_EQ(Sheet.Removed,
              (QList<QStringList>{{QStringLiteral("C1"), QStringLiteral("C2"), QStringLiteral("C3")}}));
    EXPECT_EQ(Sheet.Resets, 1);
    EXPECT_EQ(Recipients.Count(), 1) << "a contact without a row is no recipient";
    EXPECT_FALSE(Office.OutboxDB().IsConnected());
}

TEST_F(DispatchTest, TheOutboxIsClosedBeforeRecipientsLeaveTheListAndBeforeTheReset) {
    AddRecipients(2);
    QList<bool> wasOpen;
    Sheet.OnChange = [&] { wasOpen.append(Office.OutboxDB().IsConnected()); };
    Send();
    EXPECT_EQ(wasOpen, (QList<bool>{false, false}));
}

TEST_F(DispatchTest, AScheduledMessageShowsTheDayItWasWritten) {
    AddRecipients(1);
    Sheet.Message = QStringLiteral("@TD @MN");
    Dispatch::DoSend(Services, Sheet, Office.Time.Time.addMonths(2), true);
    EXPECT_TRUE(Column(QStringLiteral("msgText")).first().startsWith(QStringLiteral("07.Mar Mar ")));
    EXPECT_TRUE(Column(QStringLiteral("msgSendTime")).first().startsWith(QStringLiteral("2026-05-07")));
    EXPECT_EQ(Dates::FromDays(History.ReadHistory().first().SendTime), Office.Time.Time.addMonths(2));
}

TEST_F(DispatchTest, TrackingThatIsOffDoesNotStopTheSend) {
    Tracker.SetEnabled(false);
    AddRecipients(2);
    Send();
    EXPECT_EQ(Office.MessageRows().size(), 2);
    EXPECT_EQ(Tracker.SlotAt(0).msgID, 0);
}

TEST_F(DispatchTest, AnOutboxThatCannotBeOpenedIsToldAndLeavesTheComposition) {
    AddRecipients(2);
    ASSERT_TRUE(QFile::remove(Office.OutboxPath()));
    Office.Boxes.Expect();
    Send();
    EXPECT_EQ(Office.Boxes.Shown, QList{Critical(QStringLiteral("Could not open Outbox Database\r\n") +
                                                 Office.OutboxDB().LastError())});
    EXPECT_EQ(Sheet.Keys.size(), 2);
    EXPECT_EQ(Recipients.Count(), 2);
    EXPECT_TRUE(HistoryIDs().isEmpty());
    EXPECT_EQ(Tracker.SlotAt(0).msgID, 0);
}

TEST_F(DispatchTest, WithoutAnOutboxTheBoxComesToo) {
    AddRecipients(1);
    Office.OutboxValues.OutboxDB.reset();
    Office.Boxes.Expect();
    Send();
    EXPECT_EQ(Office.Boxes.Shown.first().Text, u"Could not open Outbox Database\r\n");
    EXPECT_EQ(Sheet.Keys.size(), 1);
}

TEST_F(DispatchTest, AnIdentityBeyondSixteenBitsStopsTheSendAfterTheRowWasWritten) {
    Office.AddMessageRow({{QStringLiteral("msgID"), 32766},
                          {QStringLiteral("msgRecipient"), QStringLiteral("x")},
                          {QStringLiteral("msgAddress"), QStringLiteral("x")},
                          {QStringLiteral("msgText"), QStringLiteral("x")},
                          {QStringLiteral("msgSendTime"), Office.Time.Time}});
    AddRecipients(3);
    EXPECT_THROW(Send(), OverflowError);
    EXPECT_EQ(Column(QStringLiteral("msgID")),
              (QStringList{QStringLiteral("32766"), QStringLiteral("32767"), QStringLiteral("32768")}));
    EXPECT_EQ(HistoryIDs(), QList<qint32>{32767});
    EXPECT_EQ(Tracker.SlotAt(0).msgID, 32767);
    EXPECT_EQ(Tracker.SlotAt(1).msgID, 0);
    EXPECT_EQ(Sheet.Keys.size(), 3);
    EXPECT_EQ(Recipients.Count(), 3);
    EXPECT_TRUE(Office.OutboxDB().IsConnected()) << "open until the next OpenDatabase";
    EXPECT_TRUE(Office.OutboxDB().OpenDatabase(engine::Mode::ReadShared));
}

TEST_F(DispatchTest, ARecipientWithoutAContactStopsTheSendWhereItStands) {
    AddRecipients(3);
    Recipients.RemoveByKey(QStringLiteral("C2"));
    EXPECT_THROW(Send(), std::out_of_range);
    EXPECT_EQ(Column(QStringLiteral("msgRecipient")), QStringList{QStringLiteral("F1 S1")});
    EXPECT_EQ(HistoryIDs(), QList<qint32>{1});
    EXPECT_EQ(Sheet.Keys.size(), 3);
    EXPECT_TRUE(Sheet.Removed.isEmpty());
    EXPECT_TRUE(Office.OutboxDB().IsConnected());
}

TEST_F(DispatchTest, AFullDiskOfTheWorkstationDoesNotStopTheSend) {
    AddRecipients(3);
    Office.Files.WritesLeft = 2;  // history and log of the first row
    Send();
    EXPECT_EQ(Office.MessageRows().size(), 3);
    EXPECT_EQ(HistoryIDs(), QList<qint32>{1});
    EXPECT_EQ(Tracker.SlotAt(2).msgID, 3);
    EXPECT_EQ(Sheet.Resets, 1);
}

TEST_F(DispatchTest, TheLogHasALineForEachRow) {
    AddRecipients(2);
    Send();
    EXPECT_EQ(Bytes(Office.Folders.ApplicationFolder() + QStringLiteral("messagelog.sms")),
              u"1,20260307143015,\"F1 S1\",\"Hello\"\r\n2,20260307143015,\"F2 S2\",\"Hello\"\r\n");
}
