#include "store/DBFixture.h"

#include <QFile>

#include <gtest/gtest.h>

#include <utility>

using engine::CursorType;
using engine::LockType;
using engine::Mode::ReadShared;
using Operation = FakeEngine::Operation;

namespace {

static_assert(noexcept(std::declval<DB&>().OpenDatabase(ReadShared)));
static_assert(noexcept(std::declval<DB&>().CloseDatabase()));
static_assert(noexcept(std::declval<DB&>().Connection()));
static_assert(noexcept(std::declval<DB&>().OpenDynaset(std::declval<const QString&>(),
                                                       CursorType::ForwardOnly, LockType::ReadOnly)));
static_assert(noexcept(std::declval<DB&>().DisconnectedSet(std::declval<const QString&>())));
static_assert(noexcept(std::declval<DB&>().BeginTransaction()));
static_assert(noexcept(std::declval<DB&>().CommitTransaction()));
static_assert(noexcept(std::declval<DB&>().RollbackTransaction()));
static_assert(noexcept(std::declval<DB&>().Execute(std::declval<const QString&>())));
static_assert(noexcept(std::declval<DB&>().ExecuteRecordset(std::declval<const QString&>())));
static_assert(noexcept(std::declval<DB&>().ExecuteRecordResult(std::declval<const QString&>())));
static_assert(noexcept(std::declval<DB&>().TableNames()));
static_assert(noexcept(std::declval<DB&>().Compact()));
static_assert(noexcept(std::declval<DB&>().FileExists()));
static_assert(noexcept(std::declval<DB&>().RecordError()));
static_assert(noexcept(std::declval<DB&>().ResetError()));
static_assert(noexcept(std::declval<DB&>().LastError()));
static_assert(noexcept(std::declval<DB&>().IsError()));
static_assert(noexcept(std::declval<DB&>().IsConnected()));
static_assert(noexcept(std::declval<DB&>().GetDrive()));
static_assert(noexcept(std::declval<DB&>().GetFolder()));
static_assert(noexcept(std::declval<DB&>().GetFilename()));
static_assert(noexcept(std::declval<DB&>().ResetNetworkDrive(qint16{0}, std::declval<const QString&>())));

// --- defaults and opening ---

TEST_F(DBTest, ANewDatabaseTriesThreeTimesWithPausesUpToOneSecondAndHasNoConnection) {
    EXPECT_EQ(Database.MaxRetryCount, 3);
    EXPECT_EQ(Database.MaxRetryInterval, 1000);
    EXPECT_FALSE(Database.IsError());
    EXPECT_EQ(Database.LastError(), QString());
    EXPECT_EQ(Database.Connection(), nullptr);
    EXPECT_FALSE(Database.IsConnected());
}

TEST_F(DBTest, OpeningHandsFileAndModeToTheEngineAndSetsTheTwoProperties) {
    Database.Filename = QStringLiteral("X:\\sms\\smsmessages.mdb");
    ASSERT_TRUE(Database.OpenDatabase(ReadShared));
    EXPECT_EQ(Machine.Engine.Filenames, QStringList{QStringLiteral("X:\\sms\\smsmessages.mdb")});
    EXPECT_EQ(Machine.Engine.Modes, QList<qint32>{17});
    EXPECT_EQ(Machine.Engine.Properties.value(QStringLiteral("Jet OLEDB:Max Buffer Size")), QVariant(500));
    EXPECT_EQ(Machine.Engine.Properties.value(QStringLiteral("Jet OLEDB:Flush Transaction Timeout")),
              QVariant(2000));
    EXPECT_TRUE(Database.IsConnected());
    EXPECT_NE(Database.Connection(), nullptr);
}

TEST_F(DBTest, AfterASuccessfulOpenLastErrorIsTheDigitZeroAndEmptyAfterResetError) {
    Open();
    EXPECT_EQ(Database.LastError(), QStringLiteral("0"));
    EXPECT_FALSE(Database.IsError());
    Database.ResetError();
    EXPECT_EQ(Database.LastError(), QString());
}

TEST_F(DBTest, APropertyThatTheEngineRefusesDoesNotFailTheOpen) {
    Machine.Engine.Fail(Operation::SetProperty, 3265);
    EXPECT_TRUE(Database.OpenDatabase(ReadShared));
    EXPECT_EQ(Attempts(Operation::SetProperty), 2);
    EXPECT_EQ(Database.LastError(), QStringLiteral("0"));
}

TEST_F(DBTest, AnOpenThatWorksOnTheSecondAttemptSaysZeroAndStillHasTheErrorFlag) {
    Machine.Engine.Fail(Operation::Open, 3045, 1, 1);
    EXPECT_TRUE(Database.OpenDatabase(ReadShared));
    EXPECT_EQ(Database.LastError(), QStringLiteral("0"));
    EXPECT_TRUE(Database.IsError());
    EXPECT_EQ(Machine.Time.Sleeps.size(), 1);
}

TEST_F(DBTest, AMissingFileIsTriedOnceWithoutAWait) {
    Machine.Engine.Fail(Operation::Open, 3024);
    EXPECT_FALSE(Database.OpenDatabase(ReadShared));
    EXPECT_EQ(Attempts(Operation::Open), 1);
    EXPECT_TRUE(Machine.Time.Sleeps.isEmpty());
    EXPECT_TRUE(Machine.Pump.Calls.isEmpty());
    EXPECT_EQ(Database.LastError(), QStringLiteral("GE:0x80004005, NE:0x0, SQL:3024 - fake failure 3024"));
    EXPECT_EQ(Database.Connection(), nullptr);
}

TEST_F(DBTest, AFileInUseGivesThreeAttemptsAndThreeWaits) {
    Machine.Engine.Fail(Operation::Open, 3045);
    EXPECT_FALSE(Database.OpenDatabase(ReadShared));
    EXPECT_EQ(Attempts(Operation::Open), 3);
    EXPECT_EQ(Machine.Time.Sleeps.size(), 3);
    EXPECT_EQ(Machine.Pump.Calls, (QList<int>{4, 3, 4, 3, 4, 3}));
    EXPECT_EQ(Database.LastError(), QStringLiteral("GE:0x80004005, NE:0x0, SQL:3045 - fake failure 3045"));
    EXPECT_TRUE(Database.IsError());
    EXPECT_EQ(Database.Connection(), nullptr);
    EXPECT_FALSE(Database.IsConnected());
}

TEST_F(DBTest, AnEngineThatStaysClosedIsAFailedOpen) {
    Machine.Engine.StaysClosed = true;
    EXPECT_FALSE(Database.OpenDatabase(ReadShared));
    EXPECT_EQ(Database.Connection(), nullptr);
    EXPECT_EQ(Database.LastError(), QString());
}

TEST_F(DBTest, OpeningAnOpenDatabaseClosesItFirst) {
    Open();
    Machine.Engine.OnAttempt = [&](Operation operation) {
        if (operation == Operation::Open) {
            EXPECT_EQ(Machine.Engine.OpenConnections, 0);
        }
    };
    Open();
    EXPECT_EQ(Attempts(Operation::Close), 1);
    EXPECT_EQ(Machine.Engine.OpenConnections, 1);
}

TEST_F(DBTest, ACloseThatFailsWhileReopeningDoesNotCountAgainstTheOpen) {
    Open();
    Machine.Engine.Fail(Operation::Close, 3704);
    EXPECT_TRUE(Database.OpenDatabase(ReadShared));
    EXPECT_FALSE(Database.IsError());
    EXPECT_EQ(Machine.Engine.OpenConnections, 1);
}

TEST_F(DBTest, WithNoAttemptsAtAllOpenFailsAndExecuteSucceeds) {
    for (const qint16 count : {qint16{0}, qint16{-5}}) {
        Database.MaxRetryCount = 3;
        Open();
        Database.MaxRetryCount = count;
        EXPECT_TRUE(Database.Execute(AnySQL));
        EXPECT_EQ(Database.ExecuteRecordset(AnySQL), nullptr);
        EXPECT_EQ(Database.ExecuteRecordResult(AnySQL), 0);
        EXPECT_EQ(OpenRows(), nullptr);
        EXPECT_EQ(Database.DisconnectedSet(AnySQL), nullptr);
        EXPECT_TRUE(Machine.Engine.Statements.isEmpty());
        EXPECT_FALSE(Database.IsError());
        EXPECT_FALSE(Database.OpenDatabase(ReadShared));
        EXPECT_EQ(Database.Connection(), nullptr);
    }
}

// --- closing ---

TEST_F(DBTest, ClosingIsAlwaysFalseReleasesTheConnectionAndLeavesTheError) {
    Open();
    Machine.Engine.Fail(Operation::Execute, 3022);
    EXPECT_FALSE(Database.Execute(AnySQL));
    const QString error = Database.LastError();
    EXPECT_FALSE(Database.CloseDatabase());
    EXPECT_EQ(Database.Connection(), nullptr);
    EXPECT_EQ(Machine.Engine.OpenConnections, 0);
    EXPECT_TRUE(Database.IsError());
    EXPECT_EQ(Database.LastError(), error);
    EXPECT_FALSE(Database.CloseDatabase());
}

TEST_F(DBTest, DestructionClosesTheConnection) {
    {
        DB other(Machine.Services());
        ASSERT_TRUE(other.OpenDatabase(ReadShared));
        EXPECT_EQ(Machine.Engine.OpenConnections, 1);
    }
    EXPECT_EQ(Machine.Engine.OpenConnections, 0);
    EXPECT_EQ(Attempts(Operation::Close), 1);
}

TEST_F(DBTest, OpenAndCloseMayAlternateAnyNumberOfTimes) {
    for (int i = 0; i < 20; ++i) {
        Open();
        EXPECT_TRUE(Database.Execute(AnySQL));
        EXPECT_FALSE(Database.CloseDatabase());
    }
    EXPECT_EQ(Machine.Engine.OpenConnections, 0);
}

// --- transactions, tables, file names ---

TEST_F(DBTest, TransactionsAreTriedOnceAndOnlyACommitRecordsItsError) {
    Open();
    EXPECT_TRUE(Database.BeginTransaction());
    EXPECT_TRUE(Database.CommitTransaction());
    Machine.Engine.Fail(Operation::Begin, 3045);
    Machine.Engine.Fail(Operation::Commit, 3045);
    Machine.Engine.Fail(Operation::Rollback, 3045);
    EXPECT_FALSE(Database.BeginTransaction());
    EXPECT_FALSE(Database.IsError());
    Database.RollbackTransaction();
    EXPECT_FALSE(Database.IsError());
    EXPECT_FALSE(Database.CommitTransaction());
    EXPECT_TRUE(Database.IsError());
    EXPECT_TRUE(Database.LastError().contains(QStringLiteral("SQL:3045")));
    EXPECT_EQ(Attempts(Operation::Begin), 2);
    EXPECT_EQ(Attempts(Operation::Commit), 2);
    EXPECT_EQ(Attempts(Operation::Rollback), 1);
    EXPECT_TRUE(Machine.Time.Sleeps.isEmpty());
}

TEST_F(DBTest, BeginIsNotRefusedForAnErrorOfAnEarlierStatement) {
    Open();
    Machine.Engine.Fail(Operation::Execute, 3022, 1, 1);
    EXPECT_FALSE(Database.Execute(AnySQL));
    EXPECT_TRUE(Database.BeginTransaction());
}

TEST_F(DBTest, TableNamesAreNoneWithoutAConnectionOrAfterAFailure) {
    Machine.Engine.Tables = {QStringLiteral("Message"), QStringLiteral("System")};
    EXPECT_FALSE(Database.TableNames().has_value());
    Open();
    EXPECT_EQ(Database.TableNames(), Machine.Engine.Tables);
    Machine.Engine.Fail(Operation::TableNames, 3045);
    EXPECT_FALSE(Database.TableNames().has_value());
}

TEST_F(DBTest, TheDriveIsTheLetterOfAMappedPathOnly) {
    const auto drive = [&](const char16_t* filename) {
        Database.Filename = QString::fromUtf16(filename);
        return Database.GetDrive();
    };
    EXPECT_EQ(drive(u"X:\\sms\\smsmessages.mdb"), QStringLiteral("X:"));
    EXPECT_EQ(drive(u"x:"), QStringLiteral("x:"));
    EXPECT_EQ(drive(u"\\\\server\\share\\x.mdb"), QString());
    EXPECT_EQ(drive(u"smsmessages.mdb"), QString());
    EXPECT_EQ(drive(u"/mnt/office/x.mdb"), QString());
    EXPECT_EQ(drive(u":"), QString());
    EXPECT_EQ(drive(u""), QString());
}

TEST_F(DBTest, FolderAndFilenamePartAtTheLastSeparatorOfEitherKind) {
    const auto parts = [&](const char16_t* filename) {
        Database.Filename = QString::fromUtf16(filename);
        return std::pair{Database.GetFolder(), Database.GetFilename()};
    };
    using Parts = std::pair<QString, QString>;
    EXPECT_EQ(parts(u"C:\\data\\smscontacts.mdb"),
              Parts(QStringLiteral("C:\\data"), QStringLiteral("smscontacts.mdb")));
    EXPECT_EQ(parts(u"/mnt/data/smscontacts.mdb"),
              Parts(QStringLiteral("/mnt/data"), QStringLiteral("smscontacts.mdb")));
    EXPECT_EQ(parts(u"/mnt/data\\x.mdb"), Parts(QStringLiteral("/mnt/data"), QStringLiteral("x.mdb")));
    EXPECT_EQ(parts(u"x.mdb"), Parts(QStringLiteral("x.mdb"), QStringLiteral("x.mdb")));
    EXPECT_EQ(parts(u"\\\\server\\share\\x.mdb"),
              Parts(QStringLiteral("\\\\server\\share"), QStringLiteral("x.mdb")));
    EXPECT_EQ(parts(u"C:\\data\\"), Parts(QStringLiteral("C:\\data"), QString()));
    EXPECT_EQ(parts(u""), Parts(QString(), QString()));
}

TEST_F(DBTest, RestoringADriveIsPassedToTheMachineAndAlwaysFalse) {
    EXPECT_FALSE(Database.ResetNetworkDrive(0, QStringLiteral("X:")));
    EXPECT_EQ(Machine.Drives.Restored, QStringList{QStringLiteral("X:")});
}

TEST_F(DBTest, FileExistsFindsFilesButNoFolders) {
    const QString folder = Machine.Folders.Root.path();
    QFile file(folder + QStringLiteral("/here.mdb"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const auto exists = [&](const QString& filename) {
        Database.Filename = filename;
        return Database.FileExists();
    };
    EXPECT_TRUE(exists(folder + QStringLiteral("/here.mdb")));
    EXPECT_TRUE(exists(folder + QStringLiteral("\\here.mdb")));
    EXPECT_FALSE(exists(folder + QStringLiteral("/gone.mdb")));
    EXPECT_FALSE(exists(folder));
    EXPECT_FALSE(exists(QString()));
}

}  // namespace
