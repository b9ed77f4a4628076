#pragma once

#include <QString>
#include <QStringView>
#include <QVariant>

namespace engine {

/// Numbers of both as the data objects of the field have them.
enum class CursorType { ForwardOnly = 0, KeySet = 1, Dynamic = 2, Static = 3 };
enum class LockType { ReadOnly = 1, Pessimistic = 2, Optimistic = 3, BatchOptimistic = 4 };

/// Rows of a statement, one current row at a time; the first row is current after opening. Owned by whoever
/// opened it, and closed by its destruction. A failing step throws Failure.
class Recordset {
public:
    virtual ~Recordset() = default;

    /// True behind the last row. "No more rows" and "failed" are different answers: a failure throws.
    [[nodiscard]] virtual bool EndOfFile() const = 0;
    /// Writes what SetValue changed in the current row, as Update does, and goes on to the next. After a
    /// failure of the writing the row is still the current one, its changes given up: the next call goes on.
    virtual void MoveNext() = 0;

    /// How many rows there are in all; -1 where the engine does not know.
    [[nodiscard]] virtual qsizetype RecordCount() const { return -1; }

    /// Fields are counted from 0; hidden ones of an engine do not count.
    [[nodiscard]] virtual int FieldCount() const = 0;
    [[nodiscard]] virtual QString FieldName(int index) const = 0;
    /// Names are compared without regard to case. -1 if there is no such field.
    [[nodiscard]] virtual int FieldIndex(QStringView name) const = 0;

    /// The current row's value: null, bool, qint64, double, QString or QDateTime. Throws Failure ItemNotFound
    /// for an index out of range, and at the end of file.
    [[nodiscard]] virtual QVariant Value(int index) const = 0;
    /// By name; throws Failure ItemNotFound for an unknown field.
    [[nodiscard]] QVariant Value(QStringView name) const;
    /// The current row's value as text, the empty text for a null; throws as Value does. What lists of many
    /// rows read by: an engine may save itself the way through a QVariant.
    [[nodiscard]] virtual QString Text(int index) const;
    /// As Value, but a date and time comes as the clock face showed it, marked as UTC so that nothing
    /// converts it: for showing and sorting, not for comparing with the time now. What lists of many rows
    /// read dates by, since each local time asks the system for its zone.
    [[nodiscard]] virtual QVariant ClockFace(int index) const;

    /// Changes a field of the current row in memory; Update writes the row (dynamic cursor and optimistic
    /// lock only).
    virtual void SetValue(QStringView name, const QVariant& value) = 0;
    /// Throws Failure RowChangedByAnother if the row was changed since it was read, ReadOnly for a read-only
    /// set. Any failure gives the changes up.
    virtual void Update() = 0;

    /// From now on every call throws Failure, a second Close too.
    virtual void Close() = 0;
    /// Cuts a client-side set off from its connection; its rows stay readable.
    virtual void Disconnect() = 0;
};

/// True if the recordset has a field of that name; no recordset and errors count as no.
[[nodiscard]] bool FieldExists(const Recordset* recordset, QStringView name) noexcept;

}  // namespace engine
