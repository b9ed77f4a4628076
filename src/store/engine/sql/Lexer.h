#pragma once

#include <QString>
#include <QStringView>

namespace engine::sql {

/// What a piece of a statement is. Words of the dialect are read without regard to case.
enum class TokenKind {
    End,
    Name,           // a bare word that is no keyword
    BracketedName,  // [any name], without its brackets
    Number,
    Text,      // between its quotes, doubled quotes still doubled
    Date,      // between its # signs
    Identity,  // @@IDENTITY
    LeftParenthesis,
    RightParenthesis,
    Comma,
    Dot,
    Semicolon,
    Plus,
    Minus,
    Star,
    Slash,
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    And,
    As,
    Asc,
    Between,
    By,
    Delete,
    Desc,
    False,
    From,
    Group,
    In,
    Insert,
    Into,
    Is,
    Like,
    Not,
    Null,
    Or,
    Order,
    Select,
    Set,
    Top,
    True,
    Update,
    Values,
    Where,
    /// A word that means something in SQL but not in this dialect: it may not stand as a bare name.
    ReservedWord
};

/// One piece of a statement: views into it, nothing copied.
struct Token {
    TokenKind Kind = TokenKind::End;
    /// A part of the statement; what it leaves out of the source stands with the kinds.
    QStringView Text;
    /// Index of the first character in the statement, the opening quote or bracket included.
    qsizetype Position = 0;
    /// Of a text: the quote that it stands in, ' or ".
    char16_t Quote = 0;
};

/// Cuts a statement into tokens, one at a time. Blanks, tabs and line breaks separate; there are no comments.
/// Throws Failure SyntaxInExpression for a character that begins nothing, and for a text, date or name that
/// does not end.
class Lexer {
public:
    /// `statement` must outlive the lexer and every token.
    explicit Lexer(QStringView statement) : m_text(statement) {}
    /// The next token; behind the last one End, however often it is asked.
    Token Next();

private:
    [[nodiscard]] Token Make(TokenKind kind, qsizetype start, qsizetype end);
    [[nodiscard]] Token Word(qsizetype start);
    [[nodiscard]] Token NumberAt(qsizetype start);
    [[nodiscard]] Token Quoted(qsizetype start, char16_t quote);
    [[nodiscard]] Token Enclosed(qsizetype start, char16_t close, TokenKind kind);
    [[nodiscard]] Token Symbol(qsizetype start);
    [[nodiscard]] Token Variable(qsizetype start);
    [[nodiscard]] char16_t At(qsizetype index) const {
        return index < m_text.size() ? m_text.at(index).unicode() : u'\0';
    }

    QStringView m_text;
    qsizetype m_position = 0;
};

}  // namespace engine::sql
