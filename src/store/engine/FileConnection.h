#pragma once

#include "store/engine/Connection.h"

#include <QVariantMap>

#include <memory>
#include <set>
#include <utility>

class Clock;

namespace engine {

namespace sqlite {
class SqliteConnection;
}

/// What the first bytes of a file say.
enum class FileKind {
    Sqlite,  // "SQLite format 3\0"
    Jet,     // "\0\1\0\0Standard Jet DB\0"
    Link,    // "[larkspan-link]": names a database on a server
    Other
};

/// Looks a file over before it is opened. Closing a file drops all locks that the process holds on it, those
/// of an open connection too; so a file that was SQLite's is not read again before it is opened, but known by
/// its identity.
class FileInspector {
public:
    /// `path` is this machine's own form. Throws Failure NoSuchFile, NotADatabase (a folder, an empty file),
    /// CannotOpen.
    [[nodiscard]] FileKind KindOf(const QString& path);
    /// Throws Failure NotADatabase, saying what the file is, if it is not SQLite's.
    void CheckSqlite(const QString& path);
    /// A file turned out not to be what it was known as: it was replaced.
    void Forget(const QString& path);

private:
    std::set<std::pair<quint64, quint64>> m_known;  // device and number of files that were SQLite's
};

/// A connection that takes its engine from the file that it opens.
class FileConnection final : public Connection {
public:
    /// Both must outlive the connection.
    FileConnection(FileInspector& inspector, Clock& clock);
    ~FileConnection() override;
    FileConnection(const FileConnection&) = delete;
    FileConnection& operator=(const FileConnection&) = delete;

    [[nodiscard]] State ConnectionState() const override;
    void Open(const QString& filename) override;
    void Close() override;
    std::unique_ptr<Recordset> Execute(const QString& sql, qint64* rowsAffected) override;
    std::unique_ptr<Recordset> OpenRecordset(const QString& sql, CursorType cursor, LockType lock) override;
    void BeginTrans() override;
    void CommitTrans() override;
    void RollbackTrans() override;
    [[nodiscard]] QStringList TableNames() override;
    void SetProperty(const QString& name, const QVariant& value) override;
    [[nodiscard]] QVariant Property(const QString& name) const override;
    [[nodiscard]] const QList<Error>& Errors() const override { return m_errors; }

private:
    template <typename Step>
    auto Run(Step step);
    void OpenFile(const QString& filename);
    [[nodiscard]] sqlite::SqliteConnection& Engine() const;

    FileInspector& m_inspector;
    Clock& m_clock;
    std::unique_ptr<sqlite::SqliteConnection> m_engine;  // none while closed
    QVariantMap m_properties;
    QList<Error> m_errors;
};

}  // namespace engine
