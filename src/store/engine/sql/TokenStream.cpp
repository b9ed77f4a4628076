#include "store/engine/sql/TokenStream.h"

#include "store/engine/Error.h"

#include <algorithm>

namespace engine::sql {

void RefuseSyntax(int number) {
    throw Failure(number, number == Number::SyntaxInExpression
                              ? QStringLiteral("Syntax error in query expression.")
                              : QStringLiteral("Syntax error in statement."));
}

void CheckCount(std::size_t count, int limit) {
    if (count > static_cast<std::size_t>(limit)) {
        throw Failure(Number::QueryTooComplex, QStringLiteral("Too many fields, terms or values."));
    }
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

bool TokenStream::Skip(TokenKind kind) {
    if (m_current.Kind != kind) {
        return false;
    }
    Advance();
    return true;
}

void TokenStream::Expect(TokenKind kind, int number) {
    if (!Skip(kind)) {
        RefuseSyntax(number);
    }
}

QStringView TokenStream::TakeName(int number) {
    if (m_current.Kind != TokenKind::Name && m_current.Kind != TokenKind::BracketedName) {
        RefuseSyntax(number);
    }
    const QStringView name = m_current.Text;
    const bool isOdd = std::any_of(name.begin(), name.end(), [](QChar unit) {
        return unit.unicode() < u' ' || unit.unicode() == 0x7F || unit.isSurrogate();
    });
    if (name.trimmed().isEmpty() || isOdd) {
        RefuseSyntax(number);
    }
    Advance();
    return name;
}

}  // namespace engine::sql
