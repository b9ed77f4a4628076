#pragma once

#include "store/engine/Connection.h"

#include <QRandomGenerator>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class Clock;
class Drives;
class EventPump;
class Folders;

/// What a DB needs of the machine and of the engine.
struct DBServices {
    engine::ConnectionFactory& Engine;
    ::Clock& Clock;
    EventPump& Pump;
    ::Drives& Drives;
    ::Folders& Folders;
};

/// One connection to one database file that lies, as a rule, on a shared network folder and is written at the
/// same moment by other clients and by the gateway. Each statement is tried up to MaxRetryCount times, with
/// random back-off, and only failures that the engine reports as lock or sharing conflicts are tried again.
///
/// Nothing thrown by the engine leaves the class: a caller learns of a failure from the operation's result
/// and from IsError and LastError. Only OpenDatabase and the statements reset the error, so LastError is read
/// before the next of these. Not for more than one thread; the waits pump the user interface's events.
class DB {
public:
    explicit DB(const DBServices& services);
    ~DB();
    DB(const DB&) = delete;
    DB& operator=(const DB&) = delete;

    /// Path of the database file; given by the caller before OpenDatabase.
    QString Filename;
    /// Number of attempts for one operation.
    qint16 MaxRetryCount = 3;
    /// Upper bound of the pause between attempts, in milliseconds.
    qint32 MaxRetryInterval = 1000;

    /// True from the first RecordError until the next ResetError.
    [[nodiscard]] bool IsError() const noexcept { return m_isError; }

    /// Connects; an open connection is closed first. `mode` is one of engine::Mode. After success LastError
    /// is "0".
    [[nodiscard]] bool OpenDatabase(qint32 mode) noexcept;
    /// Closes and releases the connection if there is one; always false. The error state stays.
    bool CloseDatabase() noexcept;
    /// None while the database is closed.
    [[nodiscard]] engine::Connection* Connection() const noexcept { return m_connection.get(); }

    /// A recordset bound to the connection; none on failure.
    [[nodiscard]] std::unique_ptr<engine::Recordset> OpenDynaset(const QString& sql,
                                                                 engine::CursorType cursor,
                                                                 engine::LockType lock) noexcept;
    /// A client-side recordset cut off from the connection; none on failure.
    [[nodiscard]] std::unique_ptr<engine::Recordset> DisconnectedSet(const QString& sql) noexcept;

    /// True if no error is pending afterwards. No retry, no RecordError.
    [[nodiscard]] bool BeginTransaction() noexcept;
    /// True on success, otherwise RecordError and false. No retry: an outcome that nobody knows is not tried
    /// again.
    [[nodiscard]] bool CommitTransaction() noexcept;
    /// A failure is passed over.
    void RollbackTransaction() noexcept;

    /// A statement without rows. True on success; false for a failure that is not transient; true, with
    /// IsError set and LastError holding the last failure, for a transient failure on every attempt: callers
    /// that test only the result then go on to their next step.
    [[nodiscard]] bool Execute(const QString& sql) noexcept;
    /// A statement that returns rows; none if no attempt succeeded.
    [[nodiscard]] std::unique_ptr<engine::Recordset> ExecuteRecordset(const QString& sql) noexcept;
    /// A statement, returning the number of rows affected; 0 if no attempt succeeded.
    [[nodiscard]] qint32 ExecuteRecordResult(const QString& sql) noexcept;

    /// Nothing when no connection exists or the list cannot be read.
    [[nodiscard]] std::optional<QStringList> TableNames() noexcept;

    /// Compacts the file by way of a temporary copy; the previous file is kept beside it as ".cmp" until all
    /// is well, and stays there, with the temporary one, after a failure. No retry. Reopens with mode 19 if
    /// it was open. For a quiet moment: what another client writes while the files change places is lost.
    [[nodiscard]] bool Compact() noexcept;
    /// Whether Filename names a file, by way of NativePath.
    [[nodiscard]] bool FileExists() const noexcept;

    /// Sets IsError and builds the error text "GE:0x80004005, NE:0x0, SQL:3045 - description" from the
    /// pending error; without an item of the engine "GE:0x800A0E78, description", without a connection
    /// "GE:0x800A0E78".
    void RecordError() noexcept;
    /// IsError false, LastError empty.
    void ResetError() noexcept;
    [[nodiscard]] QString LastError() const noexcept { return m_errorText; }

    /// Whether a connection exists and says that it is open.
    [[nodiscard]] bool IsConnected() const noexcept;
    /// The first two characters of Filename if the second is ":", else empty.
    [[nodiscard]] QString GetDrive() const noexcept;
    /// Filename up to, and not including, its last backslash (or slash); whole if it holds none.
    [[nodiscard]] QString GetFolder() const noexcept;
    /// What follows the last backslash (or slash) of Filename; whole if it holds none.
    [[nodiscard]] QString GetFilename() const noexcept;
    /// Asks the machine to restore a mapped drive; the platform's answer is ignored. Always false.
    bool ResetNetworkDrive(qint16 window, const QString& drive) noexcept;

    /// True while one of its operations is on the stack, as when the events of a wait run something that
    /// replaces this instance: it must then live on until the operation has returned.
    [[nodiscard]] bool IsBusy() const noexcept { return m_depth > 0; }

private:
    /// The failure of the last engine call; its number is 0 when none is pending.
    struct Pending {
        qint32 Number = 0;
        QString Description;
    };

    template <typename Step>
    bool RunWithRetries(Step&& attempt);
    template <typename Step>
    bool RunTrapped(Step&& step) noexcept;
    [[nodiscard]] engine::Connection& Opened() const;
    [[nodiscard]] bool IsPendingTransient() const noexcept;
    void WaitBeforeRetry(int attempt) noexcept;
    void RandomDelay(qint32 minimum, qint32 maximum);

    DBServices m_services;
    std::unique_ptr<engine::Connection> m_connection;
    bool m_isError = false;
    QString m_errorText;
    Pending m_pending;
    int m_depth = 0;
};
