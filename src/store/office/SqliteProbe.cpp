#include "store/office/SqliteProbe.h"

#include "store/engine/sqlite/Functions.h"

#include <QFile>

#include <sqlite3.h>
#include <memory>

namespace {

constexpr int BusyWait = 5000;             // ms
constexpr int StepsBetweenAsking = 50000;  // of SQLite's virtual machine, some milliseconds
constexpr int DamagesTold = 10;

struct CloseDatabase {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;

struct FinalizeStatement {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

int AskWhetherStopped(void* isStopped) {
    const auto& ask = *static_cast<const std::function<bool()>*>(isStopped);
    return ask && ask() ? 1 : 0;
}

QString TextOf(sqlite3_stmt* statement, int column) {
    const unsigned char* text = sqlite3_column_text(statement, column);
    return QString::fromUtf8(reinterpret_cast<const char*>(text), sqlite3_column_bytes(statement, column));
}

QString ErrorOf(sqlite3* database) {
    return QString::fromUtf8(sqlite3_errmsg(database));
}

/// Runs a statement; the rows go to `onRow`. The result code of the last step.
int ForEachRow(sqlite3* database, const char* sql, const std::function<void(sqlite3_stmt*)>& onRow) {
    sqlite3_stmt* raw = nullptr;
    int result = sqlite3_prepare_v2(database, sql, -1, &raw, nullptr);
    const Statement statement(raw);
    if (result != SQLITE_OK) {
        return result;
    }
    while ((result = sqlite3_step(raw)) == SQLITE_ROW) {
        onRow(raw);
    }
    return result;
}

/// False if it was stopped.
bool CheckPages(sqlite3* database, SqliteProbe& probe) {
    const auto collect = [&](sqlite3_stmt* row) {
        if (const QString line = TextOf(row, 0); line != u"ok") {
            probe.Damages.append(line);
        }
    };
    const QByteArray sql = "PRAGMA integrity_check(" + QByteArray::number(DamagesTold) + ')';
    const int result = ForEachRow(database, sql.constData(), collect);
    if (result != SQLITE_DONE && result != SQLITE_INTERRUPT) {
        probe.Damages.append(ErrorOf(database));
    }
    return result != SQLITE_INTERRUPT;
}

void ReadLastNumbers(sqlite3* database, SqliteProbe& probe) {
    // A file without such numbers has no such table, which is no damage.
    ForEachRow(database, "SELECT name, seq FROM sqlite_sequence", [&](sqlite3_stmt* row) {
        probe.LastNumbers.insert(TextOf(row, 0), sqlite3_column_int64(row, 1));
    });
}

}  // namespace

bool SqliteProbe::IsSqlite(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(16) == QByteArray("SQLite format 3\0", 16);
}

std::optional<SqliteProbe> SqliteProbe::Look(const QString& path, const std::function<bool()>& isStopped) {
    SqliteProbe probe;
    sqlite3* raw = nullptr;
    const int result = sqlite3_open_v2(path.toUtf8().constData(), &raw, SQLITE_OPEN_READONLY, nullptr);
    const Database database(raw);
    if (result != SQLITE_OK) {
        probe.Damages.append(ErrorOf(raw));
        return probe;
    }
    sqlite3_busy_timeout(raw, BusyWait);
    sqlite3_db_config(raw, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    engine::sqlite::RegisterFunctions(raw);
    std::function<bool()> ask = isStopped;
    sqlite3_progress_handler(raw, StepsBetweenAsking, AskWhetherStopped, &ask);
    if (!CheckPages(raw, probe)) {
        return std::nullopt;
    }
    ReadLastNumbers(raw, probe);
    return probe;
}
