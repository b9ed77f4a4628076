#pragma once

#include "store/engine/sql/Tree.h"

namespace engine::sql {

/// Whether every value that a SELECT shows or sorts by has one meaning for each of its rows: where rows are
/// grouped or summed up, a column stands inside an aggregate or is part of a term of GROUP BY, and nothing is
/// selected by "*". Some engines would otherwise show the value of any row of a group.
[[nodiscard]] bool IsGroupingWhole(const Select& select);

}  // namespace engine::sql
