#include "store/engine/sqlite/Database.h"

#include "store/engine/sqlite/OfficeFiles.h"
#include "support/FakeMachine.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace {

using engine::sqlite::Database;

class DatabaseTest : public ::testing::Test {
protected:
    QTemporaryDir Folder;
    FakeClock Time;
    const QString File = Folder.filePath(QStringLiteral("outbox.mdb"));

    DatabaseTest() { OfficeFiles::CreateOutboxFile(File); }
    /// The first column of the first row.
    static std::string Read(Database& database, const char* sql) {
        int code = SQLITE_OK;
        auto statement = database.Prepare(sql, &code);
        EXPECT_EQ(code, SQLITE_OK);
        EXPECT_EQ(database.Step(statement.Handle.get()), SQLITE_ROW);
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement.Handle.get(), 0));
        std::string value = text != nullptr ? text : "NULL";
        database.GiveBack(std::move(statement));
        return value;
    }
};

TEST_F(DatabaseTest, AConnectionSynchronisesFullyAndKeepsItsJournalInPlace) {
    Database database(File, Time);
    EXPECT_EQ(Read(database, "PRAGMA synchronous"), "2") << "a row that was acknowledged stands on the disk";
    EXPECT_EQ(Read(database, "PRAGMA journal_mode"), "persist");
    EXPECT_EQ(Read(database, "PRAGMA foreign_keys"), "1");
}

TEST_F(DatabaseTest, AStatementThatIsInUseIsNotHandedOutAgain) {
    Database database(File, Time);
    int code = SQLITE_OK;
    auto first = database.Prepare("SELECT 1", &code);
    auto second = database.Prepare("SELECT 1", &code);
    EXPECT_NE(first.Handle.get(), second.Handle.get());
    const sqlite3_stmt* const kept = first.Handle.get();
    database.GiveBack(std::move(first));
    EXPECT_EQ(database.Prepare("SELECT 1", &code).Handle.get(), kept);
}

TEST_F(DatabaseTest, AStatementThatCannotBeMadeIsNoneAndSaysWhy) {
    Database database(File, Time);
    int code = SQLITE_OK;
    EXPECT_EQ(database.Prepare("SELECT * FROM Nothing", &code).Handle, nullptr);
    EXPECT_EQ(code & 0xFF, SQLITE_ERROR);
}

}  // namespace
