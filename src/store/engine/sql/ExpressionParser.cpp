#include "store/engine/sql/ExpressionParser.h"

#include "store/engine/Error.h"
#include "store/engine/sql/Literals.h"
#include "store/engine/sql/Parser.h"

#include <algorithm>
#include <array>
#include <span>
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

const OperatorToken* FindOperator(std::span<const OperatorToken> operators, TokenKind kind) {
    const auto found = std::find_if(operators.begin(), operators.end(),
                                    [kind](const OperatorToken& entry) { return entry.Kind == kind; });
    return found == operators.end() ? nullptr : &*found;
}

bool IsTextLiteral(const Expression& expression) {
    return expression.Kind == ExpressionKind::Constant && std::holds_alternative<QString>(expression.Value);
}

/// One level deeper for as long as it lives.
class Level {
public:
    explicit Level(int* depth) : m_depth(depth) {
        CheckCount(static_cast<std::size_t>(++*m_depth), MaxDepth);
    }
    ~Level() { --*m_depth; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;

private:
    int* m_depth;
};

Expression Wrap(ExpressionKind kind, Expression operand) {
    Expression expression;
    expression.Kind = kind;
    expression.Operands.push_back(std::move(operand));
    return expression;
}

}  // namespace

Expression ExpressionParser::Parse(int numberIfMissing) {
    if (!CanBeginExpression(m_tokens.Kind())) {
        RefuseSyntax(numberIfMissing);
    }
    return ParseOr();
}

Expression ExpressionParser::ParseOr() {
    const Level level(&m_depth);
    return ParseLogic(TokenKind::Or, ExpressionKind::Or, &ExpressionParser::ParseAnd);
}
Expression ExpressionParser::ParseAnd() {
    return ParseLogic(TokenKind::And, ExpressionKind::And, &ExpressionParser::ParseNot);
}

Expression ExpressionParser::ParseLogic(TokenKind word, ExpressionKind kind,
                                        Expression (ExpressionParser::*parseOperand)()) {
    Expression first = (this->*parseOperand)();
    if (m_tokens.Kind() != word) {
        return first;
    }
    Expression chain;
    chain.Kind = kind;
    chain.Operands.push_back(std::move(first));
    while (m_tokens.Skip(word)) {
        chain.Operands.push_back((this->*parseOperand)());
    }
    return chain;
}

Expression ExpressionParser::ParseNot() {
    if (!m_tokens.Skip(TokenKind::Not)) {
        return ParseComparison();
    }
    const Level level(&m_depth);
    return Wrap(ExpressionKind::Not, ParseNot());
}

Expression ExpressionParser::ParseComparison() {
    Expression left = ParseSum();
    if (const OperatorToken* comparison = FindOperator(Comparisons, m_tokens.Kind())) {
        m_tokens.Advance();
        Expression expression = Wrap(ExpressionKind::Comparison, std::move(left));
        expression.Operators.push_back(comparison->Meaning);
        expression.Operands.push_back(ParseSum());
        return expression;
    }
    if (m_tokens.Skip(TokenKind::Is)) {
        const bool isNegated = m_tokens.Skip(TokenKind::Not);
        m_tokens.Expect(TokenKind::Null, Number::SyntaxInExpression);
        Expression expression = Wrap(ExpressionKind::IsNull, std::move(left));
        expression.IsNegated = isNegated;
        return expression;
    }
    const bool isNegated = m_tokens.Skip(TokenKind::Not);
    switch (m_tokens.Kind()) {
        case TokenKind::Like:
            return ParseLike(std::move(left), isNegated);
        case TokenKind::Between:
            return ParseBetween(std::move(left), isNegated);
        case TokenKind::In:
            return ParseIn(std::move(left), isNegated);
        default:
            if (isNegated) {
                RefuseSyntax(Number::SyntaxInExpression);
            }
            return left;
    }
}

Expression ExpressionParser::ParseLike(Expression left, bool isNegated) {
    m_tokens.Advance();
    Expression expression = Wrap(ExpressionKind::Like, std::move(left));
    expression.IsNegated = isNegated;
    expression.Operands.push_back(ParseSum());
    return expression;
}

Expression ExpressionParser::ParseBetween(Expression left, bool isNegated) {
    m_tokens.Advance();
    Expression expression = Wrap(ExpressionKind::Between, std::move(left));
    expression.IsNegated = isNegated;
    expression.Operands.push_back(ParseSum());
    m_tokens.Expect(TokenKind::And, Number::SyntaxInExpression);
    expression.Operands.push_back(ParseSum());
    return expression;
}

Expression ExpressionParser::ParseIn(Expression left, bool isNegated) {
    m_tokens.Advance();
    Expression expression = Wrap(ExpressionKind::In, std::move(left));
    expression.IsNegated = isNegated;
    m_tokens.Expect(TokenKind::LeftParenthesis, Number::SyntaxInExpression);
    do {
        expression.Operands.push_back(ParseOr());
    } while (m_tokens.Skip(TokenKind::Comma));
    m_tokens.Expect(TokenKind::RightParenthesis, Number::SyntaxInExpression);
    return expression;
}

Expression ExpressionParser::ParseSum() {
    return ParseArithmetic(false);
}

Expression ExpressionParser::ParseProduct() {
    return ParseArithmetic(true);
}

Expression ExpressionParser::ParseArithmetic(bool isProduct) {
    const std::span<const OperatorToken> operators =
        isProduct ? std::span(Multiplications) : std::span(Additions);
    const auto parseOperand = isProduct ? &ExpressionParser::ParseSigned : &ExpressionParser::ParseProduct;
    Expression first = (this->*parseOperand)();
    if (FindOperator(operators, m_tokens.Kind()) == nullptr) {
        return first;
    }
    Expression chain;
    chain.Kind = ExpressionKind::Arithmetic;
    chain.Operands.push_back(std::move(first));
    while (const OperatorToken* found = FindOperator(operators, m_tokens.Kind())) {
        m_tokens.Advance();
        chain.Operators.push_back(found->Meaning);
        chain.Operands.push_back((this->*parseOperand)());
        CheckCount(chain.Operands.size(), MaxTerms);
    }
    if (std::any_of(chain.Operands.begin(), chain.Operands.end(), IsTextLiteral)) {
        RefuseSyntax(Number::SyntaxInExpression);
    }
    return chain;
}

Expression ExpressionParser::ParseSigned() {
    const bool isNegative = m_tokens.Kind() == TokenKind::Minus;
    if (!isNegative && m_tokens.Kind() != TokenKind::Plus) {
        return ParsePrimary();
    }
    const Level level(&m_depth);
    m_tokens.Advance();
    Expression operand = ParseSigned();
    if (IsTextLiteral(operand)) {
        RefuseSyntax(Number::SyntaxInExpression);
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

Expression ExpressionParser::ParsePrimary() {
    switch (m_tokens.Kind()) {
        case TokenKind::Number:
            return TakeValue(ReadNumber(m_tokens.Current().Text));
        case TokenKind::Text:
            return TakeValue(ReadText(m_tokens.Current()));
        case TokenKind::Date:
            return TakeValue(ReadDate(m_tokens.Current().Text, m_months));
        case TokenKind::True:
            return TakeValue(Literal(true));
        case TokenKind::False:
            return TakeValue(Literal(false));
        case TokenKind::Null:
            return TakeValue(Literal());
        case TokenKind::Identity: {
            Expression expression;
            expression.Kind = ExpressionKind::Identity;
            m_tokens.Advance();
            return expression;
        }
        case TokenKind::LeftParenthesis: {
            m_tokens.Advance();
            Expression inner = ParseOr();
            m_tokens.Expect(TokenKind::RightParenthesis, Number::SyntaxInExpression);
            return inner;
        }
        case TokenKind::Name:
        case TokenKind::BracketedName:
            return ParseNameOrCall();
        default:
            RefuseSyntax(Number::SyntaxInExpression);
    }
}

Expression ExpressionParser::TakeValue(std::optional<Literal> value) {
    if (!value) {
        RefuseSyntax(Number::SyntaxInExpression);
    }
    CheckCount(++m_values, MaxValues);
    Expression expression;
    expression.Value = std::move(*value);
    m_tokens.Advance();
    return expression;
}

Expression ExpressionParser::ParseNameOrCall() {
    const bool isBare = m_tokens.Kind() == TokenKind::Name;
    Expression expression;
    expression.Kind = ExpressionKind::Column;
    expression.Column.Column = m_tokens.TakeName(Number::SyntaxInExpression);
    if (isBare && m_tokens.Kind() == TokenKind::LeftParenthesis) {
        return ParseCall(expression.Column.Column);
    }
    if (m_tokens.Skip(TokenKind::Dot)) {
        expression.Column.Table = expression.Column.Column;
        expression.Column.Column = m_tokens.TakeName(Number::SyntaxInExpression);
    }
    return expression;
}

Expression ExpressionParser::ParseCall(QStringView word) {
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
    m_tokens.Advance();
    if (function->Called == Function::Count && m_tokens.Skip(TokenKind::Star)) {
        call.Operands.emplace_back().Kind = ExpressionKind::Star;
    } else {
        do {
            call.Operands.push_back(ParseOr());
            CheckCount(call.Operands.size(), MaxColumns);
        } while (m_tokens.Skip(TokenKind::Comma));
    }
    m_allowsAggregates = allowedBefore;
    m_tokens.Expect(TokenKind::RightParenthesis, Number::SyntaxInExpression);
    if (call.Operands.size() != static_cast<std::size_t>(function->Arguments)) {
        throw Failure(Number::SyntaxInExpression, QStringLiteral("Wrong number of arguments."));
    }
    return call;
}

}  // namespace engine::sql
