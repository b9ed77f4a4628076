#pragma once

#include "store/engine/sql/Lexer.h"
#include "store/engine/sql/MonthNames.h"
#include "store/engine/sql/Tree.h"

#include <QStringView>

namespace engine::sql {

/// Parentheses, NOT, signs and calls inside one another, at most.
inline constexpr int MaxDepth = 60;
/// Columns, assignments, terms of one ORDER BY or GROUP BY, at most.
inline constexpr int MaxColumns = 255;
/// Terms of one sum or product, at most.
inline constexpr int MaxTerms = 250;
/// Values in one statement, at most.
inline constexpr int MaxValues = 30000;

/// Reads one statement of the dialect, with or without a closing ";". Words and names are read without regard
/// to case; dates are #dd/mmm/yyyy# with or without hh:nn[:ss], month names by `months`. `text` must outlive
/// the result.
///
/// Throws Failure: InvalidStatement if it begins with no verb of the dialect; SyntaxInSelect, SyntaxInInsert,
/// SyntaxInUpdate, SyntaxInDelete for the shape of the statement; SyntaxInExpression inside an expression;
/// NotPartOfAggregate for a column of no group; CharactersAfterEnd for anything behind the ";";
/// QueryTooComplex beyond the limits above.
[[nodiscard]] Statement Parse(QStringView text, const MonthNames& months);

}  // namespace engine::sql
