#pragma once

#include "store/engine/sql/Tree.h"

#include <QStringList>

namespace engine::sqlite {

/// The names that a statement takes from the database: its table, and every column of it that it mentions.
/// Names that a SELECT itself gives (AS) are left out where they may be used.
struct UsedNames {
    QStringList Tables;
    QStringList Columns;
};
/// As written, in the order of the statement; one that stands twice comes twice.
[[nodiscard]] UsedNames CollectNames(const sql::Statement& statement);

}  // namespace engine::sqlite
