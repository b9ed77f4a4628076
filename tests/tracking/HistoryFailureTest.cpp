#include "support/BrokenDisk.h"
#include "tracking/HistoryFixture.h"

#include <QDir>

namespace {

/// The history of a workstation on which writes fail: three messages are in it.
class HistoryFailureTest : public HistoryFixture {
public:
    HistoryFailureTest() {
        for (qint32 id = 1; id <= 3; ++id) {
            Add(id);
        }
        m_history = Bytes(HistoryPath());
        m_log = Bytes(LogPath());
    }

    [[nodiscard]] const QByteArray& OldHistory() const { return m_history; }
    [[nodiscard]] const QByteArray& OldLog() const { return m_log; }

private:
    QByteArray m_history;
    QByteArray m_log;
};

class HistoryOfAnOrdinaryUser : public AsOrdinaryUser, public HistoryFailureTest {};

}  // namespace

TEST_F(HistoryFailureTest, NoWriteSucceedsAndBothFilesStayAsTheyWere) {
    Files.WritesLeft = 0;
    Add(4);
    EXPECT_EQ(Bytes(HistoryPath()), OldHistory());
    EXPECT_EQ(Bytes(LogPath()), OldLog());
    Files.WritesLeft = -1;
    Add(5);
    EXPECT_EQ(IDs(), (QList<qint32>{5, 3, 2, 1}));
}

TEST_F(HistoryFailureTest, OnlyTheLogCannotBeWrittenAndTheHistoryHasTheMessage) {
    Files.WritesLeft = 1;
    Add(4);
    EXPECT_EQ(IDs(), (QList<qint32>{4, 3, 2, 1}));
    EXPECT_EQ(Bytes(LogPath()), OldLog());
}

TEST_F(HistoryFailureTest, OnlyTheHistoryCannotBeWrittenAndTheLogGainsItsLine) {
    QFile::remove(HistoryPath());
    QDir().mkdir(HistoryPath());  // what stands there cannot be replaced by a file
    Add(4);
    EXPECT_TRUE(QFileInfo(HistoryPath()).isDir());
    EXPECT_TRUE(Bytes(LogPath()).startsWith(OldLog()));
    EXPECT_TRUE(Bytes(LogPath()).endsWith("\r\n4,20260307120000,\"Aoife Brennan\",\"Hello\"\r\n"));
}

TEST_F(HistoryFailureTest, AFullDiskLeavesTheOldFilesWholeAtEveryByte) {
    const QByteArray newLine = QByteArrayLiteral("4,20260307120000,\"Aoife Brennan\",\"Hello\"\r\n");
    const qint64 logSize = OldLog().size();
    for (const qint64 room :
         {qint64{0}, qint64{1}, logSize, logSize + 1, logSize + 20, qint64{1069}, qint64{4275}}) {
        Write(HistoryPath(), OldHistory());
        Write(LogPath(), OldLog());
        {
            const FullDisk full(room);
            Add(4);
        }
        EXPECT_EQ(Bytes(HistoryPath()), OldHistory()) << "room for " << room;
        const bool hasRoomForLine = room >= logSize + newLine.size();
        EXPECT_EQ(Bytes(LogPath()), hasRoomForLine ? OldLog() + newLine : OldLog()) << "room for " << room;
    }
    {
        const FullDisk full(4276);
        Add(4);
    }
    EXPECT_EQ(IDs(), (QList<qint32>{4, 3, 2, 1}));
}

TEST_F(HistoryFailureTest, AFullDiskLeavesNothingBesideTheFiles) {
    const QStringList before = QDir(Folders.Root.path()).entryList(QDir::Files | QDir::Hidden);
    {
        const FullDisk full(100);
        Add(4);
    }
    EXPECT_EQ(QDir(Folders.Root.path()).entryList(QDir::Files | QDir::Hidden), before);
}

TEST_F(HistoryOfAnOrdinaryUser, InAReadOnlyFolderKeepsItsOldRecordsAndTheLogGoesOn) {
    const QDir folder(Folders.Root.path());
    const QStringList files = folder.entryList(QDir::Files | QDir::Hidden);
    {
        const ReadOnlyFolder readOnly(folder.path());
        Add(4);
        EXPECT_EQ(Bytes(HistoryPath()), OldHistory());
        EXPECT_EQ(Bytes(LogPath()).left(OldLog().size()), OldLog());
        EXPECT_EQ(Bytes(LogPath()).count("\r\n"), 4) << "the log itself can be written";
        History.ClearHistory();
        EXPECT_EQ(Bytes(HistoryPath()), OldHistory());
        EXPECT_EQ(folder.entryList(QDir::Files | QDir::Hidden), files);
    }
    Add(5);
    EXPECT_EQ(IDs(), (QList<qint32>{5, 3, 2, 1}));
}

TEST_F(HistoryFailureTest, AFileThatCannotBeReadNowKeepsItsRecords) {
    Files.IsReadFailing = true;
    EXPECT_TRUE(History.ReadHistory().isEmpty());
    Add(4);
    EXPECT_EQ(Bytes(HistoryPath()), OldHistory());
    EXPECT_EQ(Bytes(LogPath()).count("\r\n"), 4);
    Files.IsReadFailing = false;
    EXPECT_EQ(IDs(), (QList<qint32>{3, 2, 1}));
}

TEST_F(HistoryFailureTest, ACorruptFileThatCannotBeDeletedIsToldEachTime) {
    Write(HistoryPath(), QByteArray(1070, 'x'));
    Files.WritesLeft = 0;
    Boxes.Expect();
    EXPECT_TRUE(History.ReadHistory().isEmpty());
    Boxes.Expect();
    Add(4);
    EXPECT_EQ(Bytes(HistoryPath()).size(), 1070);
}

TEST_F(HistoryFailureTest, ClearingThatCannotDeleteLeavesAllAsItWas) {
    Files.WritesLeft = 0;
    History.ClearHistory();
    EXPECT_EQ(Bytes(HistoryPath()), OldHistory());
    EXPECT_EQ(Bytes(LogPath()), OldLog());
}

TEST_F(HistoryFailureTest, ClearingThatCannotCreateLeavesAnEmptyHistory) {
    Files.WritesLeft = 1;
    History.ClearHistory();
    EXPECT_FALSE(QFile::exists(HistoryPath()));
    EXPECT_TRUE(History.ReadHistory().isEmpty());
}
