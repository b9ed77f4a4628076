#include "store/engine/sql/Lexer.h"

#include "store/engine/Error.h"

#include <array>

namespace engine::sql {

namespace {

struct Keyword {
    QStringView Word;
    TokenKind Kind;
};

constexpr std::array Keywords = {
    Keyword{u"and", TokenKind::And},
    Keyword{u"as", TokenKind::As},
    Keyword{u"asc", TokenKind::Asc},
    Keyword{u"between", TokenKind::Between},
    Keyword{u"by", TokenKind::By},
    Keyword{u"delete", TokenKind::Delete},
    Keyword{u"desc", TokenKind::Desc},
    Keyword{u"false", TokenKind::False},
    Keyword{u"from", TokenKind::From},
    Keyword{u"group", TokenKind::Group},
    Keyword{u"in", TokenKind::In},
    Keyword{u"insert", TokenKind::Insert},
    Keyword{u"into", TokenKind::Into},
    Keyword{u"is", TokenKind::Is},
    Keyword{u"like", TokenKind::Like},
    Keyword{u"not", TokenKind::Not},
    Keyword{u"null", TokenKind::Null},
    Keyword{u"or", TokenKind::Or},
    Keyword{u"order", TokenKind::Order},
    Keyword{u"select", TokenKind::Select},
    Keyword{u"set", TokenKind::Set},
    Keyword{u"top", TokenKind::Top},
    Keyword{u"true", TokenKind::True},
    Keyword{u"update", TokenKind::Update},
    Keyword{u"values", TokenKind::Values},
    Keyword{u"where", TokenKind::Where},
    Keyword{u"all", TokenKind::ReservedWord},
    Keyword{u"alter", TokenKind::ReservedWord},
    Keyword{u"create", TokenKind::ReservedWord},
    Keyword{u"distinct", TokenKind::ReservedWord},
    Keyword{u"drop", TokenKind::ReservedWord},
    Keyword{u"exists", TokenKind::ReservedWord},
    Keyword{u"having", TokenKind::ReservedWord},
    Keyword{u"inner", TokenKind::ReservedWord},
    Keyword{u"join", TokenKind::ReservedWord},
    Keyword{u"left", TokenKind::ReservedWord},
    Keyword{u"on", TokenKind::ReservedWord},
    Keyword{u"right", TokenKind::ReservedWord},
    Keyword{u"union", TokenKind::ReservedWord},
};

bool IsDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

bool IsBlank(char16_t unit) {
    return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n';
}

bool IsWordStart(char16_t unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit == u'_' ||
           (unit >= 0x80 && QChar(unit).isLetter());
}

bool IsWordPart(char16_t unit) {
    return IsWordStart(unit) || IsDigit(unit);
}

TokenKind KindOfWord(QStringView word) {
    constexpr qsizetype LongestKeyword = 8;
    if (word.size() > LongestKeyword || word.size() < 2) {
        return TokenKind::Name;
    }
    const char16_t first = word.at(0).unicode() | 0x20;
    for (const Keyword& keyword : Keywords) {
        if (keyword.Word.at(0).unicode() == first && keyword.Word.size() == word.size() &&
            keyword.Word.compare(word, Qt::CaseInsensitive) == 0) {
            return keyword.Kind;
        }
    }
    return TokenKind::Name;
}

[[noreturn]] void Refuse(const QString& what) {
    throw Failure(Number::SyntaxInExpression, what);
}

}  // namespace

Token Lexer::Next() {
    while (m_position < m_text.size() && IsBlank(At(m_position))) {
        ++m_position;
    }
    const qsizetype start = m_position;
    if (start == m_text.size()) {
        return Make(TokenKind::End, start, start);
    }
    const char16_t unit = At(start);
    if (IsWordStart(unit)) {
        return Word(start);
    }
    if (IsDigit(unit) || (unit == u'.' && IsDigit(At(start + 1)))) {
        return NumberAt(start);
    }
    switch (unit) {
        case u'\'':
        case u'"':
            return Quoted(start, unit);
        case u'#':
            return Enclosed(start, u'#', TokenKind::Date);
        case u'[':
            return Enclosed(start, u']', TokenKind::BracketedName);
        case u'@':
            return Variable(start);
        default:
            return Symbol(start);
    }
}

Token Lexer::Make(TokenKind kind, qsizetype start, qsizetype end) {
    m_position = end;
    return {kind, m_text.sliced(start, end - start), start, 0};
}

Token Lexer::Word(qsizetype start) {
    qsizetype end = start + 1;
    while (end < m_text.size() && IsWordPart(At(end))) {
        ++end;
    }
    return Make(KindOfWord(m_text.sliced(start, end - start)), start, end);
}

Token Lexer::NumberAt(qsizetype start) {
    qsizetype end = start;
    const auto skipDigits = [&] {
        while (IsDigit(At(end))) {
            ++end;
        }
    };
    skipDigits();
    if (At(end) == u'.') {
        ++end;
        skipDigits();
    }
    if ((At(end) | 0x20) == u'e') {
        const qsizetype sign = At(end + 1) == u'+' || At(end + 1) == u'-' ? 1 : 0;
        if (IsDigit(At(end + 1 + sign))) {
            end += 1 + sign;
            skipDigits();
        }
    }
    if (IsWordPart(At(end)) || At(end) == u'.') {
        Refuse(QStringLiteral("A number runs into a word."));
    }
    return Make(TokenKind::Number, start, end);
}

Token Lexer::Quoted(qsizetype start, char16_t quote) {
    qsizetype end = start + 1;
    while (true) {
        end = m_text.indexOf(QChar(quote), end);
        if (end < 0) {
            Refuse(QStringLiteral("A text has no closing quote."));
        }
        if (At(end + 1) != quote) {
            break;
        }
        end += 2;
    }
    Token token = Make(TokenKind::Text, start + 1, end);
    token.Position = start;
    token.Quote = quote;
    ++m_position;
    return token;
}

Token Lexer::Enclosed(qsizetype start, char16_t close, TokenKind kind) {
    const qsizetype end = m_text.indexOf(QChar(close), start + 1);
    if (end < 0) {
        Refuse(QStringLiteral("A name or date does not end."));
    }
    Token token = Make(kind, start + 1, end);
    token.Position = start;
    ++m_position;
    return token;
}

Token Lexer::Symbol(qsizetype start) {
    const char16_t next = At(start + 1);
    switch (At(start)) {
        case u'(':
            return Make(TokenKind::LeftParenthesis, start, start + 1);
        case u')':
            return Make(TokenKind::RightParenthesis, start, start + 1);
        case u',':
            return Make(TokenKind::Comma, start, start + 1);
        case u'.':
            return Make(TokenKind::Dot, start, start + 1);
        case u';':
            return Make(TokenKind::Semicolon, start, start + 1);
        case u'+':
            return Make(TokenKind::Plus, start, start + 1);
        case u'-':
            return Make(TokenKind::Minus, start, start + 1);
        case u'*':
            return Make(TokenKind::Star, start, start + 1);
        case u'/':
            return Make(TokenKind::Slash, start, start + 1);
        case u'=':
            return Make(TokenKind::Equal, start, start + 1);
        case u'<':
            if (next == u'>') {
                return Make(TokenKind::NotEqual, start, start + 2);
            }
            return next == u'=' ? Make(TokenKind::LessEqual, start, start + 2)
                                : Make(TokenKind::Less, start, start + 1);
        case u'>':
            return next == u'=' ? Make(TokenKind::GreaterEqual, start, start + 2)
                                : Make(TokenKind::Greater, start, start + 1);
        default:
            Refuse(QStringLiteral("A character that begins nothing."));
    }
}

Token Lexer::Variable(qsizetype start) {
    qsizetype end = start;
    while (At(end) == u'@') {
        ++end;
    }
    while (end < m_text.size() && IsWordPart(At(end))) {
        ++end;
    }
    if (m_text.sliced(start, end - start).compare(u"@@IDENTITY", Qt::CaseInsensitive) != 0) {
        Refuse(QStringLiteral("There is no variable of that name."));
    }
    return Make(TokenKind::Identity, start, end);
}

}  // namespace engine::sql
