#pragma once

#include "store/engine/Recordset.h"
#include "store/engine/sqlite/Rows.h"

#include <QMap>

#include <cstddef>
#include <vector>

namespace engine::sqlite {

/// Writes a changed row of a recordset; the connection is behind it.
class RowWriter {
public:
    virtual ~RowWriter() = default;
    /// `names` and `old` hold all columns as they were read and as they lie in the file; `changes` goes by
    /// column index. Throws Failure RowChangedByAnother if the row is not as it was, or gone.
    virtual void WriteRow(const QString& table, qint64 rowID, const QStringList& names,
                          const QVariantList& old, const QMap<int, QVariant>& changes) = 0;
    /// The recordset ends.
    virtual void Forget(class SqliteRecordset* recordset) = 0;
};

/// The rows of a statement, all of them in memory from the start. Fields of a set that can be written are
/// changed in memory until Update writes them; going on to the next row writes them too, as data objects do.
class SqliteRecordset final : public Recordset {
public:
    explicit SqliteRecordset(Rows rows);
    /// A set that can be written: its last, hidden column is the row's identity in `table`.
    SqliteRecordset(Rows rows, RowWriter* writer, QString table);
    ~SqliteRecordset() override;
    SqliteRecordset(const SqliteRecordset&) = delete;
    SqliteRecordset& operator=(const SqliteRecordset&) = delete;

    [[nodiscard]] bool EndOfFile() const override;
    void MoveNext() override;
    [[nodiscard]] qsizetype RecordCount() const override;
    [[nodiscard]] int FieldCount() const override;
    [[nodiscard]] QString FieldName(int index) const override;
    [[nodiscard]] int FieldIndex(QStringView name) const override;
    using Recordset::Value;
    [[nodiscard]] QVariant Value(int index) const override;
    [[nodiscard]] QString Text(int index) const override;
    [[nodiscard]] QVariant ClockFace(int index) const override;
    void SetValue(QStringView name, const QVariant& value) override;
    void Update() override;
    void Close() override;
    void Disconnect() override;
    /// The connection ends: from now on the rows can be read only.
    void ConnectionEnds() { m_writer = nullptr; }

private:
    void CheckOpen() const;
    void CheckRow(int index) const;
    [[nodiscard]] const std::vector<std::size_t>& Cells() const;

    Rows m_rows;
    RowWriter* m_writer = nullptr;
    QString m_table;
    std::size_t m_row = 0;
    bool m_isOpen = true;
    bool m_isWritable = false;
    QMap<int, QVariant> m_changes;             // not written yet
    QMap<int, QVariant> m_written;             // of the current row, by Update
    mutable std::vector<std::size_t> m_cells;  // of the current row; empty: not located yet
    mutable int m_nextField = 0;               // callers read fields in the same order row by row
};

}  // namespace engine::sqlite
