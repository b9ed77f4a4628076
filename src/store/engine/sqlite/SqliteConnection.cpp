#include "store/engine/sqlite/SqliteConnection.h"

#include "store/engine/sql/Parser.h"
#include "store/engine/sqlite/Names.h"
#include "store/engine/sqlite/TextCodec.h"

#include <sqlite3.h>

#include <QDateTime>
#include <QScopeGuard>

#include <algorithm>
#include <utility>

namespace engine::sqlite {

namespace {

constexpr int PrimaryCode = 0xFF;
constexpr QByteArrayView RowIdentity = "rowid";

QString ToText(const QDate& day, const QTime& time) {
    return day.toString(Qt::ISODate) + u' ' + time.toString(QStringLiteral("hh:mm:ss"));
}

/// A statement in use and the values of its parameters; goes back to the database when it ends. Texts live as
/// long as it does.
class Binding {
public:
    Binding(Database& database, PreparedStatement statement, std::size_t count)
        : m_database(database), m_statement(std::move(statement)) {
        m_texts.reserve(count);
    }
    ~Binding() { m_database.GiveBack(std::move(m_statement)); }
    Binding(const Binding&) = delete;
    Binding& operator=(const Binding&) = delete;

    [[nodiscard]] sqlite3_stmt* Statement() const { return m_statement.Handle.get(); }

    void Add(std::monostate) { ++m_count; }
    void Add(bool value) { sqlite3_bind_int(Statement(), ++m_count, static_cast<int>(value)); }
    void Add(qint64 value) { sqlite3_bind_int64(Statement(), ++m_count, value); }
    void Add(double value) { sqlite3_bind_double(Statement(), ++m_count, value); }
    void Add(const QString& value) {
        const QByteArray& bytes = m_texts.emplace_back(EncodeText(value));
        sqlite3_bind_text64(Statement(), ++m_count, bytes.constData(),
                            static_cast<sqlite3_uint64>(bytes.size()), SQLITE_STATIC, SQLITE_UTF8);
    }
    void AddAll(const std::vector<sql::Literal>& values) {
        for (const sql::Literal& value : values) {
            std::visit([this](const auto& one) { Add(one); }, value);
        }
    }
    void Add(const sql::DateLiteral& value) { Add(ToText(value.Day, value.Time)); }
    void Add(const QVariant& value) {
        switch (value.typeId()) {
            case QMetaType::UnknownType:
            case QMetaType::Nullptr:
                return Add(std::monostate());
            case QMetaType::Bool:
                return Add(value.toBool());
            case QMetaType::Double:
            case QMetaType::Float:
                return Add(value.toDouble());
            case QMetaType::QDateTime:
                return Add(ToText(value.toDateTime().date(), value.toDateTime().time()));
            case QMetaType::QString:
                return Add(value.toString());
            default:
                return Add(value.toLongLong());
        }
    }

private:
    Database& m_database;
    PreparedStatement m_statement;
    std::vector<QByteArray> m_texts;
    int m_count = 0;
};

Doing DoingOf(const sql::Statement& statement) {
    struct Visitor {
        Doing operator()(const sql::Select&) const { return Doing::Read; }
        Doing operator()(const sql::Insert&) const { return Doing::Insert; }
        Doing operator()(const sql::Update&) const { return Doing::Update; }
        Doing operator()(const sql::Delete&) const { return Doing::Delete; }
    };
    return std::visit(Visitor(), statement);
}

int SyntaxNumber(Doing doing) {
    switch (doing) {
        case Doing::Insert:
            return Number::SyntaxInInsert;
        case Doing::Update:
            return Number::SyntaxInUpdate;
        case Doing::Delete:
            return Number::SyntaxInDelete;
        default:
            return Number::SyntaxInSelect;
    }
}

QByteArray Quoted(const SqliteDialect& dialect, const QString& name) {
    QByteArray out;
    dialect.AppendName(out, name);
    return out;
}

}  // namespace

SqliteConnection::SqliteConnection(const QString& path, Clock& clock) : m_database(path, clock) {}

SqliteConnection::~SqliteConnection() {
    for (SqliteRecordset* recordset : m_writableSets) {
        recordset->ConnectionEnds();
    }
}

sql::Statement SqliteConnection::Parse(const QString& sql) {
    if (!m_months) {
        m_months.emplace(QLocale());
    }
    return sql::Parse(sql, *m_months);
}

/// Runs a statement. Some failures make SQLite roll the whole transaction back; what comes after them must
/// not run as a transaction of its own, nor be tried again.
template <typename Step>
auto SqliteConnection::RunInTransaction(Step step) {
    m_database.Wait().Start();
    if (IsTransactionLost()) {
        throw Failure(Number::TransactionLost, QStringLiteral("The transaction was rolled back."));
    }
    try {
        return step();
    } catch (const Failure& failure) {
        const Error& item = failure.Item();
        if (IsTransactionLost() && IsTransientError(failure.Number(), item.NativeError, item.SQLState)) {
            throw Failure(Number::TransactionLost, item.Description, item.NativeError);
        }
        throw;
    }
}

bool SqliteConnection::IsTransactionLost() const {
    return m_hasBegun && sqlite3_get_autocommit(m_database.Handle()) != 0;
}

std::unique_ptr<Recordset> SqliteConnection::Execute(const QString& sql, qint64* rowsAffected) {
    return RunInTransaction([&] { return ExecuteNow(sql, rowsAffected); });
}

std::unique_ptr<Recordset> SqliteConnection::ExecuteNow(const QString& sql, qint64* rowsAffected) {
    const sql::Statement statement = Parse(sql);
    qint64 count = 0;
    std::unique_ptr<Recordset> result;
    if (const auto* select = std::get_if<sql::Select>(&statement); select != nullptr) {
        result = RunSelect(*select, statement, false);
    } else {
        count = RunChange(sql::Write(statement, m_dialect), DoingOf(statement), &statement);
    }
    if (rowsAffected != nullptr) {
        *rowsAffected = count;
    }
    return result;
}

std::unique_ptr<Recordset> SqliteConnection::OpenRecordset(const QString& sql, CursorType cursor,
                                                           LockType lock) {
    return RunInTransaction([&] { return OpenNow(sql, cursor, lock); });
}

std::unique_ptr<Recordset> SqliteConnection::OpenNow(const QString& sql, CursorType cursor, LockType lock) {
    const sql::Statement statement = Parse(sql);
    const auto* select = std::get_if<sql::Select>(&statement);
    if (select == nullptr) {
        std::unique_ptr<Recordset> none = std::make_unique<SqliteRecordset>(Rows());
        Q_UNUSED(RunChange(sql::Write(statement, m_dialect), DoingOf(statement), &statement));
        none->Close();
        return none;
    }
    const bool wantsWriting = (cursor == CursorType::Dynamic || cursor == CursorType::KeySet) &&
                              (lock == LockType::Optimistic || lock == LockType::Pessimistic);
    return RunSelect(*select, statement, wantsWriting && select->IsAll && IsTable(select->From));
}

std::unique_ptr<Recordset> SqliteConnection::RunSelect(const sql::Select& select,
                                                       const sql::Statement& statement, bool isWritable) {
    const QByteArrayView extraColumn = isWritable ? RowIdentity : QByteArrayView();
    const sql::Written written = sql::Write(statement, m_dialect, extraColumn, TextColumns(select));
    Rows rows = Collect(written, isWritable ? 1 : 0, &statement);
    if (!isWritable) {
        return std::make_unique<SqliteRecordset>(std::move(rows));
    }
    auto recordset = std::make_unique<SqliteRecordset>(std::move(rows), this, select.From.toString());
    m_writableSets.push_back(recordset.get());
    return recordset;
}

/// The columns among those that rows are grouped or ordered by that hold texts, as SQLite takes a column for
/// one.
QStringList SqliteConnection::TextColumns(const sql::Select& select) {
    QStringList columns;
    const auto take = [&](const sql::Expression& term) {
        if (term.Kind == sql::ExpressionKind::Column && IsTextColumn(select.From, term.Column.Column)) {
            columns.append(term.Column.Column.toString());
        }
    };
    std::for_each(select.GroupBy.cbegin(), select.GroupBy.cend(), take);
    std::for_each(select.OrderBy.cbegin(), select.OrderBy.cend(),
                  [&](const sql::OrderItem& item) { take(item.Value); });
    return columns;
}

bool SqliteConnection::IsTextColumn(QStringView table, QStringView column) {
    const char* declared = nullptr;
    if (sqlite3_table_column_metadata(m_database.Handle(), nullptr, table.toUtf8().constData(),
                                      column.toUtf8().constData(), &declared, nullptr, nullptr, nullptr,
                                      nullptr) == SQLITE_OK) {
        const QByteArray type = QByteArray(declared).toUpper();
        return type.contains("CHAR") || type.contains("CLOB") || type.contains("TEXT");
    }
    // A saved query, or a table that has changed since it was looked at: the statement tells.
    const QByteArray sql =
        "SELECT name FROM pragma_table_xinfo(?) WHERE type LIKE '%CHAR%' OR type LIKE '%CLOB%' OR type LIKE "
        "'%TEXT%'";
    return ReadNames(sql, table.toString()).contains(column, Qt::CaseInsensitive);
}

Rows SqliteConnection::Collect(const sql::Written& written, int hidden, const sql::Statement* statement) {
    Binding binding(m_database, Prepare(written.Sql, Doing::Read, statement), written.Values.size());
    binding.AddAll(written.Values);
    sqlite3_stmt* prepared = binding.Statement();
    Rows rows;
    int code = m_database.Step(prepared);
    rows.TakeColumns(prepared, hidden);
    for (; code == SQLITE_ROW; code = sqlite3_step(prepared)) {
        rows.Append(prepared);
    }
    if (code != SQLITE_DONE) {
        Diagnose(code, Doing::Read, statement);
    }
    rows.Finish();
    return rows;
}

qint64 SqliteConnection::RunChange(const sql::Written& written, Doing doing,
                                   const sql::Statement* statement) {
    Binding binding(m_database, Prepare(written.Sql, doing, statement), written.Values.size());
    binding.AddAll(written.Values);
    // Asked before the step: nothing may fail once a row stands in the file.
    const auto* insert = statement != nullptr ? std::get_if<sql::Insert>(statement) : nullptr;
    const bool movesIdentity = insert != nullptr && HasAutomaticNumber(insert->Table);
    const qint64 identity = sqlite3_last_insert_rowid(m_database.Handle());
    const int code = m_database.Step(binding.Statement());
    if (code != SQLITE_DONE || !movesIdentity) {
        // SQLite also keeps the number of a row that was inserted and undone again, as when the lock for the
        // commit is not to be had; that number will be another client's.
        sqlite3_set_last_insert_rowid(m_database.Handle(), identity);
    }
    if (code != SQLITE_DONE) {
        Diagnose(code, doing, statement);
    }
    return sqlite3_changes64(m_database.Handle());
}

PreparedStatement SqliteConnection::Prepare(const QByteArray& sql, Doing doing,
                                            const sql::Statement* statement) {
    int code = SQLITE_OK;
    PreparedStatement prepared = m_database.Prepare(sql, &code);
    if (code != SQLITE_OK) {
        Diagnose(code, doing, statement);
    }
    return prepared;
}

/// SQLite has one code for everything that is wrong with a statement; what it was is found out from the
/// catalogue.
void SqliteConnection::Diagnose(int code, Doing doing, const sql::Statement* statement) {
    if ((code & PrimaryCode) != SQLITE_ERROR || statement == nullptr) {
        ThrowFailure(m_database.Handle(), code, doing);
    }
    const QString description = QString::fromUtf8(sqlite3_errmsg(m_database.Handle()));
    const UsedNames names = CollectNames(*statement);
    const QString table = names.Tables.value(0);
    const QByteArray findTable =
        "SELECT type FROM sqlite_schema WHERE name = ? COLLATE NOCASE AND type IN ('table', 'view')";
    for (const QString& name : names.Tables) {
        const bool isOther = name.compare(table, Qt::CaseInsensitive) != 0;
        if (isOther || (!name.isEmpty() && ReadNames(findTable, name).isEmpty())) {
            throw Failure(isOther ? Number::UnknownColumn : Number::NoSuchTable, description, code);
        }
    }
    const QStringList columns = ReadNames("SELECT name FROM pragma_table_xinfo(?)", table);
    for (const QString& name : names.Columns) {
        if (!columns.contains(name, Qt::CaseInsensitive)) {
            throw Failure(Number::UnknownColumn, description, code);
        }
    }
    if (doing != Doing::Read && !IsTable(table)) {
        throw Failure(Number::ReadOnly, description, code);
    }
    throw Failure(SyntaxNumber(doing), description, code);
}

QStringList SqliteConnection::ReadNames(const QByteArray& sql, const QString& argument) {
    Rows rows = Collect({sql, {argument}}, 0, nullptr);
    QStringList names;
    for (std::size_t row = 0; row < rows.RowCount(); ++row) {
        std::vector<std::size_t> cells;
        rows.Locate(row, &cells);
        names.append(rows.RawValue(cells.front()).toString());
    }
    return names;
}

/// A table with row identities, and no saved query.
bool SqliteConnection::IsTable(QStringView name) {
    const QByteArray sql =
        "SELECT type FROM pragma_table_list(?) WHERE type = 'table' AND wr = 0 AND schema = 'main'";
    return !ReadNames(sql, name.toString()).isEmpty();
}

/// A table whose row identities are a column of its own; all others have them for SQLite's use only.
bool SqliteConnection::HasAutomaticNumber(QStringView table) {
    const QString name = table.toString();
    if (m_numberedTables.contains(name)) {
        return true;
    }
    const QByteArray sql = "SELECT type FROM pragma_table_info(?) WHERE pk > 0";
    const QStringList keyTypes = ReadNames(sql, name);
    const bool isNumbered = keyTypes.size() == 1 && keyTypes.constFirst().compare(QStringLiteral("INTEGER"),
                                                                                  Qt::CaseInsensitive) == 0;
    if (isNumbered) {
        m_numberedTables.insert(name);
    }
    return isNumbered;
}

void SqliteConnection::BeginTrans() {
    m_database.Run("BEGIN IMMEDIATE", Doing::Begin);
    m_hasBegun = true;
}

void SqliteConnection::CommitTrans() {
    // A commit that met a lock leaves the transaction open.
    const auto end = qScopeGuard([this] { m_hasBegun = sqlite3_get_autocommit(m_database.Handle()) == 0; });
    m_database.Run("COMMIT", Doing::Commit);
}

void SqliteConnection::RollbackTrans() {
    const auto end = qScopeGuard([this] { m_hasBegun = false; });
    m_database.Run("ROLLBACK", Doing::Begin);
}

QStringList SqliteConnection::TableNames() {
    m_database.Wait().Start();
    return ReadNames(
        "SELECT name FROM sqlite_schema WHERE type IN ('table', 'view') AND name NOT LIKE ? ORDER BY name",
        QStringLiteral("sqlite\\_%").remove(u'\\'));
}

void SqliteConnection::CompactInto(const QString& path) {
    m_database.Wait().Start();
    Q_UNUSED(RunChange({"VACUUM INTO ?", {path}}, Doing::Copy, nullptr));
}

void SqliteConnection::WriteRow(const QString& table, qint64 rowID, const QStringList& names,
                                const QVariantList& old, const QMap<int, QVariant>& changes) {
    RunInTransaction([&] { WriteNow(table, rowID, names, old, changes); });
}

void SqliteConnection::WriteNow(const QString& table, qint64 rowID, const QStringList& names,
                                const QVariantList& old, const QMap<int, QVariant>& changes) {
    QByteArray sql = "UPDATE " + Quoted(m_dialect, table) + " SET ";
    for (auto change = changes.cbegin(); change != changes.cend(); ++change) {
        sql += (change == changes.cbegin() ? "" : ", ") + Quoted(m_dialect, names.at(change.key())) + " = ?";
    }
    sql += " WHERE rowid = ?";
    for (const QString& name : names) {
        sql += " AND " + Quoted(m_dialect, name) + " COLLATE BINARY IS ?";
    }
    Binding binding(m_database, Prepare(sql, Doing::Update, nullptr),
                    static_cast<std::size_t>(changes.size() + old.size() + 1));
    for (const QVariant& value : changes) {
        binding.Add(value);
    }
    binding.Add(rowID);
    for (const QVariant& value : old) {
        binding.Add(value);
    }
    const int code = m_database.Step(binding.Statement());
    if (code != SQLITE_DONE) {
        Diagnose(code, Doing::Update, nullptr);
    }
    if (sqlite3_changes64(m_database.Handle()) == 0) {
        throw Failure(Number::RowChangedByAnother,
                      QStringLiteral("The row was changed by another since it was read."));
    }
}

void SqliteConnection::Forget(SqliteRecordset* recordset) {
    std::erase(m_writableSets, recordset);
}

}  // namespace engine::sqlite
