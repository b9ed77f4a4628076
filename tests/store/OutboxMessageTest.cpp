#include "store/OutboxFixture.h"

#include "core/Numbers.h"

#include <QLocale>

#include <optional>

using Operation = FakeEngine::Operation;

// --- InsertMessage ---

TEST_F(OutboxTest, TheInsertStatementIsWrittenLetterForLetter) {
    EXPECT_EQ(
        mdlOutbox::BuildInsertMessageSQL(AnyMessage()),
        QStringLiteral("INSERT INTO Message (msgRecipient, msgAddress, msgText, msgSendTime, msgSignature, "
                       "msgStation, msgBodyTextSize) VALUES ('Mary Byrne','+353871234567','See you at five - "
                       "Front desk',#07/Mar/2026 14:05:09#,'Mary','DESK4\\MARY',15)"));
}

TEST_F(OutboxTest, TheInsertStatementDoublesApostrophesInEveryText) {
    OutgoingMessage message = AnyMessage();
    message.Recipient = QStringLiteral("O'Neill");
    message.Address = QStringLiteral("'1");
    message.Text = QStringLiteral("it's");
    message.Station = QStringLiteral("D'ESK");
    message.Signature = QStringLiteral("M'");
    const QString sql = mdlOutbox::BuildInsertMessageSQL(message);
    EXPECT_TRUE(sql.endsWith(
        QStringLiteral(" VALUES ('O''Neill','''1','it''s',#07/Mar/2026 14:05:09#,'M''','D''ESK',15)")))
        << sql.toStdString();
}

TEST_F(OutboxTest, BuildingTheStatementCutsNothing) {
    OutgoingMessage message = AnyMessage();
    message.Text = QString(2000, u'x');
    EXPECT_TRUE(mdlOutbox::BuildInsertMessageSQL(message).contains(message.Text));
}

TEST_F(OutboxTest, TheMonthIsEnglishInEveryLocaleSoThatNoTwoMonthsLookAlike) {
    const QLocale before;
    for (const char* name : {"de_DE", "fr_FR", "pl_PL", "ru_RU", "tr_TR", "ja_JP", "ga_IE"}) {
        QLocale::setDefault(QLocale(QString::fromLatin1(name)));
        OutgoingMessage message = AnyMessage();
        message.SendTime = QDateTime(QDate(2026, 6, 1), QTime(0, 0));
        EXPECT_TRUE(
            mdlOutbox::BuildInsertMessageSQL(message).contains(QStringLiteral("#01/Jun/2026 00:00:00#")));
        message.SendTime = QDateTime(QDate(2026, 7, 31), QTime(23, 59, 59));
        EXPECT_TRUE(
            mdlOutbox::BuildInsertMessageSQL(message).contains(QStringLiteral("#31/Jul/2026 23:59:59#")));
    }
    QLocale::setDefault(before);
}

TEST_F(OutboxTest, TextsAreTrimmedThenCutAndTheBodySizeIsLeftAlone) {
    OpenForWriting();
    Office.OutboxValues.MaxMessageSize = 160;
    ServeIdentity(qint64{1});
    OutgoingMessage message = AnyMessage();
    message.Recipient = QStringLiteral("  ") + QString(31, u'r');
    message.Address = QStringLiteral(" ") + QString(40, u'4');
    message.Text = QStringLiteral("   ") + QString(159, u't') + QStringLiteral("uv");
    message.Station = QString(33, u's') + QStringLiteral("  ");
    message.Signature = QStringLiteral("  ") + QString(200, u'g') + QStringLiteral("  ");
    message.BodyTextSize = 163;
    EXPECT_EQ(mdlOutbox::InsertMessage(Services, message), 1);
    const QString sql = Office.Engine.Statements.constFirst();
    EXPECT_TRUE(sql.endsWith(QStringLiteral("VALUES ('%1','%2','%3u',#07/Mar/2026 14:05:09#,'%4','%5',163)")
                                 .arg(QString(30, u'r'), QString(30, u'4'), QString(159, u't'),
                                      message.Signature, QString(32, u's'))))
        << sql.toStdString();
}

TEST_F(OutboxTest, OnlyBlanksAreTrimmedTabsAndLineBreaksStay) {
    OpenForWriting();
    ServeIdentity(qint64{1});
    OutgoingMessage message = AnyMessage();
    message.Text = QStringLiteral(" \ttext\r\n ");
    EXPECT_EQ(mdlOutbox::InsertMessage(Services, message), 1);
    EXPECT_TRUE(Office.Engine.Statements.constFirst().contains(QStringLiteral("'\ttext\r\n'")));
}

TEST_F(OutboxTest, TheNewIdentityComesBackFromTheSameConnection) {
    OpenForWriting();
    ServeIdentity(qint64{4711});
    EXPECT_EQ(mdlOutbox::InsertMessage(Services, AnyMessage()), 4711);
    EXPECT_EQ(Office.Engine.Statements.size(), 2);
    EXPECT_EQ(Office.Engine.Statements.constLast(), QStringLiteral("SELECT @@IDENTITY AS ID"));
    EXPECT_EQ(Office.Engine.OpenRecordsets, 0);
    EXPECT_TRUE(Office.OutboxValues.OutboxDB->IsConnected()) << "the caller closes it";
}

TEST_F(OutboxTest, AnInsertThatFailsAtOnceShowsTheDetailsAndGivesZero) {
    OpenForWriting();
    Office.Engine.Fail(Operation::Execute, 3314);
    Office.Boxes.Expect();
    OutgoingMessage message = AnyMessage();
    message.Text = QStringLiteral("  12345  ");
    EXPECT_EQ(mdlOutbox::InsertMessage(Services, message), 0);
    ASSERT_EQ(Office.Boxes.Shown.size(), 1);
    EXPECT_EQ(
        Office.Boxes.Shown.constFirst(),
        Critical(QStringLiteral("Insert Message Failed\r\nGE:0x80004005, NE:0x0, SQL:3314 - fake failure "
                                "3314\r\nMSGLEN:5")));
    EXPECT_EQ(Office.Engine.Statements.size(), 1) << "no identity is asked for";
}

TEST_F(OutboxTest, AnInsertThatRunsOutOnLocksShowsNothingAndGivesWhatTheConnectionLastProduced) {
    OpenForWriting();
    ServeIdentity(qint64{41});
    Office.Engine.Fail(Operation::Execute, 3218, 1, 3);
    EXPECT_EQ(mdlOutbox::InsertMessage(Services, AnyMessage()), 41);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
    EXPECT_EQ(Office.Engine.Attempts(Operation::Execute), 4);
}

TEST_F(OutboxTest, AnIdentityThatCannotBeReadShowsABoxAndGivesZero) {
    OpenForWriting();
    Office.Engine.Fail(Operation::Execute, 3049, 2);
    Office.Boxes.Expect();
    EXPECT_EQ(mdlOutbox::InsertMessage(Services, AnyMessage()), 0);
    EXPECT_EQ(Office.Boxes.Shown,
              QList{Critical(QStringLiteral(
                  "Could not retrieve Message ID\r\nGE:0x80004005, NE:0x0, SQL:3049 - fake failure 3049"))});
}

TEST_F(OutboxTest, AnIdentityWithoutARowShowsABoxAndGivesZero) {
    OpenForWriting();
    Office.Engine.Serve(QStringLiteral("@@IDENTITY"), {{QStringLiteral("ID")}, {}});
    Office.Boxes.Expect();
    EXPECT_EQ(mdlOutbox::InsertMessage(Services, AnyMessage()), 0);
    EXPECT_EQ(Office.Boxes.Shown, QList{Critical(QStringLiteral("Could not retrieve Message ID\r\n"))});
    EXPECT_EQ(Office.Engine.OpenRecordsets, 0);
}

TEST_F(OutboxTest, AnIdentityBeyond16BitsOverflowsAfterTheRowWasWritten) {
    OpenForWriting();
    ServeIdentity(qint64{32767});
    EXPECT_EQ(mdlOutbox::InsertMessage(Services, AnyMessage()), 32767);
    ServeIdentity(qint64{32768});
    EXPECT_THROW(static_cast<void>(mdlOutbox::InsertMessage(Services, AnyMessage())), OverflowError);
    EXPECT_EQ(Office.Engine.OpenRecordsets, 0);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(OutboxTest, AnIdentityThatIsNullLeavesTheRoutineAsAFailureAfterTheRowWasWritten) {
    OpenForWriting();
    ServeIdentity(QVariant());
    EXPECT_THROW(static_cast<void>(mdlOutbox::InsertMessage(Services, AnyMessage())), std::exception);
    EXPECT_EQ(Office.Engine.Statements.size(), 2) << "the row was written, and its number asked for";
    EXPECT_EQ(Office.Engine.OpenRecordsets, 0);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(OutboxTest, AnInsertBeforeAnyOutboxWasConfiguredShowsItsBox) {
    Office.Boxes.Expect();
    EXPECT_EQ(mdlOutbox::InsertMessage(Services, AnyMessage()), 0);
    EXPECT_EQ(Office.Boxes.Shown,
              QList{Critical(QStringLiteral("Insert Message Failed\r\nGE:0x800A0E78\r\nMSGLEN:28"))});
}

// --- CancelMessage ---

TEST_F(OutboxTest, CancelingWritesTheThreeColumnsOfARowThatStillWaits) {
    OpenForWriting();
    EXPECT_EQ(mdlOutbox::CancelMessage(Services, 70000), std::optional(true));
    EXPECT_EQ(
        Office.Engine.Statements,
        QStringList{QStringLiteral("UPDATE Message SET msgComplete = TRUE, msgStatus = 2, msgErrorReason "
                                   "='Canceled by user' WHERE msgID = 70000 AND msgStatus = 0")});
    EXPECT_TRUE(Office.OutboxValues.OutboxDB->IsConnected()) << "an open connection stays open";
}

TEST_F(OutboxTest, CancelingOpensForWritingAndClosesWhatItOpened) {
    Office.SetOutbox(QStringLiteral("\\\\server\\sms"));
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Services));
    EXPECT_EQ(mdlOutbox::CancelMessage(Services, 1), std::optional(true));
    EXPECT_EQ(Office.Engine.Modes.constLast(), 19);
    EXPECT_FALSE(Office.OutboxValues.OutboxDB->IsConnected());
}

TEST_F(OutboxTest, CancelingIsTrueForExactlyOneRow) {
    OpenForWriting();
    for (const int count : {0, 2}) {
        Office.Engine.SetRowsAffected(QStringLiteral("UPDATE Message"), count);
        EXPECT_EQ(mdlOutbox::CancelMessage(Services, 1), std::optional(false));
    }
    Office.Engine.Fail(Operation::Execute, 3218);
    EXPECT_EQ(mdlOutbox::CancelMessage(Services, 1), std::optional(false));
}

TEST_F(OutboxTest, CancelingWithoutAnOutboxIsEmptyWhichReadsAsFalse) {
    Office.SetOutbox(QStringLiteral("\\\\server\\sms"));
    Office.Engine.Fail(Operation::Open, 3024);
    EXPECT_FALSE(mdlOutbox::OpenOutbox(Services));
    EXPECT_EQ(mdlOutbox::CancelMessage(Services, 1), std::nullopt);
    EXPECT_FALSE(mdlOutbox::CancelMessage(Services, 1).value_or(false));
    EXPECT_TRUE(Office.Engine.Statements.isEmpty());
}
