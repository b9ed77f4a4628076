#include "SqlCheck.h"

#include "store/engine/Error.h"
#include "store/engine/sql/Parser.h"
#include "store/engine/sql/Writer.h"
#include "store/engine/sqlite/Functions.h"
#include "store/engine/sqlite/SqliteDialect.h"

#include <sqlite3.h>

#include <cstring>

namespace {

QString TextOf(QByteArrayView bytes) {
    if (bytes.isEmpty() || static_cast<unsigned char>(bytes.front()) != 0xFF) {
        return QString::fromUtf8(bytes);
    }
    const QByteArrayView units = bytes.sliced(1);
    QString text(units.size() / 2, Qt::Uninitialized);
    std::memcpy(text.data(), units.data(), static_cast<std::size_t>(text.size()) * 2);
    return text;
}

/// Names of tables and columns are the only thing that the reader leaves to the engine.
bool IsAboutNames(const char* message) {
    for (const char* allowed : {"no such table: ", "no such column: ", "table ", "cannot modify ",
                                "no such collation", "no tables specified"}) {
        if (std::strncmp(message, allowed, std::strlen(allowed)) == 0) {
            return true;
        }
    }
    return false;
}

}  // namespace

void SqlCheck::Closer::operator()(sqlite3* handle) const {
    sqlite3_close(handle);
}

SqlCheck::SqlCheck() {
    sqlite3* handle = nullptr;
    sqlite3_open(":memory:", &handle);
    m_database.reset(handle);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    engine::sqlite::RegisterFunctions(handle);
    sqlite3_exec(handle,
                 "CREATE TABLE Message (msgID INTEGER PRIMARY KEY, msgText TEXT, msgStatus INTEGER, "
                 "msgSendTime DATETIME);"
                 "CREATE TABLE t (a, b, c);"
                 "CREATE VIEW q AS SELECT a, b FROM t ORDER BY a",
                 nullptr, nullptr, nullptr);
}

SqlCheck::~SqlCheck() = default;

QString SqlCheck::Run(QByteArrayView bytes) {
    const QString text = TextOf(bytes);
    try {
        const engine::sql::MonthNames months(QLocale::c());
        const engine::sql::Statement statement = engine::sql::Parse(text, months);
        const engine::sql::Written written = engine::sql::Write(statement, engine::sqlite::SqliteDialect());
        return CheckPrepared(written.Sql, written.Values.size());
    } catch (const engine::Failure& failure) {
        return failure.Item().SQLState.toInt() >= 3000 ? QString()
                                                       : QStringLiteral("a refusal without a number");
    }
}

QString SqlCheck::CheckPrepared(const QByteArray& sql, std::size_t values) {
    sqlite3_stmt* prepared = nullptr;
    const char* tail = nullptr;
    const int code =
        sqlite3_prepare_v2(m_database.get(), sql.constData(), static_cast<int>(sql.size()), &prepared, &tail);
    const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> owner(prepared, sqlite3_finalize);
    if (sql.contains('\0')) {
        return QStringLiteral("a NUL in what was written");
    }
    if (code != SQLITE_OK) {
        const char* message = sqlite3_errmsg(m_database.get());
        return IsAboutNames(message)
                   ? QString()
                   : QString::fromUtf8(message) + QStringLiteral(": ") + QString::fromUtf8(sql);
    }
    if (prepared == nullptr || *tail != '\0') {
        return QStringLiteral("not exactly one statement: ") + QString::fromUtf8(sql);
    }
    if (sqlite3_bind_parameter_count(prepared) != static_cast<int>(values)) {
        return QStringLiteral("a value without its parameter: ") + QString::fromUtf8(sql);
    }
    return {};
}
