#pragma once

#include "store/engine/sql/Tree.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

namespace engine::sql {

/// What one engine's SQL does in its own way; the writer does the rest. One class an engine, beside its
/// connection. The fragments are UTF-8, and the writer puts parentheses around every composite expression by
/// itself.
class Dialect {
public:
    virtual ~Dialect() = default;

    /// Appends a table's or column's name, quoted so that it can be nothing else.
    virtual void AppendName(QByteArray& out, QStringView name) const = 0;
    /// Appends the mark of the parameter `number`, counted from 1.
    virtual void AppendParameter(QByteArray& out, int number) const = 0;
    /// Throws Failure NoSuchTable or UnknownColumn for what the engine would find under a name that no table
    /// of an office has: its own catalogue, hidden columns.
    virtual void CheckTable(QStringView name) const = 0;
    virtual void CheckColumn(QStringView name) const = 0;

    /// Stands behind the left side of a comparison with a text, and behind a column of texts that rows are
    /// grouped or ordered by: neither has regard to case.
    [[nodiscard]] virtual QByteArrayView TextComparison() const = 0;
    /// The operator that matches % and _ without regard to case.
    [[nodiscard]] virtual QByteArrayView Like() const = 0;
    /// What a function of the dialect is called.
    [[nodiscard]] virtual QByteArrayView FunctionName(Function function) const = 0;
    /// The identity of the last row that this connection inserted.
    [[nodiscard]] virtual QByteArrayView Identity() const = 0;
    /// The operator of a division, which is never one of whole numbers.
    [[nodiscard]] virtual QByteArrayView Division() const = 0;
    /// How many pieces of unfinished expressions around one place the engine's own reader can hold: an
    /// opening parenthesis, what stands behind it, an operator.
    [[nodiscard]] virtual int MaxNesting() const = 0;
};

}  // namespace engine::sql
