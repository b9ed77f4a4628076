#include "store/engine/sqlite/Database.h"

#include "store/engine/sqlite/Functions.h"

#include <sqlite3.h>

#include <QFile>

#include <new>
#include <utility>

namespace engine::sqlite {

namespace {

constexpr int PrimaryCode = 0xFF;
constexpr std::size_t MaxStatements = 40;

bool IsLocked(int code) {
    const int primary = code & PrimaryCode;
    return primary == SQLITE_BUSY || primary == SQLITE_PROTOCOL;
}

int OnBusy(void* wait, int) {
    return static_cast<int>(static_cast<LockWait*>(wait)->Pause());
}

}  // namespace

void StatementCloser::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

void Database::Closer::operator()(sqlite3* handle) const {
    sqlite3_close(handle);
}

Database::Database(const QString& path, Clock& clock) : m_wait(clock) {
    m_wait.Start();
    Open(path);
    Configure();
}

Database::~Database() = default;

void Database::Open(const QString& path) {
    constexpr int Flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
    sqlite3* handle = nullptr;
    const int code = sqlite3_open_v2(QFile::encodeName(path).constData(), &handle, Flags, nullptr);
    m_handle.reset(handle);
    if (code != SQLITE_OK) {
        ThrowFailure(handle, code, Doing::Open);
    }
}

void Database::Configure() {
    sqlite3* handle = m_handle.get();
    sqlite3_busy_handler(handle, OnBusy, &m_wait);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_FKEY, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    RegisterFunctions(handle);
    // The first of these also reads the schema, so that a file that is no database fails here and not later.
    Run("PRAGMA journal_mode=PERSIST; PRAGMA synchronous=FULL", Doing::Open);
}

void Database::Run(const char* sql, Doing doing) {
    m_wait.Start();
    const int code =
        WhileLocked([this, sql] { return sqlite3_exec(m_handle.get(), sql, nullptr, nullptr, nullptr); });
    if (code != SQLITE_OK) {
        ThrowFailure(m_handle.get(), code, doing);
    }
}

PreparedStatement Database::Prepare(const QByteArray& sql, int* code) {
    *code = SQLITE_OK;
    if (const auto found = m_idle.find(sql); found != m_idle.end()) {
        return std::move(m_idle.extract(found).mapped());
    }
    sqlite3_stmt* statement = nullptr;
    *code = WhileLocked([&] {
        return sqlite3_prepare_v3(m_handle.get(), sql.constData(), static_cast<int>(sql.size()) + 1,
                                  SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    });
    PreparedStatement prepared{sql, {}};
    prepared.Handle.reset(statement);
    return prepared;
}

void Database::GiveBack(PreparedStatement statement) noexcept {
    sqlite3_reset(statement.Handle.get());
    sqlite3_clear_bindings(statement.Handle.get());
    try {
        if (m_idle.size() >= MaxStatements) {
            m_idle.clear();
        }
        const QByteArray sql = statement.Sql;
        m_idle.insert_or_assign(sql, std::move(statement));
    } catch (const std::bad_alloc&) {
        // It is made anew when it is wanted again.
    }
}

int Database::Step(sqlite3_stmt* statement) {
    return WhileLocked([statement] {
        const int code = sqlite3_step(statement);
        if (IsLocked(code)) {
            sqlite3_reset(statement);
        }
        return code;
    });
}

/// SQLite asks the busy handler nothing where it sees a deadlock, nor while another connection rolls a
/// journal back.
int Database::WhileLocked(const std::function<int()>& action) {
    int code = action();
    while (IsLocked(code) && m_wait.Pause()) {
        code = action();
    }
    return code;
}

}  // namespace engine::sqlite
