#pragma once

#include "store/engine/sql/Lexer.h"

#include <cstddef>

namespace engine::sql {

/// Throws the Failure for a syntax error with one of the numbers of Number.
[[noreturn]] void RefuseSyntax(int number);
/// Throws Failure QueryTooComplex if there are more elements than allowed.
void CheckCount(std::size_t count, int limit);
/// Whether a token of this kind can be the first of an expression.
[[nodiscard]] bool CanBeginExpression(TokenKind kind);

/// The tokens of a statement with the current one in view, as the two parsers share them.
class TokenStream {
public:
    explicit TokenStream(QStringView text) : m_lexer(text), m_current(m_lexer.Next()) {}

    [[nodiscard]] const Token& Current() const { return m_current; }
    [[nodiscard]] TokenKind Kind() const { return m_current.Kind; }
    void Advance() { m_current = m_lexer.Next(); }
    /// Goes on if the current token is of that kind.
    bool Skip(TokenKind kind);
    /// Goes on, or throws a syntax error with that number.
    void Expect(TokenKind kind, int number);
    /// Takes a name, bare or in brackets. No control characters and no surrogates stand in names.
    [[nodiscard]] QStringView TakeName(int number);

private:
    Lexer m_lexer;
    Token m_current;
};

}  // namespace engine::sql
