#pragma once

#include "store/engine/sql/MonthNames.h"
#include "store/engine/sql/TokenStream.h"
#include "store/engine/sql/Tree.h"

#include <optional>

namespace engine::sql {

/// Reads expressions from a stream of tokens, from the loosest operator to the tightest: OR; AND; NOT; one
/// comparison, LIKE, BETWEEN, IN or IS NULL; + and -; * and /; signs; values, names, calls and parentheses.
class ExpressionParser {
public:
    /// Both must outlive the parser.
    ExpressionParser(TokenStream& tokens, const MonthNames& months) : m_tokens(tokens), m_months(months) {}

    /// Reads one expression. Throws Failure with `numberIfMissing` where none begins, else as Parse does.
    [[nodiscard]] Expression Parse(int numberIfMissing);
    /// Whether Sum, Count and the like may stand in the expressions to come; not inside one another in any
    /// case.
    void AllowAggregates(bool isAllowed) { m_allowsAggregates = isAllowed; }

private:
    Expression ParseOr();
    Expression ParseAnd();
    Expression ParseLogic(TokenKind word, ExpressionKind kind,
                          Expression (ExpressionParser::*parseOperand)());
    Expression ParseNot();
    Expression ParseComparison();
    Expression ParseLike(Expression left, bool isNegated);
    Expression ParseBetween(Expression left, bool isNegated);
    Expression ParseIn(Expression left, bool isNegated);
    Expression ParseSum();
    Expression ParseProduct();
    Expression ParseArithmetic(bool isProduct);
    Expression ParseSigned();
    Expression ParsePrimary();
    Expression TakeValue(std::optional<Literal> value);
    Expression ParseNameOrCall();
    Expression ParseCall(QStringView word);

    TokenStream& m_tokens;
    const MonthNames& m_months;
    int m_depth = 0;
    std::size_t m_values = 0;
    bool m_allowsAggregates = false;
};

}  // namespace engine::sql
