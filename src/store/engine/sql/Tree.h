#pragma once

#include <QDate>
#include <QString>
#include <QStringView>
#include <QTime>

#include <optional>
#include <variant>
#include <vector>

namespace engine::sql {

/// A date as # signs enclose it; midnight without a time.
struct DateLiteral {
    QDate Day;
    QTime Time;
    bool operator==(const DateLiteral&) const = default;
};
/// A value as it stands in a statement; monostate is NULL. Text is any sequence of UTF-16 units, NUL and lone
/// surrogates included.
using Literal = std::variant<std::monostate, bool, qint64, double, QString, DateLiteral>;

/// A name as written, or Table.Name. Views into the statement.
struct Name {
    QStringView Table;
    QStringView Column;
};

/// Operators of arithmetic and of comparisons.
enum class Operator {
    Add,
    Subtract,
    Multiply,
    Divide,
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual
};

/// The functions of the dialect; Len and Iif work on one row, the others on a group of rows.
enum class Function { Len, Iif, Sum, Count, Min, Max, Avg };

/// Whether the function makes one value of many rows.
[[nodiscard]] constexpr bool IsAggregate(Function function) {
    return function != Function::Len && function != Function::Iif;
}

/// What a node is, and which of its members count.
enum class ExpressionKind {
    Constant,    // Value
    Column,      // Column
    Identity,    // @@IDENTITY
    Star,        // the * of Count(*)
    Or,          // two Operands or more
    And,         // two Operands or more
    Not,         // one Operand
    Negate,      // one Operand
    Arithmetic,  // Operands joined from the left by Operators; one operator fewer than operands
    Comparison,  // two Operands, one of Operators
    Like,        // text, pattern
    Between,     // value, lower bound, upper bound
    IsNull,      // one Operand
    In,          // value, then the list
    Call         // Called with Operands
};

/// One node. Chains of the same kind of operator are one node with many operands, so that a statement's
/// length does not become depth: the depth of a tree is bounded by the parser.
struct Expression {
    ExpressionKind Kind = ExpressionKind::Constant;
    /// NOT LIKE, NOT BETWEEN, NOT IN, IS NOT NULL.
    bool IsNegated = false;
    Function Called = Function::Len;
    Literal Value;
    Name Column;
    std::vector<Operator> Operators;
    std::vector<Expression> Operands;
};

/// One term behind SELECT.
struct SelectItem {
    Expression Value;
    QStringView Alias;  // empty: none
};

/// One term of ORDER BY.
struct OrderItem {
    Expression Value;
    bool IsDescending = false;
};

/// `IsAll`: SELECT *, and no Items. An empty From: no table.
struct Select {
    std::optional<qint64> Top;
    bool IsAll = false;
    std::vector<SelectItem> Items;
    QStringView From;
    std::optional<Expression> Where;
    std::vector<Expression> GroupBy;
    std::vector<OrderItem> OrderBy;
};

/// As many Values as Columns.
struct Insert {
    QStringView Table;
    std::vector<QStringView> Columns;
    std::vector<Expression> Values;
};

/// One "column = value" of an UPDATE.
struct Assignment {
    QStringView Column;
    Expression Value;
};

/// No Where: every row.
struct Update {
    QStringView Table;
    std::vector<Assignment> Assignments;
    std::optional<Expression> Where;
};

/// No Where: every row.
struct Delete {
    QStringView Table;
    std::optional<Expression> Where;
};

/// One statement. Its names are views into the text that was parsed, which must outlive it.
using Statement = std::variant<Select, Insert, Update, Delete>;

}  // namespace engine::sql
