#pragma once

#include "store/engine/Connection.h"
#include "store/engine/sql/MonthNames.h"
#include "store/engine/sql/Writer.h"
#include "store/engine/sqlite/Database.h"
#include "store/engine/sqlite/SqliteDialect.h"
#include "store/engine/sqlite/SqliteRecordset.h"

#include <QList>
#include <QSet>

#include <memory>
#include <optional>
#include <vector>

class Clock;

namespace engine::sqlite {

/// What is done with a database file that is known to be one of SQLite's. Like Connection, without the
/// bookkeeping that all engines share (state, mode, properties, error collection). Every routine throws
/// Failure.
class SqliteConnection final : public RowWriter {
public:
    /// Opens; `path` is this machine's own form.
    SqliteConnection(const QString& path, Clock& clock);
    ~SqliteConnection() override;
    SqliteConnection(const SqliteConnection&) = delete;
    SqliteConnection& operator=(const SqliteConnection&) = delete;

    /// As Connection::Execute and Connection::OpenRecordset: the two differ in nothing but the set that can
    /// be written.
    std::unique_ptr<Recordset> Execute(const QString& sql, qint64* rowsAffected);
    std::unique_ptr<Recordset> OpenRecordset(const QString& sql, CursorType cursor, LockType lock);

    /// Takes the write lock at once.
    void BeginTrans();
    /// These and TableNames as the routines of Connection.
    void CommitTrans();
    void RollbackTrans();
    [[nodiscard]] QStringList TableNames();
    /// Writes a compacted copy to a file that does not exist or is empty.
    void CompactInto(const QString& path);

    void WriteRow(const QString& table, qint64 rowID, const QStringList& names, const QVariantList& old,
                  const QMap<int, QVariant>& changes) override;
    void Forget(SqliteRecordset* recordset) override;

private:
    template <typename Step>
    auto RunInTransaction(Step step);
    [[nodiscard]] bool IsTransactionLost() const;
    std::unique_ptr<Recordset> ExecuteNow(const QString& sql, qint64* rowsAffected);
    std::unique_ptr<Recordset> OpenNow(const QString& sql, CursorType cursor, LockType lock);
    void WriteNow(const QString& table, qint64 rowID, const QStringList& names, const QVariantList& old,
                  const QMap<int, QVariant>& changes);
    [[nodiscard]] sql::Statement Parse(const QString& sql);
    [[nodiscard]] std::unique_ptr<Recordset> RunSelect(const sql::Select& select,
                                                       const sql::Statement& statement, bool isWritable);
    [[nodiscard]] QStringList TextColumns(const sql::Select& select);
    [[nodiscard]] bool IsTextColumn(QStringView table, QStringView column);
    [[nodiscard]] Rows Collect(const sql::Written& written, int hidden, const sql::Statement* statement);
    [[nodiscard]] qint64 RunChange(const sql::Written& written, Doing doing, const sql::Statement* statement);
    [[nodiscard]] PreparedStatement Prepare(const QByteArray& sql, Doing doing,
                                            const sql::Statement* statement);
    [[noreturn]] void Diagnose(int code, Doing doing, const sql::Statement* statement);
    [[nodiscard]] bool IsTable(QStringView name);
    [[nodiscard]] bool HasAutomaticNumber(QStringView table);
    [[nodiscard]] QStringList ReadNames(const QByteArray& sql, const QString& argument);

    Database m_database;
    SqliteDialect m_dialect;
    std::optional<sql::MonthNames> m_months;
    std::vector<SqliteRecordset*> m_writableSets;
    QSet<QString> m_numberedTables;  // known to have an automatic number; a send asks for each of its rows
    bool m_hasBegun = false;         // a transaction, and neither committed nor rolled it back
};

}  // namespace engine::sqlite
