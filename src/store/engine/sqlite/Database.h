#pragma once

#include "store/engine/sqlite/ErrorMap.h"
#include "store/engine/sqlite/LockWait.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <functional>
#include <memory>
#include <unordered_map>

struct sqlite3;
struct sqlite3_stmt;
class Clock;

namespace engine::sqlite {

/// Finalizes a statement.
struct StatementCloser {
    void operator()(sqlite3_stmt* statement) const;
};
/// A statement that is ready to run, and its text.
struct PreparedStatement {
    QByteArray Sql;
    std::unique_ptr<sqlite3_stmt, StatementCloser> Handle;
};

/// One SQLite connection, open from construction to destruction: rollback journal that stays in place
/// (PERSIST: works on network folders, and no file is made or deleted for a commit), full synchronisation,
/// foreign keys, no double-quoted strings, nothing unsafe from the schema of a file. Waits for locks by
/// LockWait. A file that cannot be written is open for reading, and writing then fails with ReadOnly.
class Database {
public:
    /// Opens an existing file; `path` is this machine's own form. Throws Failure FileInUse, CannotOpen,
    /// NotADatabase, Damaged.
    Database(const QString& path, Clock& clock);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    [[nodiscard]] sqlite3* Handle() const { return m_handle.get(); }
    [[nodiscard]] LockWait& Wait() { return m_wait; }

    /// Runs statements of SQLite's own, which have no values of users in them. Starts a new wait.
    void Run(const char* sql, Doing doing);
    /// Makes a statement ready, or takes it from those that were given back. It is the caller's, whatever is
    /// prepared meanwhile. `code` gets SQLite's answer; there is no Handle if it is not SQLITE_OK.
    [[nodiscard]] PreparedStatement Prepare(const QByteArray& sql, int* code);
    /// Resets a statement, takes its values away and keeps it for the next use.
    void GiveBack(PreparedStatement statement) noexcept;
    /// One step of a statement; starts over as long as a lock stands in the way and there is time.
    [[nodiscard]] int Step(sqlite3_stmt* statement);

private:
    struct Closer {
        void operator()(sqlite3* handle) const;
    };
    void Open(const QString& path);
    void Configure();
    [[nodiscard]] int WhileLocked(const std::function<int()>& action);

    LockWait m_wait;
    std::unique_ptr<sqlite3, Closer> m_handle;
    std::unordered_map<QByteArray, PreparedStatement> m_idle;  // by their text; none is in use
};

}  // namespace engine::sqlite
