#pragma once

#include <QByteArrayView>
#include <QStringList>
#include <QStringView>
#include <QVariant>

#include <cstddef>
#include <vector>

struct sqlite3_stmt;

namespace engine::sqlite {

/// What a column was declared to be. Declared dates and booleans come back as such; everything else as it
/// lies there.
enum class ColumnType { Plain, DateTime, Boolean };

/// The rows of a statement in memory, packed: one run of bytes for all of them, decoded when a value is asked
/// for. A cell is a tag byte and what it holds (nothing, 8 bytes of a number, or 4 bytes of length and the
/// encoded text).
class Rows {
public:
    /// Takes names and types of the columns; the statement stands at its first row or at the end. The last
    /// `hidden` columns are kept, but not counted.
    void TakeColumns(sqlite3_stmt* statement, int hidden);
    /// Adds the row at which the statement stands.
    void Append(sqlite3_stmt* statement);
    /// Ends the adding: releases what was reserved in vain.
    void Finish();

    [[nodiscard]] std::size_t RowCount() const { return m_rowStarts.size(); }
    [[nodiscard]] int ColumnCount() const { return static_cast<int>(m_names.size()) - m_hidden; }
    [[nodiscard]] const QString& Name(int column) const { return m_names.at(column); }
    /// Index of a column, hidden ones excluded; -1 if there is none. Looks at `hint` first.
    [[nodiscard]] int Find(QStringView name, int hint) const;
    /// Where the cells of a row begin in the run of bytes; `cells` gets one entry a column, hidden ones
    /// included.
    void Locate(std::size_t row, std::vector<std::size_t>* cells) const;
    /// The value of a cell that Locate found, by its column's type; null, bool, qint64, double, QString or
    /// QDateTime, of the given kind of time.
    [[nodiscard]] QVariant Value(std::size_t cell, int column, Qt::TimeSpec kind = Qt::LocalTime) const;
    /// The value as text; the empty text for a null.
    [[nodiscard]] QString Text(std::size_t cell, int column) const;
    /// A value as it lies in the file, dates and booleans undecoded.
    [[nodiscard]] QVariant RawValue(std::size_t cell) const;

private:
    /// Of a cell that holds a text: its bytes as they lie in the file.
    [[nodiscard]] QByteArrayView BytesAt(std::size_t cell) const;
    [[nodiscard]] QString TextAt(std::size_t cell) const;

    QStringList m_names;
    std::vector<ColumnType> m_types;
    std::vector<bool> m_isRepeated;  // an earlier column has the same name
    int m_hidden = 0;
    std::vector<char> m_bytes;
    std::vector<std::size_t> m_rowStarts;
};

}  // namespace engine::sqlite
