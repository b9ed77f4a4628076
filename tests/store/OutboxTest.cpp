#include "store/Outbox.h"

#include "core/Numbers.h"
#include "store/FakeOffice.h"

#include <QLocale>

#include <gtest/gtest.h>

#include <optional>

using engine::CursorType;
using engine::LockType;
using engine::Mode::ReadShared;
using engine::Mode::ReadWriteShared;
using Operation = FakeEngine::Operation;

namespace {

class OutboxTest : public ::testing::Test {
protected:
    FakeOffice Office;
    OutboxServices Services = Office.Outbox();

    void ServeSystem(const QVariant& size) {
        Office.Engine.Serve(QStringLiteral("FROM System"),
                            {{QStringLiteral("sysSMSMaxMessageSize")}, {{size}}});
    }
    void ServeIdentity(const QVariant& id) {
        Office.Engine.Serve(QStringLiteral("@@IDENTITY"), {{QStringLiteral("ID")}, {{id}}});
    }
    void OpenForWriting() {
        ServeSystem(qint64{459});
        Office.SetOutbox(QStringLiteral("\\\\server\\share\\sms"));
        ASSERT_TRUE(mdlOutbox::OpenOutbox(Services));
        ASSERT_TRUE(Office.OutboxValues.OutboxDB->OpenDatabase(ReadWriteShared));
        Office.Engine.Statements.clear();
    }
    [[nodiscard]] static OutgoingMessage AnyMessage() {
        OutgoingMessage message;
        message.Recipient = QStringLiteral("Mary Byrne");
        message.Address = QStringLiteral("+353871234567");
        message.Text = QStringLiteral("See you at five - Front desk");
        message.SendTime = QDateTime(QDate(2026, 3, 7), QTime(14, 5, 9));
        message.Station = QStringLiteral("DESK4\\MARY");
        message.Signature = QStringLiteral("Mary");
        message.BodyTextSize = 15;
        return message;
    }
    [[nodiscard]] BoxRequest Critical(const QString& text) const {
        return {QStringLiteral("Larkspan Messenger"), text, BoxIcon::Critical, BoxButtons::Ok};
    }
};

// --- small rules ---

TEST_F(OutboxTest, EachSingleQuoteIsDoubled) {
    EXPECT_EQ(mdlOutbox::QuoteSQL(QStringLiteral("O'Neill's")), QStringLiteral("O''Neill''s"));
    EXPECT_EQ(mdlOutbox::QuoteSQL(QStringLiteral("''")), QStringLiteral("''''"));
    EXPECT_EQ(mdlOutbox::QuoteSQL(QStringLiteral("say \"no\"")), QStringLiteral("say \"no\""));
    EXPECT_EQ(mdlOutbox::QuoteSQL(QString()), QString());
}

TEST_F(OutboxTest, OnlyWaitingHandedEnRouteAndUnsentMessagesAreNotFinal) {
    for (const int status : {0, 1, 3, 4}) {
        EXPECT_FALSE(mdlOutbox::IsMessageFinal(status)) << status;
    }
    for (const int status : {2, 5, 6, 7, 8, 9, -1, 100, 255}) {
        EXPECT_TRUE(mdlOutbox::IsMessageFinal(status)) << status;
    }
}

TEST_F(OutboxTest, Status4KeepsAMessageInTheTrackerAndStatus9EndsIt) {
    EXPECT_FALSE(mdlOutbox::IsMessageFinal(4));
    EXPECT_TRUE(mdlOutbox::IsMessageFinal(9));
}

TEST_F(OutboxTest, AFolderGetsTheDefaultNameAndAFileStandsForItself) {
    using mdlOutbox::OutboxFile;
    EXPECT_EQ(OutboxFile(QStringLiteral("\\\\server\\share\\sms")),
              QStringLiteral("\\\\server\\share\\sms\\smsmessages.mdb"));
    EXPECT_EQ(OutboxFile(QStringLiteral("X:\\sms\\")), QStringLiteral("X:\\sms\\smsmessages.mdb"));
    EXPECT_EQ(OutboxFile(QStringLiteral("X:\\data\\other.mdb")), QStringLiteral("X:\\data\\other.mdb"));
    EXPECT_EQ(OutboxFile(QStringLiteral("X:\\old.mdb.files")), QStringLiteral("X:\\old.mdb.files"));
    EXPECT_EQ(OutboxFile(QStringLiteral("X:\\OTHER.MDB")), QStringLiteral("X:\\OTHER.MDB\\smsmessages.mdb"));
    EXPECT_EQ(OutboxFile(QString()), QString());
}

TEST_F(OutboxTest, ADateStandsBetweenItsSignsWithAnEnglishMonth) {
    const QDateTime value(QDate(2026, 7, 1), QTime(9, 5, 0));
    EXPECT_EQ(mdlOutbox::QuoteDate(value), QStringLiteral("#01/Jul/2026 09:05:00#"));
    EXPECT_EQ(mdlOutbox::QuoteDate(value, QStringLiteral("dd/mmm/yyyy")), QStringLiteral("#01/Jul/2026#"));
    EXPECT_EQ(mdlOutbox::QuoteDate(value, QStringLiteral("DD/MMM/YYYY 23:59:59")),
              QStringLiteral("#01/Jul/2026 23:59:59#"));
}

// --- OpenOutbox ---

TEST_F(OutboxTest, WithoutASettingThereIsADatabaseWithoutAFileAndTheResultIsFalse) {
    EXPECT_FALSE(mdlOutbox::OpenOutbox(Services));
    ASSERT_NE(Office.OutboxValues.OutboxDB, nullptr);
    EXPECT_EQ(Office.OutboxValues.OutboxDB->Filename, QString());
    EXPECT_EQ(Office.Engine.Attempts(Operation::Open), 0);
    EXPECT_TRUE(Office.Drives.Restored.isEmpty());
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 160);
}

TEST_F(OutboxTest, TwoPassesReadTheSystemRecordTwiceAndRestoreTheDriveInBetween) {
    Office.SetOutbox(QStringLiteral("X:\\sms"));
    ServeSystem(qint64{459});
    QStringList order;
    Office.Engine.OnAttempt = [&](Operation operation) {
        if (operation == Operation::Open) {
            order.append(QStringLiteral("open %1").arg(Office.Drives.Restored.size()));
        }
    };
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Services));
    EXPECT_EQ(order, (QStringList{QStringLiteral("open 0"), QStringLiteral("open 1")}));
    EXPECT_EQ(Office.Drives.Restored, QStringList{QStringLiteral("X:")});
    EXPECT_EQ(Office.Engine.Modes, (QList<qint32>{17, 17}));
    EXPECT_EQ(Office.Engine.Filenames.constFirst(), QStringLiteral("X:\\sms\\smsmessages.mdb"));
    EXPECT_EQ(Office.Engine.Statements,
              (QStringList{QStringLiteral("SELECT * FROM System"), QStringLiteral("SELECT * FROM System")}));
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 459);
    EXPECT_FALSE(Office.OutboxValues.OutboxDB->IsConnected());
    EXPECT_EQ(Office.Engine.OpenConnections, 0);
    EXPECT_EQ(Office.Engine.OpenRecordsets, 0);
}

TEST_F(OutboxTest, AShareWithoutALetterIsNotRestored) {
    Office.SetOutbox(QStringLiteral("\\\\server\\share\\sms"));
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Services));
    EXPECT_EQ(Office.OutboxValues.OutboxDB->Filename,
              QStringLiteral("\\\\server\\share\\sms\\smsmessages.mdb"));
    EXPECT_TRUE(Office.Drives.Restored.isEmpty());
    EXPECT_EQ(Office.Engine.Attempts(Operation::Open), 2);
}

TEST_F(OutboxTest, ADriveThatTheRestoreBringsBackOpensInTheSecondPass) {
    Office.SetOutbox(QStringLiteral("X:\\sms"));
    ServeSystem(qint64{306});
    Office.Engine.Fail(Operation::Open, 3024, 1, 1);
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Services));
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 306);
}

TEST_F(OutboxTest, AFirstPassAloneIsEnoughForTrue) {
    Office.SetOutbox(QStringLiteral("X:\\sms"));
    ServeSystem(qint64{306});
    Office.Engine.Fail(Operation::Open, 3024, 2, 2);
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Services));
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 306);
}

TEST_F(OutboxTest, AnUnreachableOutboxShowsNothingAndLeaves160) {
    Office.SetOutbox(QStringLiteral("X:\\data\\other.mdb"));
    Office.Engine.Fail(Operation::Open, 3024);
    EXPECT_FALSE(mdlOutbox::OpenOutbox(Services));
    EXPECT_EQ(Office.Engine.Filenames,
              (QStringList{QStringLiteral("X:\\data\\other.mdb"), QStringLiteral("X:\\data\\other.mdb")}));
    EXPECT_EQ(Office.OutboxValues.OutboxDB->Filename, QStringLiteral("X:\\data\\other.mdb"));
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 160);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(OutboxTest, ANewPathTakesEffectAtOnce) {
    OpenForWriting();
    Office.SetOutbox(QStringLiteral("X:\\new"));
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Services));
    EXPECT_EQ(Office.OutboxValues.OutboxDB->Filename, QStringLiteral("X:\\new\\smsmessages.mdb"));
    EXPECT_EQ(Office.Engine.OpenConnections, 0) << "the old one was closed";
}

TEST_F(OutboxTest, AnOutboxThatIsReplacedDuringAWaitLetsTheStatementFindItsWayOut) {
    OpenForWriting();
    Office.Engine.Fail(Operation::Execute, 3045, 1, 1);
    bool isFirst = true;
    Office.Pump.OnProcess = [&](int) {
        if (std::exchange(isFirst, false)) {
            Office.SetOutbox(QStringLiteral("X:\\new"));
            EXPECT_TRUE(mdlOutbox::OpenOutbox(Services));
        }
    };
    EXPECT_FALSE(
        Office.OutboxValues.OutboxDB->Execute(QStringLiteral("DELETE FROM Message WHERE msgID = 1")));
    EXPECT_EQ(Office.Engine.Attempts(Operation::Execute), 1);
    EXPECT_EQ(Office.OutboxValues.OutboxDB->Filename, QStringLiteral("X:\\new\\smsmessages.mdb"));
}

// --- ReadSystemRecord ---

struct SystemCase {
    const char* Name;
    QVariant Stored;
    qint16 Expected;
};

class SystemRecordTest : public OutboxTest, public ::testing::WithParamInterface<SystemCase> {};

TEST_P(SystemRecordTest, GivesTheLongestMessage) {
    Office.SetOutbox(QStringLiteral("\\\\server\\sms"));
    ServeSystem(GetParam().Stored);
    Office.OutboxValues.MaxMessageSize = 1000;
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Services));
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, GetParam().Expected);
    EXPECT_EQ(Office.Engine.OpenRecordsets, 0);
    EXPECT_EQ(Office.Engine.Cursors.constFirst(), CursorType::ForwardOnly);
    EXPECT_EQ(Office.Engine.Locks.constFirst(), LockType::ReadOnly);
}

INSTANTIATE_TEST_SUITE_P(Values, SystemRecordTest,
                         ::testing::Values(SystemCase{"Usual", qint64{459}, 459},
                                           SystemCase{"AtTheLimit", qint64{160}, 160},
                                           SystemCase{"BelowTheLimit", qint64{159}, 160},
                                           SystemCase{"Negative", qint64{-1}, 160},
                                           SystemCase{"Largest", qint64{32767}, 32767},
                                           SystemCase{"TooLargeForTheType", qint64{32768}, 160},
                                           SystemCase{"NullAbandonsTheRest", QVariant(), 160}),
                         [](const auto& given) { return std::string(given.param.Name); });

TEST_F(OutboxTest, AnEmptySystemTableStoresZero) {
    Office.SetOutbox(QStringLiteral("\\\\server\\sms"));
    Office.Engine.Serve(QStringLiteral("FROM System"), {{QStringLiteral("sysSMSMaxMessageSize")}, {}});
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Services));
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 0);
}

TEST_F(OutboxTest, AMissingColumnOrTableLeaves160) {
    Office.SetOutbox(QStringLiteral("\\\\server\\sms"));
    Office.Engine.Serve(QStringLiteral("FROM System"), {{QStringLiteral("sysOther")}, {{qint64{999}}}});
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Services));
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 160);
    Office.Engine.Fail(Operation::Recordset, 3078);
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Services));
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 160);
}

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

}  // namespace
