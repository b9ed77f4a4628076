#include "store/engine/FileConnection.h"
#include "store/engine/sqlite/OfficeFiles.h"
#include "support/FakeMachine.h"
#include "support/Printing.h"
#include "support/RawDatabase.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// An outbox that another program fills in its own way.
class SqliteRows : public ::testing::Test {
protected:
    QTemporaryDir Folder;
    QString Path = Folder.filePath(QStringLiteral("outbox.mdb"));
    FakeClock Time;
    engine::FileConnectionFactory Factory{Time};
    std::unique_ptr<engine::Connection> Client = Factory.NewConnection();

    SqliteRows() {
        OfficeFiles::CreateOutboxFile(Path);
        Client->Open(Path);
    }
    void Raw(const QString& sql) const { RawDatabase(Path).Execute(sql); }
    [[nodiscard]] std::unique_ptr<engine::Recordset> Rows(const QString& sql) const {
        return Client->OpenRecordset(sql, engine::CursorType::ForwardOnly, engine::LockType::ReadOnly);
    }
};

TEST_F(SqliteRows, ADateIsReadInEveryShapeThatOtherProgramsWrite) {
    const QDate day(2026, 3, 7);
    const std::pair<const char*, QVariant> shapes[] = {
        {"2026-03-07 14:05:09", QDateTime(day, QTime(14, 5, 9))},
        {"2026-03-07T14:05:09", QDateTime(day, QTime(14, 5, 9))},
        {"2026-03-07 14:05:09.250", QDateTime(day, QTime(14, 5, 9, 250))},
        {"2026-03-07 14:05", QDateTime(day, QTime(14, 5))},
        {"2026-03-07", QDateTime(day, QTime(0, 0))},
        {"2026-02-30 14:05:09", QStringLiteral("2026-02-30 14:05:09")},
        {"2026-03-07 24:05:09", QStringLiteral("2026-03-07 24:05:09")},
        {"2026-03-07 14:05:0x", QStringLiteral("2026-03-07 14:05:0x")},
        {"20x6-03-07 14:05:09", QStringLiteral("20x6-03-07 14:05:09")},
        {"2026-O3-07 14:05:09", QStringLiteral("2026-O3-07 14:05:09")},
        {"2026/03/07 14:05:09", QDateTime(day, QTime(14, 5, 9))},
        {"soon, as we promised", QStringLiteral("soon, as we promised")},
        {"", QString()},
    };
    for (const auto& [text, expected] : shapes) {
        Raw(QStringLiteral("DELETE FROM Message"));
        Raw(QStringLiteral("INSERT INTO Message (msgSendTime) VALUES ('%1')").arg(QString::fromLatin1(text)));
        EXPECT_EQ(Rows(QStringLiteral("SELECT msgSendTime FROM Message"))->Value(0), expected) << text;
    }
}

TEST_F(SqliteRows, TextsOfASavedQueryAndOfANewColumnAreOrderedAsTextsToo) {
    Raw(QStringLiteral("CREATE VIEW Names AS SELECT msgRecipient FROM Message"));
    for (const char* name : {"ZOË", "anna", "Zoë", "Ärmel", "zoe"}) {
        Raw(QStringLiteral("INSERT INTO Message (msgRecipient) VALUES ('%1')").arg(QString::fromUtf8(name)));
    }
    const auto order = [this](const QString& sql) {
        QStringList names;
        for (const auto rows = Rows(sql); !rows->EndOfFile(); rows->MoveNext()) {
            names.append(rows->Text(0));
        }
        return names;
    };
    const QStringList byTable =
        order(QStringLiteral("SELECT msgRecipient FROM Message ORDER BY msgRecipient"));
    EXPECT_EQ(byTable.first(), QStringLiteral("anna"));
    EXPECT_EQ(byTable[1], QStringLiteral("Ärmel"));
    EXPECT_EQ(order(QStringLiteral("SELECT msgRecipient FROM Names ORDER BY msgRecipient")), byTable);
    // The connection has looked at the table before another program gives it one column more.
    Raw(QStringLiteral("ALTER TABLE Message ADD COLUMN msgNickname VARCHAR(30)"));
    Raw(QStringLiteral("UPDATE Message SET msgNickname = msgRecipient"));
    EXPECT_EQ(order(QStringLiteral("SELECT msgNickname FROM Message ORDER BY msgNickname")), byTable);
}

}  // namespace
