#include "store/engine/sqlite/SqliteRecordset.h"

#include "store/engine/Error.h"

#include <utility>

namespace engine::sqlite {

namespace {

constexpr qint32 ObjectIsClosed = static_cast<qint32>(0x800A0E78U);

}  // namespace

SqliteRecordset::SqliteRecordset(Rows rows) : m_rows(std::move(rows)) {}

SqliteRecordset::SqliteRecordset(Rows rows, RowWriter* writer, QString table)
    : m_rows(std::move(rows)), m_writer(writer), m_table(std::move(table)), m_isWritable(true) {}

SqliteRecordset::~SqliteRecordset() {
    if (m_writer != nullptr) {
        m_writer->Forget(this);
    }
}

bool SqliteRecordset::EndOfFile() const {
    CheckOpen();
    return m_row >= m_rows.RowCount();
}

void SqliteRecordset::MoveNext() {
    if (EndOfFile()) {
        throw Failure(Number::ItemNotFound, QStringLiteral("There is no current row."));
    }
    if (!m_changes.isEmpty()) {
        Update();
    }
    m_written.clear();
    m_cells.clear();
    ++m_row;
}

qsizetype SqliteRecordset::RecordCount() const {
    CheckOpen();
    return static_cast<qsizetype>(m_rows.RowCount());
}

int SqliteRecordset::FieldCount() const {
    CheckOpen();
    return m_rows.ColumnCount();
}

QString SqliteRecordset::FieldName(int index) const {
    CheckOpen();
    if (index < 0 || index >= m_rows.ColumnCount()) {
        throw Failure(Number::ItemNotFound, QStringLiteral("There is no field of that index."));
    }
    return m_rows.Name(index);
}

int SqliteRecordset::FieldIndex(QStringView name) const {
    CheckOpen();
    const int index = m_rows.Find(name, m_nextField);
    m_nextField = index + 1 < m_rows.ColumnCount() ? index + 1 : 0;
    return index;
}

QVariant SqliteRecordset::Value(int index) const {
    CheckRow(index);
    if (const auto change = m_changes.constFind(index); change != m_changes.cend()) {
        return *change;
    }
    if (const auto written = m_written.constFind(index); written != m_written.cend()) {
        return *written;
    }
    return m_rows.Value(Cells()[static_cast<std::size_t>(index)], index);
}

QString SqliteRecordset::Text(int index) const {
    if (!m_changes.isEmpty() || !m_written.isEmpty()) {
        return Recordset::Text(index);
    }
    CheckRow(index);
    return m_rows.Text(Cells()[static_cast<std::size_t>(index)], index);
}

QVariant SqliteRecordset::ClockFace(int index) const {
    if (!m_changes.isEmpty() || !m_written.isEmpty()) {
        return Recordset::ClockFace(index);
    }
    CheckRow(index);
    return m_rows.Value(Cells()[static_cast<std::size_t>(index)], index, Qt::UTC);
}

void SqliteRecordset::SetValue(QStringView name, const QVariant& value) {
    const int index = FieldIndex(name);
    CheckRow(index);
    if (!m_isWritable) {
        throw Failure(Number::ReadOnly, QStringLiteral("The recordset is read-only."));
    }
    m_changes.insert(index, value);
}

void SqliteRecordset::Update() {
    CheckRow(0);
    const QMap<int, QVariant> changes = std::exchange(m_changes, {});
    if (!m_isWritable) {
        throw Failure(Number::ReadOnly, QStringLiteral("The recordset is read-only."));
    }
    if (m_writer == nullptr) {
        throw Failure::WithNumber(ObjectIsClosed, QStringLiteral("The recordset has no connection."));
    }
    if (changes.isEmpty()) {
        return;
    }
    QStringList names;
    QVariantList old;
    for (int i = 0; i < m_rows.ColumnCount(); ++i) {
        names.append(m_rows.Name(i));
        old.append(m_written.contains(i) ? m_written.value(i)
                                         : m_rows.RawValue(Cells()[static_cast<std::size_t>(i)]));
    }
    const qint64 rowID = m_rows.RawValue(Cells().back()).toLongLong();
    m_writer->WriteRow(m_table, rowID, names, old, changes);
    m_written.insert(changes);
}

void SqliteRecordset::Close() {
    CheckOpen();
    Disconnect();
    m_isOpen = false;
    m_rows = Rows();
}

void SqliteRecordset::Disconnect() {
    if (m_writer != nullptr) {
        std::exchange(m_writer, nullptr)->Forget(this);
    }
}

void SqliteRecordset::CheckOpen() const {
    if (!m_isOpen) {
        throw Failure::WithNumber(ObjectIsClosed, QStringLiteral("The recordset is closed."));
    }
}

void SqliteRecordset::CheckRow(int index) const {
    if (index < 0 || index >= FieldCount() || EndOfFile()) {
        throw Failure(Number::ItemNotFound, QStringLiteral("There is no such field, or no current row."));
    }
}

const std::vector<std::size_t>& SqliteRecordset::Cells() const {
    if (m_cells.empty()) {
        m_rows.Locate(m_row, &m_cells);
    }
    return m_cells;
}

}  // namespace engine::sqlite
