#include "store/engine/sql/Lexer.h"

#include "store/engine/Error.h"
#include "support/Printing.h"

#include <QList>

#include <gtest/gtest.h>

namespace {

using engine::sql::Lexer;
using engine::sql::Token;
using engine::sql::TokenKind;

QList<Token> Tokens(QStringView text) {
    Lexer lexer(text);
    QList<Token> tokens;
    for (Token token = lexer.Next(); token.Kind != TokenKind::End; token = lexer.Next()) {
        tokens.append(token);
    }
    return tokens;
}

Token Only(QStringView text) {
    const QList<Token> tokens = Tokens(text);
    EXPECT_EQ(tokens.size(), 1) << text.toString().toStdString();
    return tokens.value(0);
}

QString FailureOf(QStringView text) {
    try {
        Q_UNUSED(Tokens(text));
    } catch (const engine::Failure& failure) {
        return failure.Item().SQLState;
    }
    return {};
}

TEST(Lexer, WordsAreReadWithoutRegardToCase) {
    for (const auto& word : {u"SELECT", u"select", u"SeLeCt"}) {
        EXPECT_EQ(Only(word).Kind, TokenKind::Select);
    }
    EXPECT_EQ(Only(u"by").Kind, TokenKind::By);
    EXPECT_EQ(Only(u"BETWEEN").Kind, TokenKind::Between);
}

TEST(Lexer, AWordThatOnlyBeginsLikeAKeywordIsAName) {
    for (const auto& word : {u"Selected", u"Count", u"a", u"_from", u"msgID", u"größe", u"Order1"}) {
        const Token token = Only(word);
        EXPECT_EQ(token.Kind, TokenKind::Name);
        EXPECT_EQ(token.Text.toString(), QString::fromUtf16(word));
    }
}

TEST(Lexer, ABracketedNameIsANameWhateverItHolds) {
    const Token token = Only(u"[ORDER by 'x' #]");
    EXPECT_EQ(token.Kind, TokenKind::BracketedName);
    EXPECT_EQ(token.Text.toString(), QStringLiteral("ORDER by 'x' #"));
}

TEST(Lexer, TextsEndAtTheirOwnQuoteAndDoubledQuotesAreInside) {
    EXPECT_EQ(Only(u"'O''Neill \" [x] #'").Text.toString(), QStringLiteral("O''Neill \" [x] #"));
    EXPECT_EQ(Only(u"\"it's\"").Text.toString(), QStringLiteral("it's"));
    EXPECT_EQ(Only(u"''").Text.size(), 0);
    EXPECT_EQ(Only(u"''''").Text.toString(), QStringLiteral("''"));
    EXPECT_EQ(Only(u"'x'").Quote, u'\'');
    EXPECT_EQ(Only(u"\"x\"").Quote, u'"');
    EXPECT_EQ(Tokens(u"'a' 'b'").size(), 2);
}

TEST(Lexer, NulAndLoneSurrogatesStandInTexts) {
    const char16_t units[] = {u'\'', u'\0', 0xD800, u'x', 0xDC00, u'\''};
    EXPECT_EQ(Only(QStringView(units, 6)).Text.size(), 4);
}

TEST(Lexer, NumbersAreWholeOrWithAPointOrAnExponent) {
    for (const auto& number : {u"0", u"17", u"3.14", u".5", u"5.", u"1e9", u"1E-9", u"1.5e+3"}) {
        const Token token = Only(number);
        EXPECT_EQ(token.Kind, TokenKind::Number);
        EXPECT_EQ(token.Text.toString(), QString::fromUtf16(number));
    }
}

TEST(Lexer, ANumberDoesNotRunIntoAWord) {
    for (const auto& text : {u"12abc", u"1e", u"1.2.3", u"7_", u"1é"}) {
        EXPECT_EQ(FailureOf(text), QStringLiteral("3075")) << QString::fromUtf16(text).toStdString();
    }
}

TEST(Lexer, SymbolsAreRead) {
    const QList<Token> tokens = Tokens(u"( ) , . ; + - * / = <> < <= > >=");
    const QList<TokenKind> kinds = {TokenKind::LeftParenthesis, TokenKind::RightParenthesis,
                                    TokenKind::Comma,           TokenKind::Dot,
                                    TokenKind::Semicolon,       TokenKind::Plus,
                                    TokenKind::Minus,           TokenKind::Star,
                                    TokenKind::Slash,           TokenKind::Equal,
                                    TokenKind::NotEqual,        TokenKind::Less,
                                    TokenKind::LessEqual,       TokenKind::Greater,
                                    TokenKind::GreaterEqual};
    ASSERT_EQ(tokens.size(), kinds.size());
    for (qsizetype i = 0; i < kinds.size(); ++i) {
        EXPECT_EQ(tokens[i].Kind, kinds[i]) << i;
    }
}

TEST(Lexer, DatesStandBetweenNumberSigns) {
    const Token token = Only(u"#07/Mar/2026 14:30:15#");
    EXPECT_EQ(token.Kind, TokenKind::Date);
    EXPECT_EQ(token.Text.toString(), QStringLiteral("07/Mar/2026 14:30:15"));
}

TEST(Lexer, TheIdentityIsTheOnlyVariable) {
    EXPECT_EQ(Only(u"@@Identity").Kind, TokenKind::Identity);
    for (const auto& text : {u"@@VERSION", u"@x", u"@@", u"@@IDENTITY2", u"@@@IDENTITY"}) {
        EXPECT_EQ(FailureOf(text), QStringLiteral("3075")) << QString::fromUtf16(text).toStdString();
    }
}

TEST(Lexer, WhatBeginsNothingOrDoesNotEndIsRefused) {
    for (const auto& text : {u"'open", u"'open''", u"\"open'", u"[open", u"#open", u"!", u"&", u"?", u":x",
                             u"$1", u"\\", u"`a`", u"{", u"|", u"~", u"%", u"^", u"\u00A0", u"\u0001"}) {
        EXPECT_EQ(FailureOf(text), QStringLiteral("3075")) << QString::fromUtf16(text).toStdString();
    }
    EXPECT_EQ(FailureOf(QStringView(u"\0", 1)), QStringLiteral("3075"));
}

TEST(Lexer, ThereAreNoComments) {
    EXPECT_EQ(Tokens(u"a--b").size(), 4);
    EXPECT_EQ(Tokens(u"a/*b*/").size(), 6);
}

TEST(Lexer, PositionsPointIntoTheStatement) {
    const QList<Token> tokens = Tokens(u"a  'b' [c]\r\n\t#d#");
    ASSERT_EQ(tokens.size(), 4);
    EXPECT_EQ(tokens[0].Position, 0);
    EXPECT_EQ(tokens[1].Position, 3);
    EXPECT_EQ(tokens[2].Position, 7);
    EXPECT_EQ(tokens[3].Position, 13);
}

}  // namespace
