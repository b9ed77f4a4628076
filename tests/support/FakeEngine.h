#pragma once

#include "store/engine/Connection.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>

/// An engine without files: it fails on demand with any number, on any attempt of any operation, counts the
/// attempts and serves prepared rows. For what cannot be made to happen with a real file.
class FakeEngine final : public engine::ConnectionFactory {
public:
    enum class Operation {
        Open,
        Close,
        Execute,    // Connection::Execute, with and without rows
        Recordset,  // Connection::OpenRecordset
        Begin,
        Commit,
        Rollback,
        TableNames,
        Compact,
        SetProperty,
        Update  // Recordset::Update
    };

    /// Prepared rows: the names of the fields, and one list of values a row.
    struct Rows {
        QStringList Fields;
        QList<QVariantList> Values;
    };

    FakeEngine();
    ~FakeEngine() override;

    /// Fails the attempts `first` to `last` of an operation (counted from 1 over the life of the engine), all
    /// from `first` on if `last` is 0, with the engine error `number`.
    void Fail(Operation operation, int number, int first = 1, int last = 0);
    /// The same with any exception or side effect: `step` runs in place of the failure and may throw what it
    /// likes.
    void Intercept(Operation operation, std::function<void()> step, int first = 1, int last = 0);
    /// A failure that leaves the error collection empty, as of a data object and not of an engine.
    void FailWithoutItem(Operation operation, qint32 genericNumber, int first = 1, int last = 0);
    /// The next failures carry this text in SQLState in place of their number.
    void SetSQLState(const QString& text) { m_sqlState = text; }
    void StopFailing() { m_plans.clear(); }

    /// Rows for each statement that contains `part` (without regard to case); the latest match wins.
    /// Statements without prepared rows give an empty set with no fields from OpenRecordset and none from
    /// Execute.
    void Serve(const QString& part, const Rows& rows);
    /// Rows affected by a statement that contains `part`; 1 if nothing was prepared.
    void SetRowsAffected(const QString& part, qint64 rows);
    /// After Open the state is Closed for all that: an engine that says yes and does nothing.
    bool StaysClosed = false;

    [[nodiscard]] int Attempts(Operation operation) const { return m_attempts.value(operation); }

    /// What reached the engine, in order.
    QStringList Statements;
    QStringList Filenames;
    QList<qint32> Modes;
    QList<engine::CursorType> Cursors;
    QList<engine::LockType> Locks;
    QList<QPair<QString, QString>> Compacted;  // source, destination
    QVariantMap Properties;                    // of all connections
    /// Rows written by Recordset::Update: field name to value.
    QList<QVariantMap> Updates;
    QStringList Tables;
    int OpenConnections = 0;
    int OpenRecordsets = 0;
    /// Runs inside each attempt of any operation before it fails or succeeds.
    std::function<void(Operation)> OnAttempt;

    [[nodiscard]] std::unique_ptr<engine::Connection> NewConnection() override;
    void CompactDatabase(const QString& source, const QString& destination) override;

private:
    friend class FakeConnection;
    friend class FakeRecordset;
    struct Plan {
        Operation On;
        int First;
        int Last;
        std::function<void()> Step;
    };

    void Attempt(Operation operation);
    [[nodiscard]] const Rows* Find(const QString& sql) const;
    [[nodiscard]] qint64 RowsAffected(const QString& sql) const;

    QMap<Operation, int> m_attempts;
    QList<Plan> m_plans;
    QList<QPair<QString, Rows>> m_rows;
    QList<QPair<QString, qint64>> m_rowsAffected;
    QString m_sqlState;
};
