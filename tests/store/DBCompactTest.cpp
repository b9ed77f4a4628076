#include "platform/Drives.h"
#include "store/DB.h"
#include "store/FakeOffice.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using engine::Mode::ReadShared;
using Operation = FakeEngine::Operation;

namespace {

class DBCompactTest : public ::testing::Test {
protected:
    FakeDatabase Machine;
    DB Database{Machine.Services()};
    QTemporaryDir Data;
    QTemporaryDir Temp;

    void SetUp() override {
        Machine.Folders.Temp = Temp.path();  // no separator at its end, as TEMP has none
        Database.Filename = Data.filePath(QStringLiteral("smscontacts.mdb"));
        Write(Database.Filename, "old bytes");
        Machine.Engine.OnAttempt = [this](Operation operation) {
            if (operation == Operation::Compact && m_writesResult) {
                Write(NativePath(Machine.Engine.Compacted.constLast().second), "new");
            }
        };
    }
    void NeverWritesAResult() { m_writesResult = false; }
    [[nodiscard]] QString Backup() const { return Data.filePath(QStringLiteral("smscontacts.cmp")); }
    [[nodiscard]] QString Temporary() const {
        return Temp.filePath(QStringLiteral("smscontacts.mdb$compact.mdb"));
    }

    static void Write(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
        file.write(bytes);
    }
    static QByteArray Read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }

private:
    bool m_writesResult = true;
};

TEST_F(DBCompactTest, PutsTheCompactedFileInPlaceAndLeavesNothingElse) {
    EXPECT_TRUE(Database.Compact());
    EXPECT_EQ(Read(Database.Filename), "new");
    EXPECT_FALSE(QFile::exists(Backup()));
    EXPECT_FALSE(QFile::exists(Temporary()));
    ASSERT_EQ(Machine.Engine.Compacted.size(), 1);
    EXPECT_EQ(Machine.Engine.Compacted.constFirst().first, Database.Filename);
    EXPECT_EQ(NativePath(Machine.Engine.Compacted.constFirst().second), Temporary());
}

TEST_F(DBCompactTest, ClosesAnOpenDatabaseFirstAndReopensItForWriting) {
    ASSERT_TRUE(Database.OpenDatabase(ReadShared));
    Machine.Engine.OnAttempt = [this, write = Machine.Engine.OnAttempt](Operation operation) {
        if (operation == Operation::Compact) {
            EXPECT_EQ(Machine.Engine.OpenConnections, 0);
        }
        write(operation);
    };
    EXPECT_TRUE(Database.Compact());
    EXPECT_TRUE(Database.IsConnected());
    EXPECT_EQ(Machine.Engine.Modes, (QList<qint32>{17, 19}));
}

TEST_F(DBCompactTest, AClosedDatabaseStaysClosed) {
    EXPECT_TRUE(Database.Compact());
    EXPECT_FALSE(Database.IsConnected());
    EXPECT_TRUE(Machine.Engine.Modes.isEmpty());
}

TEST_F(DBCompactTest, WhatEarlierRunsLeftBehindIsReplaced) {
    Write(Temporary(), "stale temporary");
    Write(Backup(), "stale backup");
    Machine.Engine.OnAttempt = [this, write = Machine.Engine.OnAttempt](Operation operation) {
        EXPECT_FALSE(QFile::exists(Temporary()));
        write(operation);
    };
    EXPECT_TRUE(Database.Compact());
    EXPECT_EQ(Read(Database.Filename), "new");
    EXPECT_FALSE(QFile::exists(Backup()));
    EXPECT_FALSE(QFile::exists(Temporary()));
}

TEST_F(DBCompactTest, AFailedCompactionLeavesTheDatabaseAndABackupOfIt) {
    ASSERT_TRUE(Database.OpenDatabase(ReadShared));
    NeverWritesAResult();
    Machine.Engine.Fail(Operation::Compact, 3049);
    EXPECT_FALSE(Database.Compact());
    EXPECT_EQ(Machine.Engine.Attempts(Operation::Compact), 1);
    EXPECT_EQ(Read(Database.Filename), "old bytes");
    EXPECT_EQ(Read(Backup()), "old bytes");
    EXPECT_TRUE(Database.IsConnected()) << "it was open before";
    EXPECT_TRUE(Machine.Time.Sleeps.isEmpty());
}

TEST_F(DBCompactTest, AFailureWhileTheFilesChangePlacesLeavesBackupAndTemporaryForAPerson) {
    // The compacted file is there, but it cannot be read: the last copy fails.
    NeverWritesAResult();
    const QString temporary = Temporary();
    Machine.Engine.OnAttempt = [temporary](Operation operation) {
        if (operation == Operation::Compact) {
            ASSERT_TRUE(QDir().mkpath(temporary + QStringLiteral("/kept")));
        }
    };
    EXPECT_FALSE(Database.Compact());
    EXPECT_EQ(Read(Backup()), "old bytes");
    EXPECT_TRUE(QFile::exists(Temporary()));
}

TEST_F(DBCompactTest, ABackupThatCannotBeMadeKeepsTheDatabaseInPlace) {
    ASSERT_TRUE(QDir().mkpath(Backup() + QStringLiteral("/in the way")));
    EXPECT_FALSE(Database.Compact());
    EXPECT_EQ(Read(Database.Filename), "old bytes");
    EXPECT_EQ(Read(Temporary()), "new");
}

TEST_F(DBCompactTest, AMissingDatabaseIsAFailure) {
    Database.Filename = Data.filePath(QStringLiteral("gone.mdb"));
    NeverWritesAResult();
    Machine.Engine.Fail(Operation::Compact, 3024);
    EXPECT_FALSE(Database.Compact());
    EXPECT_FALSE(QFile::exists(Database.Filename));
}

TEST_F(DBCompactTest, LeavesTheErrorStateAsItWas) {
    Database.RecordError();
    const QString error = Database.LastError();
    EXPECT_TRUE(Database.Compact());
    EXPECT_TRUE(Database.IsError());
    EXPECT_EQ(Database.LastError(), error);
}

TEST_F(DBCompactTest, ANameWithoutADotGetsTheBackupEndingAppended) {
    Database.Filename = Data.filePath(QStringLiteral("outbox"));
    ASSERT_FALSE(Database.Filename.contains(u'.'));
    Write(Database.Filename, "old bytes");
    NeverWritesAResult();
    Machine.Engine.Fail(Operation::Compact, 3049);
    EXPECT_FALSE(Database.Compact());
    EXPECT_EQ(Read(Database.Filename + QStringLiteral(".cmp")), "old bytes");
}

TEST_F(DBCompactTest, WithoutATemporaryFolderTheApplicationFolderServes) {
    Machine.Folders.Temp.clear();
    EXPECT_TRUE(Database.Compact());
    EXPECT_EQ(Machine.Engine.Compacted.constFirst().second,
              Machine.Folders.ApplicationFolder() + QStringLiteral("\\smscontacts.mdb$compact.mdb"));
}

TEST_F(DBCompactTest, TheFileKeepsItsPermissions) {
    const auto shared = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup |
                        QFileDevice::WriteGroup | QFileDevice::ReadOther | QFileDevice::WriteOther;
    ASSERT_TRUE(QFile::setPermissions(Database.Filename, shared));
    EXPECT_TRUE(Database.Compact());
    EXPECT_TRUE(QFile::permissions(Database.Filename).testFlags(shared)) << "colleagues must still reach it";
}

}  // namespace
