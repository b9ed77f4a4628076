#include "store/engine/sql/Writer.h"

#include "store/engine/Error.h"

#include <span>

namespace engine::sql {

namespace {

QByteArrayView Symbol(Operator operation) {
    switch (operation) {
        case Operator::Add:
            return "+";
        case Operator::Subtract:
            return "-";
        case Operator::Multiply:
            return "*";
        case Operator::Divide:
            return "/";
        case Operator::Equal:
            return "=";
        case Operator::NotEqual:
            return "<>";
        case Operator::Less:
            return "<";
        case Operator::LessEqual:
            return "<=";
        case Operator::Greater:
            return ">";
        case Operator::GreaterEqual:
            return ">=";
    }
    Q_UNREACHABLE();
}

bool IsText(const Expression& expression) {
    return expression.Kind == ExpressionKind::Constant && std::holds_alternative<QString>(expression.Value);
}

class Writer {
public:
    Writer(const Dialect& dialect, QByteArrayView extraColumn, const QStringList& textColumns)
        : m_dialect(dialect), m_extraColumn(extraColumn), m_textColumns(textColumns) {
        constexpr qsizetype UsualLength = 512;
        m_out.Sql.reserve(UsualLength);
    }

    Written Run(const Statement& statement) {
        std::visit([this](const auto& one) { Write(one); }, statement);
        return std::move(m_out);
    }

private:
    void Put(QByteArrayView sql) { m_out.Sql.append(sql); }
    void PutTable(QStringView name) {
        m_dialect.CheckTable(name);
        m_dialect.AppendName(m_out.Sql, name);
    }
    void PutColumn(QStringView name) {
        m_dialect.CheckColumn(name);
        m_dialect.AppendName(m_out.Sql, name);
    }
    void PutValue(const Literal& value) {
        m_out.Values.push_back(value);
        m_dialect.AppendParameter(m_out.Sql, static_cast<int>(m_out.Values.size()));
    }

    /// One call of `put` for each element, with commas between.
    template <typename List, typename Put>
    void PutList(const List& list, Put put) {
        bool isFirst = true;
        for (const auto& element : list) {
            if (!isFirst) {
                this->Put(", ");
            }
            isFirst = false;
            put(element);
        }
    }

    void Write(const Select& select) {
        Put("SELECT ");
        if (select.IsAll) {
            Put("*");
        } else {
            PutList(select.Items, [this](const SelectItem& item) { WriteItem(item); });
        }
        if (!m_extraColumn.isEmpty()) {
            Put(", ");
            Put(m_extraColumn);
        }
        if (!select.From.isEmpty()) {
            Put(" FROM ");
            PutTable(select.From);
        }
        WriteWhere(select.Where);
        if (!select.GroupBy.empty()) {
            Put(" GROUP BY ");
            PutList(select.GroupBy, [this](const Expression& term) { WriteOrdered(term); });
        }
        if (!select.OrderBy.empty()) {
            Put(" ORDER BY ");
            PutList(select.OrderBy, [this](const OrderItem& item) {
                WriteOrdered(item.Value);
                Put(item.IsDescending ? " DESC" : "");
            });
        }
        if (select.Top) {
            Put(" LIMIT ");
            PutValue(*select.Top);
        }
    }

    /// What rows are grouped or ordered by.
    void WriteOrdered(const Expression& term) {
        Write(term);
        if (term.Kind == ExpressionKind::Column &&
            m_textColumns.contains(term.Column.Column, Qt::CaseInsensitive)) {
            Put(m_dialect.TextComparison());
        }
    }

    /// A column without an alias keeps its name: engines promise a name for columns with an alias only.
    void WriteItem(const SelectItem& item) {
        Write(item.Value);
        const QStringView alias = item.Alias.isEmpty() && item.Value.Kind == ExpressionKind::Column
                                      ? item.Value.Column.Column
                                      : item.Alias;
        if (!alias.isEmpty()) {
            Put(" AS ");
            m_dialect.AppendName(m_out.Sql, alias);
        }
    }

    void Write(const Insert& insert) {
        Put("INSERT INTO ");
        PutTable(insert.Table);
        Put(" (");
        PutList(insert.Columns, [this](QStringView column) { PutColumn(column); });
        Put(") VALUES (");
        PutList(insert.Values, [this](const Expression& value) { Write(value); });
        Put(")");
    }

    void Write(const Update& update) {
        Put("UPDATE ");
        PutTable(update.Table);
        Put(" SET ");
        PutList(update.Assignments, [this](const Assignment& assignment) {
            PutColumn(assignment.Column);
            Put(" = ");
            Write(assignment.Value);
        });
        WriteWhere(update.Where);
    }

    void Write(const Delete& statement) {
        Put("DELETE FROM ");
        PutTable(statement.Table);
        WriteWhere(statement.Where);
    }

    void WriteWhere(const std::optional<Expression>& where) {
        if (where) {
            Put(" WHERE ");
            Write(*where);
        }
    }

    void Write(const Expression& expression) {
        switch (expression.Kind) {
            case ExpressionKind::Constant:
                PutValue(expression.Value);
                return;
            case ExpressionKind::Column:
                WriteColumn(expression.Column);
                return;
            case ExpressionKind::Identity:
                Put(m_dialect.Identity());
                return;
            case ExpressionKind::Star:
                Put("*");
                return;
            case ExpressionKind::Call:
                WriteCall(expression);
                return;
            default:
                WriteInParentheses([&] { WriteComposite(expression); });
        }
    }

    /// What `write` writes, one nesting deeper.
    template <typename Step>
    void WriteInParentheses(Step write, int pieces = 3) {
        m_nesting += pieces;
        if (m_nesting > m_dialect.MaxNesting()) {
            throw Failure(Number::QueryTooComplex, QStringLiteral("Expression too complex."));
        }
        Put("(");
        write();
        Put(")");
        m_nesting -= pieces;
    }

    void WriteColumn(const Name& name) {
        if (!name.Table.isEmpty()) {
            PutTable(name.Table);
            Put(".");
        }
        PutColumn(name.Column);
    }

    void WriteCall(const Expression& call) {
        constexpr int Pieces = 5;
        Put(m_dialect.FunctionName(call.Called));
        WriteInParentheses(
            [&] { PutList(call.Operands, [this](const Expression& argument) { Write(argument); }); }, Pieces);
    }

    void WriteComposite(const Expression& expression) {
        switch (expression.Kind) {
            case ExpressionKind::Or:
                WriteBalanced(expression, 0, expression.Operands.size(), " OR ");
                return;
            case ExpressionKind::And:
                WriteBalanced(expression, 0, expression.Operands.size(), " AND ");
                return;
            case ExpressionKind::Not:
                Put("NOT ");
                Write(expression.Operands.front());
                return;
            case ExpressionKind::Negate:
                Put("-");
                Write(expression.Operands.front());
                return;
            case ExpressionKind::Arithmetic:
                WriteArithmetic(expression);
                return;
            case ExpressionKind::IsNull:
                Write(expression.Operands.front());
                Put(expression.IsNegated ? " IS NOT NULL" : " IS NULL");
                return;
            default:
                WriteComparison(expression);
        }
    }

    /// A chain of a thousand terms becomes a tree of depth ten: engines limit depth, not length.
    void WriteBalanced(const Expression& chain, std::size_t begin, std::size_t end, QByteArrayView word) {
        constexpr std::size_t Flat = 4;
        if (end - begin <= Flat) {
            for (std::size_t i = begin; i < end; ++i) {
                Put(i == begin ? QByteArrayView() : word);
                Write(chain.Operands[i]);
            }
            return;
        }
        const std::size_t middle = begin + (end - begin) / 2;
        WriteInParentheses([&] { WriteBalanced(chain, begin, middle, word); });
        Put(word);
        WriteInParentheses([&] { WriteBalanced(chain, middle, end, word); });
    }

    void WriteArithmetic(const Expression& chain) {
        Write(chain.Operands.front());
        for (std::size_t i = 1; i < chain.Operands.size(); ++i) {
            const Operator operation = chain.Operators[i - 1];
            Put(" ");
            Put(operation == Operator::Divide ? m_dialect.Division() : Symbol(operation));
            Put(" ");
            Write(chain.Operands[i]);
        }
    }

    void WriteComparison(const Expression& expression) {
        const auto& operands = expression.Operands;
        const bool isLike = expression.Kind == ExpressionKind::Like;
        bool hasText = false;
        for (const Expression& operand : operands) {
            hasText = hasText || (!isLike && IsText(operand));
        }
        Write(operands.front());
        if (hasText) {
            Put(m_dialect.TextComparison());
        }
        Put(expression.IsNegated ? " NOT " : " ");
        switch (expression.Kind) {
            case ExpressionKind::Between:
                Put("BETWEEN ");
                Write(operands[1]);
                m_nesting += 2;
                Put(" AND ");
                Write(operands[2]);
                m_nesting -= 2;
                return;
            case ExpressionKind::In:
                Put("IN ");
                WriteInParentheses([&] {
                    PutList(std::span(operands).subspan(1), [this](const Expression& one) { Write(one); });
                });
                return;
            default:
                Put(isLike ? m_dialect.Like() : Symbol(expression.Operators.front()));
                Put(" ");
                Write(operands[1]);
        }
    }

    const Dialect& m_dialect;
    QByteArrayView m_extraColumn;
    const QStringList& m_textColumns;
    Written m_out;
    int m_nesting = 0;
};

}  // namespace

Written Write(const Statement& statement, const Dialect& dialect, QByteArrayView extraColumn,
              const QStringList& textColumns) {
    return Writer(dialect, extraColumn, textColumns).Run(statement);
}

}  // namespace engine::sql
