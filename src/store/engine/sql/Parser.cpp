#include "store/engine/sql/Parser.h"

#include "store/engine/Error.h"
#include "store/engine/sql/ExpressionParser.h"
#include "store/engine/sql/Grouping.h"
#include "store/engine/sql/Literals.h"
#include "store/engine/sql/TokenStream.h"

#include <utility>

namespace engine::sql {

namespace {

/// Whether a token that may not follow an expression was meant to be part of it.
bool BelongsToExpression(TokenKind kind) {
    switch (kind) {
        case TokenKind::RightParenthesis:
        case TokenKind::Dot:
        case TokenKind::Slash:
        case TokenKind::Star:
        case TokenKind::Equal:
        case TokenKind::NotEqual:
        case TokenKind::Less:
        case TokenKind::LessEqual:
        case TokenKind::Greater:
        case TokenKind::GreaterEqual:
            return true;
        default:
            return CanBeginExpression(kind);
    }
}

class Parser {
public:
    Parser(QStringView text, const MonthNames& months) : m_tokens(text), m_expressions(m_tokens, months) {}

    Statement Run() {
        Statement statement = ParseStatement();
        if (m_tokens.Kind() == TokenKind::Semicolon) {
            m_tokens.Advance();
            if (m_tokens.Kind() != TokenKind::End) {
                throw Failure(Number::CharactersAfterEnd,
                              QStringLiteral("Characters found after end of SQL statement."));
            }
        }
        if (m_tokens.Kind() != TokenKind::End) {
            RefuseSyntax(m_endsInExpression && BelongsToExpression(m_tokens.Kind())
                             ? int{Number::SyntaxInExpression}
                             : m_number);
        }
        return statement;
    }

private:
    Statement ParseStatement() {
        switch (m_tokens.Kind()) {
            case TokenKind::Select:
                m_number = Number::SyntaxInSelect;
                return ParseSelect();
            case TokenKind::Insert:
                m_number = Number::SyntaxInInsert;
                return ParseInsert();
            case TokenKind::Update:
                m_number = Number::SyntaxInUpdate;
                return ParseUpdate();
            case TokenKind::Delete:
                m_number = Number::SyntaxInDelete;
                return ParseDelete();
            default:
                throw Failure(
                    Number::InvalidStatement,
                    QStringLiteral("Invalid SQL statement; expected DELETE, INSERT, SELECT or UPDATE."));
        }
    }

    Select ParseSelect() {
        Select select;
        m_tokens.Advance();
        if (m_tokens.Skip(TokenKind::Top)) {
            select.Top = ParseTop();
        }
        if (m_tokens.Skip(TokenKind::Star)) {
            select.IsAll = true;
        } else {
            m_expressions.AllowAggregates(true);
            do {
                select.Items.push_back(ParseItem());
                CheckCount(select.Items.size(), MaxColumns);
            } while (m_tokens.Skip(TokenKind::Comma));
            m_expressions.AllowAggregates(false);
        }
        if (m_tokens.Skip(TokenKind::From)) {
            select.From = m_tokens.TakeName(m_number);
            m_endsInExpression = false;
            select.Where = ParseWhere();
            ParseGroupBy(select);
            ParseOrderBy(select);
        } else if (select.IsAll) {
            RefuseSyntax(m_number);
        }
        if (!IsGroupingWhole(select)) {
            throw Failure(
                Number::NotPartOfAggregate,
                QStringLiteral("A column is neither grouped by nor part of an aggregate function."));
        }
        return select;
    }

    qint64 ParseTop() {
        const auto value =
            m_tokens.Kind() == TokenKind::Number ? ReadNumber(m_tokens.Current().Text) : std::nullopt;
        const qint64* count = value ? std::get_if<qint64>(&*value) : nullptr;
        if (count == nullptr) {
            RefuseSyntax(m_number);
        }
        m_tokens.Advance();
        return *count;
    }

    SelectItem ParseItem() {
        SelectItem item;
        item.Value = m_expressions.Parse(m_number);
        m_endsInExpression = true;
        if (m_tokens.Skip(TokenKind::As)) {
            item.Alias = m_tokens.TakeName(m_number);
            m_endsInExpression = false;
        }
        return item;
    }

    std::optional<Expression> ParseWhere() {
        if (!m_tokens.Skip(TokenKind::Where)) {
            return std::nullopt;
        }
        m_endsInExpression = true;
        return m_expressions.Parse(Number::SyntaxInExpression);
    }

    void ParseGroupBy(Select& select) {
        if (!m_tokens.Skip(TokenKind::Group)) {
            return;
        }
        m_tokens.Expect(TokenKind::By, m_number);
        do {
            select.GroupBy.push_back(ParseTerm());
            CheckCount(select.GroupBy.size(), MaxColumns);
        } while (m_tokens.Skip(TokenKind::Comma));
    }

    void ParseOrderBy(Select& select) {
        if (!m_tokens.Skip(TokenKind::Order)) {
            return;
        }
        m_tokens.Expect(TokenKind::By, m_number);
        m_expressions.AllowAggregates(true);
        do {
            OrderItem item{ParseTerm(), false};
            if (m_tokens.Kind() == TokenKind::Asc || m_tokens.Kind() == TokenKind::Desc) {
                item.IsDescending = m_tokens.Kind() == TokenKind::Desc;
                m_tokens.Advance();
                m_endsInExpression = false;
            }
            select.OrderBy.push_back(std::move(item));
            CheckCount(select.OrderBy.size(), MaxColumns);
        } while (m_tokens.Skip(TokenKind::Comma));
        m_expressions.AllowAggregates(false);
    }

    /// A term of GROUP BY or ORDER BY. A bare value there would mean a column's position to some engines and
    /// nothing to others.
    Expression ParseTerm() {
        Expression term = m_expressions.Parse(m_number);
        if (term.Kind == ExpressionKind::Constant) {
            RefuseSyntax(m_number);
        }
        m_endsInExpression = true;
        return term;
    }

    Insert ParseInsert() {
        Insert insert;
        m_tokens.Advance();
        m_tokens.Expect(TokenKind::Into, m_number);
        insert.Table = m_tokens.TakeName(m_number);
        m_tokens.Expect(TokenKind::LeftParenthesis, m_number);
        do {
            insert.Columns.push_back(m_tokens.TakeName(m_number));
            CheckCount(insert.Columns.size(), MaxColumns);
        } while (m_tokens.Skip(TokenKind::Comma));
        m_tokens.Expect(TokenKind::RightParenthesis, m_number);
        m_tokens.Expect(TokenKind::Values, m_number);
        m_tokens.Expect(TokenKind::LeftParenthesis, m_number);
        do {
            insert.Values.push_back(m_expressions.Parse(m_number));
            CheckCount(insert.Values.size(), MaxColumns);
        } while (m_tokens.Skip(TokenKind::Comma));
        m_tokens.Expect(TokenKind::RightParenthesis,
                        CanBeginExpression(m_tokens.Kind()) ? int{Number::SyntaxInExpression} : m_number);
        if (insert.Values.size() != insert.Columns.size()) {
            RefuseSyntax(m_number);
        }
        return insert;
    }

    Update ParseUpdate() {
        Update update;
        m_tokens.Advance();
        update.Table = m_tokens.TakeName(m_number);
        m_tokens.Expect(TokenKind::Set, m_number);
        do {
            Assignment assignment;
            assignment.Column = m_tokens.TakeName(m_number);
            m_tokens.Expect(TokenKind::Equal, m_number);
            assignment.Value = m_expressions.Parse(m_number);
            update.Assignments.push_back(std::move(assignment));
            CheckCount(update.Assignments.size(), MaxColumns);
        } while (m_tokens.Skip(TokenKind::Comma));
        m_endsInExpression = true;
        update.Where = ParseWhere();
        return update;
    }

    Delete ParseDelete() {
        Delete statement;
        m_tokens.Advance();
        m_tokens.Expect(TokenKind::From, m_number);
        statement.Table = m_tokens.TakeName(m_number);
        statement.Where = ParseWhere();
        return statement;
    }

    TokenStream m_tokens;
    ExpressionParser m_expressions;
    int m_number = Number::InvalidStatement;
    /// What comes next would follow an expression.
    bool m_endsInExpression = false;
};

}  // namespace

Statement Parse(QStringView text, const MonthNames& months) {
    return Parser(text, months).Run();
}

}  // namespace engine::sql
