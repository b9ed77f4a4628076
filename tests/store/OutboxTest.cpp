#include "store/OutboxFixture.h"

using engine::CursorType;
using engine::LockType;
using Operation = FakeEngine::Operation;

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

TEST_F(OutboxTest, OfTwoPassesWithDifferentSizesTheSecondCounts) {
    Office.SetOutbox(QStringLiteral("X:\\sms"));
    int opened = 0;
    Office.Engine.OnAttempt = [&](Operation operation) {
        if (operation == Operation::Open) {
            ServeSystem(++opened == 1 ? qint64{459} : qint64{306});
        }
    };
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Services));
    EXPECT_EQ(opened, 2);
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 306);
}

TEST_F(OutboxTest, ASecondPassThatOpensAndCannotReadLeaves160AndIsFineAllTheSame) {
    Office.SetOutbox(QStringLiteral("X:\\sms"));
    ServeSystem(qint64{459});
    Office.Engine.Fail(Operation::Open, 3024, 1, 1);
    Office.Engine.Fail(Operation::Recordset, 3078);
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Services)) << "the first pass did not open";
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 160);
    Office.Engine.StopFailing();
    Office.Engine.Fail(Operation::Recordset, 3078, Office.Engine.Attempts(Operation::Recordset) + 2);
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Services));
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 160) << "what the first pass read does not stay";
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

namespace {

struct SystemCase {
    const char* Name;
    QVariant Stored;
    qint16 Expected;
};

class SystemRecordTest : public OutboxTest, public ::testing::WithParamInterface<SystemCase> {};

}  // namespace

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
