#pragma once

#include "store/engine/Error.h"
#include "store/engine/Recordset.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

class Clock;

namespace engine {

/// Numbers as the data objects of the field have them.
enum class State { Closed = 0, Open = 1 };

/// Values of Connection::Mode.
namespace Mode {
inline constexpr qint32 ReadShared = 17;       // read, others not denied
inline constexpr qint32 ReadWriteShared = 19;  // read and write, others not denied
}  // namespace Mode

/// One connection to one database file or server. Statements come in the one dialect that engine/sql reads. A
/// failing step throws Failure and leaves its item in the error collection; each call clears the collection
/// first. One statement is one transaction, unless BeginTrans was called; a writing one takes its lock at the
/// start. A lock held by another is waited for with short random pauses, at most 5 s for one statement,
/// opening included.
class Connection {
public:
    virtual ~Connection() = default;

    /// Set before Open.
    qint32 Mode = engine::Mode::ReadShared;

    /// Open only between a successful Open and Close.
    [[nodiscard]] virtual State ConnectionState() const = 0;
    /// `filename` in this program's form (either separator, drive letters): passed through NativePath.
    virtual void Open(const QString& filename) = 0;
    /// Ends the connection; an open transaction is rolled back, and recordsets can only
    /// be read from then on. Throws Failure if there is none.
    virtual void Close() = 0;

    /// Runs one statement. Returns the rows of one that has rows, otherwise none. `rowsAffected`, if given,
    /// gets the number of rows inserted, changed or deleted.
    virtual std::unique_ptr<Recordset> Execute(const QString& sql, qint64* rowsAffected) = 0;
    /// Opens the rows of a statement. The rows are those of the moment of opening: no lock outlives this
    /// call.
    virtual std::unique_ptr<Recordset> OpenRecordset(const QString& sql, CursorType cursor,
                                                     LockType lock) = 0;

    /// A failure that rolls the whole transaction back is never transient: the statements that follow fail
    /// with TransactionLost until CommitTrans, which fails, or RollbackTrans was called.
    virtual void BeginTrans() = 0;
    virtual void CommitTrans() = 0;
    virtual void RollbackTrans() = 0;

    /// Names of the tables and saved queries.
    [[nodiscard]] virtual QStringList TableNames() = 0;
    /// Dynamic properties by name; an engine keeps those that it does not know.
    virtual void SetProperty(const QString& name, const QVariant& value) = 0;
    /// An invalid value for one that was never set.
    [[nodiscard]] virtual QVariant Property(const QString& name) const = 0;

    /// What the latest call failed with; empty after one that succeeded.
    [[nodiscard]] virtual const QList<Error>& Errors() const = 0;
};

/// Makes connections; DB makes a new one for each opening.
class ConnectionFactory {
public:
    virtual ~ConnectionFactory() = default;
    /// A closed one.
    [[nodiscard]] virtual std::unique_ptr<Connection> NewConnection() = 0;
    /// Writes a compacted copy of the database `source` to the new file `destination`. Throws Failure.
    virtual void CompactDatabase(const QString& source, const QString& destination) = 0;
};

/// Connections to whatever a file holds: the first bytes choose the engine at Open, whatever the file's name.
/// Outlives its connections. One factory a process knows best which files are open: what it has seen once it
/// does not read again beside an open connection.
class FileConnectionFactory final : public ConnectionFactory {
public:
    FileConnectionFactory();
    /// Waits for locks by this clock, which outlives the factory.
    explicit FileConnectionFactory(Clock& clock);
    ~FileConnectionFactory() override;
    [[nodiscard]] std::unique_ptr<Connection> NewConnection() override;
    void CompactDatabase(const QString& source, const QString& destination) override;

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

}  // namespace engine
