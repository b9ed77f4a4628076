#include "store/engine/sql/Parser.h"

#include "store/engine/Error.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace engine::sql {

namespace {

struct FunctionName {
    QStringView Word;
    Function Called;
    int Arguments;
};

constexpr std::array Functions = {
    FunctionName{u"len", Function::Len, 1}, FunctionName{u"iif", Function::Iif, 3},
    FunctionName{u"sum", Function::Sum, 1}, FunctionName{u"count", Function::Count, 1},
    FunctionName{u"min", Function::Min, 1}, FunctionName{u"max", Function::Max, 1},
    FunctionName{u"avg", Function::Avg, 1},
};

struct OperatorToken {
    TokenKind Kind;
    Operator Meaning;
};

constexpr std::array Comparisons = {
    OperatorToken{TokenKind::Equal, Operator::Equal},
    OperatorToken{TokenKind::NotEqual, Operator::NotEqual},
    OperatorToken{TokenKind::Less, Operator::Less},
    OperatorToken{TokenKind::LessEqual, Operator::LessEqual},
    OperatorToken{TokenKind::Greater, Operator::Greater},
    OperatorToken{TokenKind::GreaterEqual, Operator::GreaterEqual},
};
constexpr std::array Additions = {OperatorToken{TokenKind::Plus, Operator::Add},
                                  OperatorToken{TokenKind::Minus, Operator::Subtract}};
constexpr std::array Multiplications = {OperatorToken{TokenKind::Star, Operator::Multiply},
                                        OperatorToken{TokenKind::Slash, Operator::Divide}};

template <std::size_t Size>
const OperatorToken* FindOperator(const std::array<OperatorToken, Size>& operators, TokenKind kind) {
    const auto found = std::find_if(operators.begin(), operators.end(),
                                    [kind](const OperatorToken& entry) { return entry.Kind == kind; });
    return found == operators.end() ? nullptr : &*found;
}

bool CanBeginExpression(TokenKind kind) {
    switch (kind) {
        case TokenKind::Name:
        case TokenKind::BracketedName:
        case TokenKind::Number:
        case TokenKind::Text:
        case TokenKind::Date:
        case TokenKind::Identity:
        case TokenKind::LeftParenthesis:
        case TokenKind::Plus:
        case TokenKind::Minus:
        case TokenKind::Not:
        case TokenKind::Null:
        case TokenKind::True:
        case TokenKind::False:
            return true;
        default:
            return false;
    }
}

bool IsTextLiteral(const Expression& expression) {
    return expression.Kind == ExpressionKind::Constant && std::holds_alternative<QString>(expression.Value);
}

class Parser {
public:
    Parser(QStringView text, const MonthNames& months)
        : m_lexer(text), m_months(months), m_token(m_lexer.Next()) {}

    Statement Run() {
        Statement statement = ParseStatement();
        if (m_token.Kind == TokenKind::Semicolon) {
            Advance();
            if (m_token.Kind != TokenKind::End) {
                throw Failure(Number::CharactersAfterEnd,
                              QStringLiteral("Characters found after end of SQL statement."));
            }
        }
        if (m_token.Kind != TokenKind::End) {
            const bool isMissingOperator = m_endsInExpression && CanBeginExpression(m_token.Kind);
            Refuse(isMissingOperator ? int{Number::SyntaxInExpression} : m_number);
        }
        return statement;
    }

private:
    /// One level deeper for as long as it lives.
    class Level {
    public:
        explicit Level(Parser& parser) : m_parser(parser) {
            if (++m_parser.m_depth > MaxDepth) {
                throw Failure(Number::QueryTooComplex, QStringLiteral("Expression too complex."));
            }
        }
        ~Level() { --m_parser.m_depth; }
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;

    private:
        Parser& m_parser;
    };

    [[noreturn]] static void Refuse(int number) {
        throw Failure(number, number == Number::SyntaxInExpression
                                  ? QStringLiteral("Syntax error in query expression.")
                                  : QStringLiteral("Syntax error in statement."));
    }

    void Advance() { m_token = m_lexer.Next(); }
    bool Skip(TokenKind kind) {
        if (m_token.Kind != kind) {
            return false;
        }
        Advance();
        return true;
    }
    void Expect(TokenKind kind, int number) {
        if (!Skip(kind)) {
            Refuse(number);
        }
    }
    template <typename Container>
    static void CheckCount(const Container& container, int limit) {
        if (container.size() > static_cast<std::size_t>(limit)) {
            throw Failure(Number::QueryTooComplex, QStringLiteral("Too many fields or terms."));
        }
    }

    Statement ParseStatement() {
        switch (m_token.Kind) {
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
        Advance();
        if (Skip(TokenKind::Top)) {
            select.Top = ParseTop();
        }
        if (Skip(TokenKind::Star)) {
            select.IsAll = true;
        } else {
            m_allowsAggregates = true;
            do {
                select.Items.push_back(ParseItem());
                CheckCount(select.Items, MaxColumns);
            } while (Skip(TokenKind::Comma));
            m_allowsAggregates = false;
        }
        if (Skip(TokenKind::From)) {
            select.From = ParseName(m_number);
            m_endsInExpression = false;
            select.Where = ParseWhere();
            ParseGroupBy(select);
            ParseOrderBy(select);
        } else if (select.IsAll) {
            Refuse(m_number);
        }
        return select;
    }

    qint64 ParseTop() {
        const Expression count = m_token.Kind == TokenKind::Number ? ParseNumber() : Expression{};
        const auto* number = std::get_if<qint64>(&count.Value);
        if (number == nullptr) {
            Refuse(m_number);
        }
        return *number;
    }

    SelectItem ParseItem() {
        SelectItem item;
        item.Value = ParseExpression(m_number);
        m_endsInExpression = true;
        if (Skip(TokenKind::As)) {
            item.Alias = ParseName(m_number);
            m_endsInExpression = false;
        }
        return item;
    }

    std::optional<Expression> ParseWhere() {
        if (!Skip(TokenKind::Where)) {
            return std::nullopt;
        }
        m_endsInExpression = true;
        return ParseExpression(Number::SyntaxInExpression);
    }

    void ParseGroupBy(Select& select) {
        if (!Skip(TokenKind::Group)) {
            return;
        }
        Expect(TokenKind::By, m_number);
        do {
            select.GroupBy.push_back(ParseTerm());
            CheckCount(select.GroupBy, MaxColumns);
        } while (Skip(TokenKind::Comma));
    }

    void ParseOrderBy(Select& select) {
        if (!Skip(TokenKind::Order)) {
            return;
        }
        Expect(TokenKind::By, m_number);
        m_allowsAggregates = true;
        do {
            OrderItem item{ParseTerm(), false};
            if (m_token.Kind == TokenKind::Asc || m_token.Kind == TokenKind::Desc) {
                item.IsDescending = m_token.Kind == TokenKind::Desc;
                Advance();
                m_endsInExpression = false;
            }
            select.OrderBy.push_back(std::move(item));
            CheckCount(select.OrderBy, MaxColumns);
        } while (Skip(TokenKind::Comma));
        m_allowsAggregates = false;
    }

    /// A term of GROUP BY or ORDER BY. A bare value there would mean a column's position to some engines and
    /// nothing to others.
    Expression ParseTerm() {
        Expression term = ParseExpression(m_number);
        if (term.Kind == ExpressionKind::Constant) {
            Refuse(m_number);
        }
        m_endsInExpression = true;
        return term;
    }

    Insert ParseInsert() {
        Insert insert;
        Advance();
        Expect(TokenKind::Into, m_number);
        insert.Table = ParseName(m_number);
        Expect(TokenKind::LeftParenthesis, m_number);
        do {
            insert.Columns.push_back(ParseName(m_number));
            CheckCount(insert.Columns, MaxColumns);
        } while (Skip(TokenKind::Comma));
        Expect(TokenKind::RightParenthesis, m_number);
        Expect(TokenKind::Values, m_number);
        Expect(TokenKind::LeftParenthesis, m_number);
        do {
            insert.Values.push_back(ParseExpression(m_number));
            CheckCount(insert.Values, MaxColumns);
        } while (Skip(TokenKind::Comma));
        Expect(TokenKind::RightParenthesis,
               CanBeginExpression(m_token.Kind) ? int{Number::SyntaxInExpression} : m_number);
        if (insert.Values.size() != insert.Columns.size()) {
            Refuse(m_number);
        }
        return insert;
    }

    Update ParseUpdate() {
        Update update;
        Advance();
        update.Table = ParseName(m_number);
        Expect(TokenKind::Set, m_number);
        do {
            Assignment assignment;
            assignment.Column = ParseName(m_number);
            Expect(TokenKind::Equal, m_number);
            assignment.Value = ParseExpression(m_number);
            update.Assignments.push_back(std::move(assignment));
            CheckCount(update.Assignments, MaxColumns);
        } while (Skip(TokenKind::Comma));
        m_endsInExpression = true;
        update.Where = ParseWhere();
        return update;
    }

    Delete ParseDelete() {
        Delete statement;
        Advance();
        Expect(TokenKind::From, m_number);
        statement.Table = ParseName(m_number);
        statement.Where = ParseWhere();
        return statement;
    }

    QStringView ParseName(int number) {
        if (m_token.Kind != TokenKind::Name && m_token.Kind != TokenKind::BracketedName) {
            Refuse(number);
        }
        const QStringView name = m_token.Text;
        const bool isOdd = std::any_of(name.begin(), name.end(), [](QChar unit) {
            return unit.unicode() < u' ' || unit.unicode() == 0x7F || unit.isSurrogate();
        });
        if (name.trimmed().isEmpty() || isOdd) {
            Refuse(number);
        }
        Advance();
        return name;
    }

    /// `numberIfMissing` where no expression begins at all.
    Expression ParseExpression(int numberIfMissing) {
        if (!CanBeginExpression(m_token.Kind)) {
            Refuse(numberIfMissing);
        }
        return ParseOr();
    }

    Expression ParseOr() {
        const Level level(*this);
        return ParseLogic(TokenKind::Or, ExpressionKind::Or, &Parser::ParseAnd);
    }
    Expression ParseAnd() { return ParseLogic(TokenKind::And, ExpressionKind::And, &Parser::ParseNot); }

    Expression ParseLogic(TokenKind word, ExpressionKind kind, Expression (Parser::*parseOperand)()) {
        Expression first = (this->*parseOperand)();
        if (m_token.Kind != word) {
            return first;
        }
        Expression chain;
        chain.Kind = kind;
        chain.Operands.push_back(std::move(first));
        while (Skip(word)) {
            chain.Operands.push_back((this->*parseOperand)());
        }
        return chain;
    }

    Expression ParseNot() {
        if (!Skip(TokenKind::Not)) {
            return ParseComparison();
        }
        const Level level(*this);
        return Wrap(ExpressionKind::Not, ParseNot());
    }

    static Expression Wrap(ExpressionKind kind, Expression operand) {
        Expression expression;
        expression.Kind = kind;
        expression.Operands.push_back(std::move(operand));
        return expression;
    }

    Expression ParseComparison() {
        Expression left = ParseSum();
        if (const OperatorToken* comparison = FindOperator(Comparisons, m_token.Kind)) {
            Advance();
            Expression expression = Wrap(ExpressionKind::Comparison, std::move(left));
            expression.Operators.push_back(comparison->Meaning);
            expression.Operands.push_back(ParseSum());
            return expression;
        }
        if (Skip(TokenKind::Is)) {
            const bool isNegated = Skip(TokenKind::Not);
            Expect(TokenKind::Null, Number::SyntaxInExpression);
            Expression expression = Wrap(ExpressionKind::IsNull, std::move(left));
            expression.IsNegated = isNegated;
            return expression;
        }
        const bool isNegated = Skip(TokenKind::Not);
        switch (m_token.Kind) {
            case TokenKind::Like:
                return ParseLike(std::move(left), isNegated);
            case TokenKind::Between:
                return ParseBetween(std::move(left), isNegated);
            case TokenKind::In:
                return ParseIn(std::move(left), isNegated);
            default:
                if (isNegated) {
                    Refuse(Number::SyntaxInExpression);
                }
                return left;
        }
    }

    Expression ParseLike(Expression left, bool isNegated) {
        Advance();
        Expression expression = Wrap(ExpressionKind::Like, std::move(left));
        expression.IsNegated = isNegated;
        expression.Operands.push_back(ParseSum());
        return expression;
    }

    Expression ParseBetween(Expression left, bool isNegated) {
        Advance();
        Expression expression = Wrap(ExpressionKind::Between, std::move(left));
        expression.IsNegated = isNegated;
        expression.Operands.push_back(ParseSum());
        Expect(TokenKind::And, Number::SyntaxInExpression);
        expression.Operands.push_back(ParseSum());
        return expression;
    }

    Expression ParseIn(Expression left, bool isNegated) {
        Advance();
        Expression expression = Wrap(ExpressionKind::In, std::move(left));
        expression.IsNegated = isNegated;
        Expect(TokenKind::LeftParenthesis, Number::SyntaxInExpression);
        do {
            expression.Operands.push_back(ParseOr());
        } while (Skip(TokenKind::Comma));
        Expect(TokenKind::RightParenthesis, Number::SyntaxInExpression);
        return expression;
    }

    Expression ParseSum() { return ParseArithmetic(Additions, &Parser::ParseProduct); }
    Expression ParseProduct() { return ParseArithmetic(Multiplications, &Parser::ParseSigned); }

    template <std::size_t Size>
    Expression ParseArithmetic(const std::array<OperatorToken, Size>& operators,
                               Expression (Parser::*parseOperand)()) {
        Expression first = (this->*parseOperand)();
        if (FindOperator(operators, m_token.Kind) == nullptr) {
            return first;
        }
        Expression chain;
        chain.Kind = ExpressionKind::Arithmetic;
        chain.Operands.push_back(std::move(first));
        while (const OperatorToken* found = FindOperator(operators, m_token.Kind)) {
            Advance();
            chain.Operators.push_back(found->Meaning);
            chain.Operands.push_back((this->*parseOperand)());
            CheckCount(chain.Operands, MaxTerms);
        }
        if (std::any_of(chain.Operands.begin(), chain.Operands.end(), IsTextLiteral)) {
            Refuse(Number::SyntaxInExpression);
        }
        return chain;
    }

    Expression ParseSigned() {
        const bool isNegative = m_token.Kind == TokenKind::Minus;
        if (!isNegative && m_token.Kind != TokenKind::Plus) {
            return ParsePrimary();
        }
        const Level level(*this);
        Advance();
        Expression operand = ParseSigned();
        if (IsTextLiteral(operand)) {
            Refuse(Number::SyntaxInExpression);
        }
        if (!isNegative) {
            return operand;
        }
        if (auto* number = std::get_if<qint64>(&operand.Value)) {
            *number = -*number;
            return operand;
        }
        if (auto* number = std::get_if<double>(&operand.Value)) {
            *number = -*number;
            return operand;
        }
        return Wrap(ExpressionKind::Negate, std::move(operand));
    }

    Expression ParsePrimary() {
        switch (m_token.Kind) {
            case TokenKind::Number:
                return ParseNumber();
            case TokenKind::Text:
                return ParseText();
            case TokenKind::Date:
                return ParseDate();
            case TokenKind::True:
                return TakeLiteral(true);
            case TokenKind::False:
                return TakeLiteral(false);
            case TokenKind::Null:
                return TakeLiteral(std::monostate());
            case TokenKind::Identity: {
                Expression expression;
                expression.Kind = ExpressionKind::Identity;
                Advance();
                return expression;
            }
            case TokenKind::LeftParenthesis: {
                Advance();
                Expression inner = ParseOr();
                Expect(TokenKind::RightParenthesis, Number::SyntaxInExpression);
                return inner;
            }
            case TokenKind::Name:
            case TokenKind::BracketedName:
                return ParseNameOrCall();
            default:
                Refuse(Number::SyntaxInExpression);
        }
    }

    Expression TakeLiteral(Literal value) {
        if (++m_values > MaxValues) {
            throw Failure(Number::QueryTooComplex, QStringLiteral("Too many values."));
        }
        Expression expression;
        expression.Value = std::move(value);
        Advance();
        return expression;
    }

    Expression ParseNumber() {
        constexpr qsizetype SafeDigits = 18;
        const QStringView text = m_token.Text;
        const bool isWhole =
            std::all_of(text.begin(), text.end(), [](QChar unit) { return unit >= u'0' && unit <= u'9'; });
        if (isWhole && text.size() <= SafeDigits) {
            qint64 number = 0;
            for (const QChar unit : text) {
                number = number * 10 + (unit.unicode() - u'0');
            }
            return TakeLiteral(number);
        }
        const double number = text.toDouble();
        if (!std::isfinite(number)) {
            Refuse(Number::SyntaxInExpression);
        }
        return TakeLiteral(number);
    }

    Expression ParseText() {
        QString text = m_token.Text.toString();
        // Quotes of the other kind stand for themselves: the token does not say its quote, its text does.
        const bool isSingle = m_token.Text.data()[-1] == u'\'';
        const QChar quote = isSingle ? u'\'' : u'"';
        if (text.contains(quote)) {
            text.replace(QString(2, quote), QString(quote));
        }
        return TakeLiteral(std::move(text));
    }

    Expression ParseDate() {
        const std::optional<DateLiteral> date = ReadDate(m_token.Text);
        if (!date) {
            throw Failure(Number::SyntaxInExpression,
                          QStringLiteral("Syntax error in date in query expression."));
        }
        return TakeLiteral(*date);
    }

    static std::optional<int> ReadDigits(QStringView text, int minimum, int maximum) {
        if (text.size() < minimum || text.size() > maximum) {
            return std::nullopt;
        }
        int number = 0;
        for (const QChar unit : text) {
            if (unit < u'0' || unit > u'9') {
                return std::nullopt;
            }
            number = number * 10 + (unit.unicode() - u'0');
        }
        return number;
    }

    [[nodiscard]] std::optional<DateLiteral> ReadDate(QStringView source) const {
        const QStringView text = source.trimmed();
        const qsizetype firstSlash = text.indexOf(u'/');
        const qsizetype secondSlash = firstSlash < 0 ? -1 : text.indexOf(u'/', firstSlash + 1);
        if (secondSlash < 0) {
            return std::nullopt;
        }
        const QStringView rest = text.sliced(secondSlash + 1);
        const qsizetype blank = rest.indexOf(u' ');
        const auto day = ReadDigits(text.first(firstSlash), 1, 2);
        const auto year = ReadDigits(blank < 0 ? rest : rest.first(blank), 4, 4);
        const int month = m_months.Find(text.sliced(firstSlash + 1, secondSlash - firstSlash - 1));
        if (!day || !year || month == 0) {
            return std::nullopt;
        }
        DateLiteral date{QDate(*year, month, *day), QTime(0, 0)};
        if (blank >= 0) {
            date.Time = ReadTime(rest.sliced(blank).trimmed());
        }
        return date.Day.isValid() && date.Time.isValid() ? std::optional(date) : std::nullopt;
    }

    /// hh:nn or hh:nn:ss; an invalid time for anything else.
    static QTime ReadTime(QStringView text) {
        std::array<std::optional<int>, 3> parts = {std::nullopt, std::nullopt, 0};
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const qsizetype colon = i + 1 < parts.size() ? text.indexOf(u':') : -1;
            parts[i] = ReadDigits(colon < 0 ? text : text.first(colon), 1, 2);
            if (!parts[i]) {
                return {};
            }
            if (colon < 0) {
                return i == 0 ? QTime() : QTime(*parts[0], *parts[1], *parts[2]);
            }
            text = text.sliced(colon + 1);
        }
        return {};
    }

    Expression ParseNameOrCall() {
        const bool isBare = m_token.Kind == TokenKind::Name;
        Expression expression;
        expression.Kind = ExpressionKind::Column;
        expression.Column.Column = ParseName(Number::SyntaxInExpression);
        if (isBare && m_token.Kind == TokenKind::LeftParenthesis) {
            return ParseCall(expression.Column.Column);
        }
        if (Skip(TokenKind::Dot)) {
            expression.Column.Table = expression.Column.Column;
            expression.Column.Column = ParseName(Number::SyntaxInExpression);
        }
        return expression;
    }

    Expression ParseCall(QStringView word) {
        const auto* function = std::find_if(
            Functions.begin(), Functions.end(),
            [word](const FunctionName& entry) { return entry.Word.compare(word, Qt::CaseInsensitive) == 0; });
        if (function == Functions.end()) {
            throw Failure(Number::SyntaxInExpression, QStringLiteral("Undefined function in expression."));
        }
        const bool isAggregate = IsAggregate(function->Called);
        if (isAggregate && !m_allowsAggregates) {
            throw Failure(Number::SyntaxInExpression,
                          QStringLiteral("An aggregate function cannot stand there."));
        }
        const bool allowedBefore = std::exchange(m_allowsAggregates, m_allowsAggregates && !isAggregate);
        Expression call;
        call.Kind = ExpressionKind::Call;
        call.Called = function->Called;
        Advance();
        if (function->Called == Function::Count && Skip(TokenKind::Star)) {
            call.Operands.emplace_back().Kind = ExpressionKind::Star;
        } else {
            do {
                call.Operands.push_back(ParseOr());
                CheckCount(call.Operands, MaxColumns);
            } while (Skip(TokenKind::Comma));
        }
        m_allowsAggregates = allowedBefore;
        Expect(TokenKind::RightParenthesis, Number::SyntaxInExpression);
        if (call.Operands.size() != static_cast<std::size_t>(function->Arguments)) {
            throw Failure(Number::SyntaxInExpression, QStringLiteral("Wrong number of arguments."));
        }
        return call;
    }

    Lexer m_lexer;
    const MonthNames& m_months;
    Token m_token;
    int m_number = Number::InvalidStatement;
    int m_depth = 0;
    int m_values = 0;
    bool m_allowsAggregates = false;
    bool m_endsInExpression = false;
};

}  // namespace

Statement Parse(QStringView text, const MonthNames& months) {
    return Parser(text, months).Run();
}

}  // namespace engine::sql
