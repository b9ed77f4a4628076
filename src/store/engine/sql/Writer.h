#pragma once

#include "store/engine/sql/Dialect.h"
#include "store/engine/sql/Tree.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QStringList>

#include <vector>

namespace engine::sql {

/// One statement as an engine takes it: SQL with parameter marks, and the values for the marks in their
/// order. Every value of the source is a parameter, so no text of a user ever stands inside SQL, and
/// statements of one shape are one text that an engine can keep prepared.
struct Written {
    QByteArray Sql;
    std::vector<Literal> Values;
};

/// Writes a tree in an engine's dialect. `extraColumn`, if not empty, is put behind the columns of a SELECT
/// as it stands. `textColumns` are the columns that hold text, by name without regard to case: rows are
/// grouped and ordered by them as texts are compared. Throws Failure for names that the dialect refuses.
[[nodiscard]] Written Write(const Statement& statement, const Dialect& dialect,
                            QByteArrayView extraColumn = {}, const QStringList& textColumns = {});

}  // namespace engine::sql
