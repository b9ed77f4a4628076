#include "common/ExitCode.h"
#include "core/Numbers.h"
#include "larkspan-data/Commands.h"
#include "store/office/OfficeCheck.h"
#include "support/BrokenDisk.h"
#include "support/RawDatabase.h"
#include "tools/TestOffice.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

struct Answer {
    int Code = 0;
    QString Out;
    QString Error;
};

Answer Compact(const QString& folder, const std::function<bool()>& isStopped = {}, bool isTerminal = false) {
    Answer answer;
    QTextStream out(&answer.Out);
    QTextStream error(&answer.Error);
    engine::FileConnectionFactory engines;
    answer.Code =
        RunCommandLine({QStringLiteral("compact"), folder}, {engines, out, error, isTerminal, isStopped});
    return answer;
}

QByteArray BytesOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

/// An outbox with much room of deleted rows, and a journal as large as they were.
void MakeRoom(const TestOffice& office) {
    RawDatabase file(office.Outbox());
    file.Execute(QStringLiteral(
        "WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 500) "
        "INSERT INTO Message (msgRecipient, msgText) SELECT 'Ann', hex(zeroblob(200)) FROM n"));
    office.Execute(office.Outbox(), QStringLiteral("DELETE FROM Message WHERE msgID <= 490"));
}

}  // namespace

TEST(CompactCommand, GivesBackTheRoomOfDeletedRowsAndKeepsTheOthers) {
    const TestOffice office;
    MakeRoom(office);
    const qint64 size = QFileInfo(office.Outbox()).size();
    const auto before = RawDatabase(office.Outbox()).Rows(QStringLiteral("SELECT * FROM Message"));
    const Answer answer = Compact(office.Folder());
    EXPECT_EQ(answer.Code, ExitCode::Fine) << answer.Error.toStdString();
    EXPECT_LT(QFileInfo(office.Outbox()).size(), size / 2);
    EXPECT_EQ(QFileInfo(office.Outbox() + QStringLiteral("-journal")).size(), 0);
    EXPECT_EQ(RawDatabase(office.Outbox()).Rows(QStringLiteral("SELECT * FROM Message")), before);
    EXPECT_EQ(answer.Out.count(QStringLiteral(" before, ")), 2);
    for (const qint64 shown : {size, QFileInfo(office.Outbox()).size()}) {
        EXPECT_TRUE(answer.Out.contains(Numbers::FileSize(shown))) << answer.Out.toStdString();
    }
    EXPECT_TRUE(answer.Error.isEmpty());
    EXPECT_TRUE(OfficeCheck(office.Machine.Engines).Run(office.Folder(), {})->IsFine());
    office.Execute(office.Outbox(), QStringLiteral("INSERT INTO Message (msgText) VALUES ('next')"));
    EXPECT_EQ(office.Column(office.Outbox(), QStringLiteral("SELECT msgID FROM Message ORDER BY msgID DESC"))
                  .value(0),
              QVariant(501))
        << "numbers go on";
}

TEST(CompactCommand, AClientThatHasTheFileOpenGoesOnWithIt) {
    const TestOffice office;
    MakeRoom(office);
    auto client = office.Machine.Engines.NewConnection();
    client->Open(office.Outbox());
    EXPECT_EQ(Compact(office.Folder()).Code, ExitCode::Fine);
    client->Execute(QStringLiteral("INSERT INTO Message (msgText) VALUES ('kept')"), nullptr);
    EXPECT_EQ(
        office.Column(office.Outbox(), QStringLiteral("SELECT Count(*) FROM Message WHERE msgText = 'kept'")),
        QVariantList{1});
}

TEST(CompactCommand, AFileThatIsMissingOrNoDatabaseIsNamedAndTheOtherIsCompactedAllTheSame) {
    const TestOffice office;
    MakeRoom(office);
    const qint64 size = QFileInfo(office.Outbox()).size();
    QFile phonebook(office.Phonebook());
    ASSERT_TRUE(phonebook.open(QIODevice::WriteOnly | QIODevice::Truncate));
    phonebook.write(QByteArray(4096, 'x'));
    phonebook.close();
    const Answer answer = Compact(office.Folder());
    EXPECT_EQ(answer.Code, ExitCode::CannotOpen);
    EXPECT_TRUE(answer.Error.startsWith(QStringLiteral("larkspan-data: smscontacts.mdb: ")));
    EXPECT_EQ(BytesOf(office.Phonebook()), QByteArray(4096, 'x'));
    EXPECT_LT(QFileInfo(office.Outbox()).size(), size);
    ASSERT_TRUE(phonebook.open(QIODevice::WriteOnly | QIODevice::Truncate));
    phonebook.close();
    EXPECT_EQ(Compact(office.Folder()).Code, ExitCode::CannotOpen);
    EXPECT_EQ(phonebook.size(), 0) << "an empty file stays empty";
    ASSERT_TRUE(phonebook.remove());
    EXPECT_EQ(Compact(office.Folder()).Code, ExitCode::CannotOpen);
    EXPECT_FALSE(QFile::exists(office.Phonebook())) << "nothing is made";
}

TEST(CompactCommand, AFullDiskLeavesTheFilesAsTheyWere) {
    const TestOffice office;
    MakeRoom(office);
    const QByteArray before = BytesOf(office.Outbox());
    {
        const FullDisk disk(4096);
        EXPECT_EQ(Compact(office.Folder()).Code, ExitCode::CannotOpen);
    }
    EXPECT_EQ(BytesOf(office.Outbox()), before);
    EXPECT_EQ(Compact(office.Folder()).Code, ExitCode::Fine);
}

TEST(CompactCommand, AStopBetweenTheFilesEndsWith4) {
    const TestOffice office;
    int asked = 0;
    const Answer answer = Compact(office.Folder(), [&] { return ++asked == 2; });
    EXPECT_EQ(answer.Code, ExitCode::Stopped);
    EXPECT_EQ(answer.Out.count(QStringLiteral(" before, ")), 1);
}

TEST(CompactCommand, AFolderThatIsNotThereEndsWith3AndProgressIsForTerminals) {
    const TestOffice office;
    EXPECT_EQ(Compact(office.PathOf(QStringLiteral("nowhere"))).Code, ExitCode::CannotOpen);
    EXPECT_TRUE(Compact(office.Folder(), {}, true).Error.contains(QStringLiteral("50% smscontacts.mdb")));
}
