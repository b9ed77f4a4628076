#include "support/BrokenDisk.h"
#include "tracking/HistoryFixture.h"

#include <QDir>

#include <memory>

#include <sys/wait.h>

namespace {

/// A history with three messages, to which one send adds more.
class HistoryBatch : public HistoryFixture {
public:
    HistoryBatch() {
        for (qint32 id = 1; id <= 3; ++id) {
            Add(id);
        }
        m_old = Bytes(HistoryPath());
    }

    [[nodiscard]] QString SecondPath() const {
        return Folders.ApplicationFolder() + QStringLiteral(".larkspan-history");
    }
    /// What stood in the history before.
    [[nodiscard]] const QByteArray& Old() const { return m_old; }
    [[nodiscard]] QStringList Names() const {
        return QDir(Folders.Root.path()).entryList(QDir::Files | QDir::Hidden);
    }
    const QStringList TheTwo{QStringLiteral("history.sms"), QStringLiteral("messagelog.sms")};

private:
    QByteArray m_old;
};

class HistoryBatchOfAnOrdinaryUser : public AsOrdinaryUser, public HistoryBatch {};

}  // namespace

TEST_F(HistoryBatch, AddsWhatSingleAdditionsAddWaitsForTheDiskOnceAndLeavesNothingBeside) {
    {
        const mdlHistory::Batch batch(History);
        for (qint32 id = 4; id <= 300; ++id) {
            Add(id);
        }
        EXPECT_EQ(Files.Syncs, 0);
    }
    EXPECT_EQ(Files.Syncs, 1);
    EXPECT_EQ(Files.HastyWrites, 297);
    EXPECT_EQ(Names(), TheTwo);
    const QByteArray batched = Bytes(HistoryPath());
    EXPECT_EQ(batched.size(), 250 * 1069);
    Write(HistoryPath(), Old());
    for (qint32 id = 4; id <= 300; ++id) {
        Add(id);
    }
    EXPECT_EQ(Bytes(HistoryPath()), batched);
    EXPECT_EQ(Files.HastyWrites, 297) << "one on its own goes to the disk at once";
}

TEST_F(HistoryBatch, KeepsWhatStoodThereUnderASecondNameUntilItsEnd) {
    const mdlHistory::Batch batch(History);
    EXPECT_FALSE(QFile::exists(SecondPath())) << "not before there is something to add";
    Add(4);
    EXPECT_EQ(Bytes(SecondPath()), Old());
    Add(5);
    EXPECT_EQ(Bytes(SecondPath()), Old());
    EXPECT_EQ(IDs(), (QList<qint32>{5, 4, 3, 2, 1}));
}

TEST_F(HistoryBatch, WithoutAHistoryKeepsTheFirstMessageOnceThatIsOnTheDisk) {
    for (const bool isThere : {false, true}) {
        QFile::remove(HistoryPath());
        if (isThere) {
            History.ClearHistory();
        }
        Files.Syncs = Files.HastyWrites = 0;
        {
            const mdlHistory::Batch batch(History);
            Add(4);
            EXPECT_EQ(Files.HastyWrites, 0);
            EXPECT_EQ(Names(), TheTwo);
            Add(5);
            EXPECT_EQ(Files.Syncs, 1);
            EXPECT_EQ(Bytes(SecondPath()).size(), 1069);
            Add(6);
        }
        EXPECT_EQ(Files.HastyWrites, 2);
        EXPECT_EQ(IDs(), (QList<qint32>{6, 5, 4}));
        EXPECT_EQ(Names(), TheTwo);
    }
}

TEST_F(HistoryBatch, AfterACrashOfTheMachineTheHistoryIsWhatItWasBefore) {
    for (const int left : {0, 1, 4096, 2 * 1069 + 1}) {
        Write(SecondPath(), Old());
        Write(HistoryPath(), QByteArray(left, '\0'));
        EXPECT_EQ(IDs(), (QList<qint32>{3, 2, 1})) << left;
        EXPECT_EQ(Bytes(HistoryPath()), Old()) << left;
        EXPECT_EQ(Names(), TheTwo) << left;
        Write(SecondPath(), Old());
        Write(HistoryPath(), QByteArray(left, '\0'));
        Add(4);
        EXPECT_EQ(IDs(), (QList<qint32>{4, 3, 2, 1})) << left;
    }
}

TEST_F(HistoryBatch, WithoutAWholeSecondFileAnEmptyHistoryIsEmptyAndACorruptOneIsTold) {
    for (const int second : {-1, 0, 1068}) {
        if (second >= 0) {
            Write(SecondPath(), QByteArray(second, 'x'));
        }
        Write(HistoryPath(), QByteArray());
        EXPECT_TRUE(History.ReadHistory().isEmpty()) << second;
        EXPECT_EQ(Bytes(HistoryPath()), QByteArray()) << second;
        Write(HistoryPath(), QByteArray(1068, 'x'));
        Boxes.Expect();
        EXPECT_TRUE(History.ReadHistory().isEmpty()) << second;
        EXPECT_FALSE(QFile::exists(HistoryPath())) << second;
    }
}

TEST_F(HistoryBatch, WhatAKilledProgramLeftBesideAWholeHistoryIsDroppedOnceThatIsOnTheDisk) {
    Write(SecondPath(), QByteArray(1069, 'x'));
    EXPECT_EQ(IDs(), (QList<qint32>{3, 2, 1})) << "nobody takes it for the history";
    {
        const mdlHistory::Batch batch(History);
        Add(4);
        EXPECT_EQ(Files.Syncs, 1);
        EXPECT_EQ(Bytes(SecondPath()), Old());
    }
    EXPECT_EQ(IDs(), (QList<qint32>{4, 3, 2, 1}));
    EXPECT_EQ(Names(), TheTwo);
}

TEST_F(HistoryBatch, WhereAFileCannotHaveTwoNamesEachAdditionGoesToTheDisk) {
    Files.IsLinkFailing = true;
    {
        const mdlHistory::Batch batch(History);
        Add(4);
        Add(5);
    }
    EXPECT_EQ(Files.HastyWrites, 0);
    EXPECT_EQ(IDs(), (QList<qint32>{5, 4, 3, 2, 1}));
    EXPECT_EQ(Names(), TheTwo);
}

TEST_F(HistoryBatch, TheEndOfAnotherProgramsBatchEndsTheHaste) {
    const mdlHistory::Batch batch(History);
    Add(4);
    EXPECT_EQ(Files.HastyWrites, 1);
    {
        mdlHistory other(Files, Folders, Boxes, Page);
        const mdlHistory::Batch ending(other);
        other.AddToHistory(5, QStringLiteral("Aoife Brennan"), QStringLiteral("Hello"), Noon);
        EXPECT_EQ(Files.HastyWrites, 2);
    }
    Add(6);
    EXPECT_EQ(Files.HastyWrites, 2);
    EXPECT_EQ(IDs(), (QList<qint32>{6, 5, 4, 3, 2, 1}));
}

TEST_F(HistoryBatch, ThatCannotReachTheDiskLeavesTheSecondNameToTheNextOne) {
    {
        const mdlHistory::Batch batch(History);
        Add(4);
        Files.IsSyncFailing = true;
    }
    EXPECT_EQ(Bytes(SecondPath()), Old());
    {
        const mdlHistory::Batch batch(History);
        Add(5);
        EXPECT_EQ(Files.HastyWrites, 1) << "what could be lost is not known to be on the disk";
        EXPECT_EQ(Bytes(SecondPath()), Old());
        Files.IsSyncFailing = false;
    }
    EXPECT_EQ(IDs(), (QList<qint32>{5, 4, 3, 2, 1}));
    EXPECT_EQ(Names(), TheTwo);
}

TEST_F(HistoryBatch, ClearingTakesTheSecondFileAway) {
    Write(SecondPath(), Old());
    History.ClearHistory();
    EXPECT_EQ(Names(), TheTwo);
    EXPECT_EQ(Bytes(HistoryPath()), QByteArray());
    EXPECT_TRUE(History.ReadHistory().isEmpty());
}

TEST_F(HistoryBatch, OnAFullDiskKeepsTheOldHistoryWholeAtEveryByteAndLeavesNothingBeside) {
    for (const qint64 room : {qint64{0}, qint64{1}, qint64{1069}, qint64{4275}}) {
        {
            const mdlHistory::Batch batch(History);
            const FullDisk full(room);
            Add(4);
            Add(5);
            EXPECT_EQ(Bytes(HistoryPath()), Old()) << "room for " << room;
        }
        EXPECT_EQ(Bytes(HistoryPath()), Old()) << "room for " << room;
        EXPECT_EQ(Names(), TheTwo) << "room for " << room;
    }
}

TEST_F(HistoryBatch, KeepsTheOldOrTheNewHistoryWhicheverWriteFails) {
    for (int writes = 0; writes < 8; ++writes) {
        Write(HistoryPath(), Old());
        Files.WritesLeft = writes;
        {
            const mdlHistory::Batch batch(History);
            Add(4);
            Add(5);
        }
        Files.WritesLeft = -1;
        const QList<qint32> ids = IDs();
        EXPECT_GE(ids.size(), 3) << writes;
        EXPECT_EQ(ids.last(), 1) << writes;
        QFile::remove(SecondPath());
    }
}

TEST_F(HistoryBatchOfAnOrdinaryUser, InAReadOnlyFolderChangesNothing) {
    {
        const ReadOnlyFolder readOnly(Folders.Root.path());
        const mdlHistory::Batch batch(History);
        Add(4);
        EXPECT_EQ(Bytes(HistoryPath()), Old());
        EXPECT_EQ(Names(), TheTwo);
    }
    Add(5);
    EXPECT_EQ(IDs(), (QList<qint32>{5, 3, 2, 1}));
}

TEST_F(HistoryBatch, AProgramThatIsKilledAtAnyMomentLeavesAWholeHistory) {
    for (int kill = 0; kill < 20; ++kill) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (qint32 id = 1000;; id += 2) {
                const mdlHistory::Batch batch(History);
                Add(id);
                Add(id + 1);
            }
        }
        QByteArray last = Bytes(HistoryPath());
        for (int changes = 0; changes < 1 + kill % 5;) {
            const QByteArray now = Bytes(HistoryPath());
            EXPECT_TRUE(!now.isEmpty() && now.size() % 1069 == 0) << now.size();
            changes += now != last ? 1 : 0;
            last = now;
        }
        ::kill(child, SIGKILL);
        ASSERT_EQ(waitpid(child, nullptr, 0), child);
        const qsizetype before = Bytes(HistoryPath()).size() / 1069;
        EXPECT_EQ(History.ReadHistory().size(), before);
        const mdlHistory::Batch batch(History);
        Add(1);
        EXPECT_EQ(History.ReadHistory().size(), std::min<qsizetype>(before + 1, 250));
    }
    // A kill between two names of a new file leaves it under the first one.
    QStringList names = Names();
    EXPECT_FALSE(QFile::exists(SecondPath()));
    names.removeIf([](const QString& name) { return name.startsWith(QStringLiteral(".larkspan-")); });
    EXPECT_EQ(names, TheTwo);
}
