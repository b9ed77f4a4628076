#include "store/engine/sql/Parser.h"

#include "store/engine/Error.h"
#include "support/Printing.h"

#include <gtest/gtest.h>

namespace {

namespace Number = engine::Number;
using engine::sql::DateLiteral;
using engine::sql::Delete;
using engine::sql::Expression;
using engine::sql::ExpressionKind;
using engine::sql::Function;
using engine::sql::Insert;
using engine::sql::Literal;
using engine::sql::MonthNames;
using engine::sql::Operator;
using engine::sql::Select;
using engine::sql::Statement;
using engine::sql::Update;

Statement Read(QStringView text) {
    return engine::sql::Parse(text, MonthNames(QLocale::c()));
}

/// The expression behind WHERE. `text` outlives it.
Expression Where(const QString& text) {
    return *std::get<Select>(Read(text)).Where;
}

int FailureOf(const QString& text) {
    try {
        Q_UNUSED(Read(text));
    } catch (const engine::Failure& failure) {
        EXPECT_EQ(failure.Number(), engine::GenericFailure);
        return failure.Item().SQLState.toInt();
    }
    return 0;
}

int ExpressionFailure(const char16_t* expression) {
    return FailureOf(QStringLiteral("SELECT a FROM t WHERE ") + QString::fromUtf16(expression));
}

// --- statements ---

TEST(Parser, ASelectHasItemsTableConditionGroupsAndOrder) {
    const auto select =
        std::get<Select>(Read(u"SELECT TOP 100 a, Sum(t.b) AS [The Sum] FROM t WHERE a > 1 GROUP BY a ORDER "
                              u"BY a, Max(b) DESC , a + 1 ASC;"));
    EXPECT_EQ(select.Top, 100);
    EXPECT_FALSE(select.IsAll);
    ASSERT_EQ(select.Items.size(), 2U);
    EXPECT_TRUE(select.Items[0].Alias.isEmpty());
    EXPECT_EQ(select.Items[1].Alias.toString(), QStringLiteral("The Sum"));
    EXPECT_EQ(select.Items[1].Value.Called, Function::Sum);
    EXPECT_EQ(select.From.toString(), QStringLiteral("t"));
    EXPECT_TRUE(select.Where);
    EXPECT_EQ(select.GroupBy.size(), 1U);
    ASSERT_EQ(select.OrderBy.size(), 3U);
    EXPECT_FALSE(select.OrderBy[0].IsDescending);
    EXPECT_TRUE(select.OrderBy[1].IsDescending);
    EXPECT_FALSE(select.OrderBy[2].IsDescending);
}

TEST(Parser, ASelectOfAllHasNoItemsAndOneWithoutATableNoTable) {
    EXPECT_TRUE(std::get<Select>(Read(u"select*from[My Table]")).IsAll);
    EXPECT_TRUE(std::get<Select>(Read(u"SELECT @@IDENTITY AS ID")).From.isEmpty());
}

TEST(Parser, AnInsertHasAsManyValuesAsColumns) {
    const auto insert = std::get<Insert>(Read(u"INSERT INTO t (a, [b c]) VALUES ('x',#1/Jan/2026#)"));
    EXPECT_EQ(insert.Table.toString(), QStringLiteral("t"));
    ASSERT_EQ(insert.Columns.size(), 2U);
    EXPECT_EQ(insert.Columns[1].toString(), QStringLiteral("b c"));
    EXPECT_EQ(insert.Values.size(), 2U);
    EXPECT_EQ(FailureOf(QStringLiteral("INSERT INTO t (a) VALUES (1, 2)")), Number::SyntaxInInsert);
    EXPECT_EQ(FailureOf(QStringLiteral("INSERT INTO t (a, b) VALUES (1)")), Number::SyntaxInInsert);
}

TEST(Parser, AnUpdateHasAssignments) {
    const auto update = std::get<Update>(Read(u"UPDATE t SET a = 'x',b=TRUE WHERE c IS NULL"));
    ASSERT_EQ(update.Assignments.size(), 2U);
    EXPECT_EQ(update.Assignments[1].Column.toString(), QStringLiteral("b"));
    EXPECT_TRUE(update.Where);
    EXPECT_FALSE(std::get<Update>(Read(u"UPDATE t SET a = 1")).Where);
}

TEST(Parser, ADeleteHasATableAndPerhapsACondition) {
    EXPECT_TRUE(std::get<Delete>(Read(u"DELETE FROM t WHERE a = 1")).Where);
    EXPECT_FALSE(std::get<Delete>(Read(u"DELETE FROM t;")).Where);
}

// --- expressions ---

TEST(Parser, LiteralsHaveTheirValues) {
    const auto value = [](const char16_t* text) {
        const QString statement = QStringLiteral("SELECT ") + QString::fromUtf16(text);
        return std::get<Select>(Read(statement)).Items.at(0).Value.Value;
    };
    EXPECT_EQ(value(u"17"), Literal(qint64{17}));
    EXPECT_EQ(value(u"-17"), Literal(qint64{-17}));
    EXPECT_EQ(value(u"- - 17"), Literal(qint64{17}));
    EXPECT_EQ(value(u"+2.5"), Literal(2.5));
    EXPECT_EQ(value(u"-.5e1"), Literal(-5.0));
    EXPECT_EQ(value(u"123456789012345678901"), Literal(123456789012345678901.0));
    EXPECT_EQ(value(u"'O''Neill'"), Literal(QStringLiteral("O'Neill")));
    EXPECT_EQ(value(u"\"say \"\"no\"\"\""), Literal(QStringLiteral("say \"no\"")));
    EXPECT_EQ(value(u"'\"\"'"), Literal(QStringLiteral("\"\"")));
    EXPECT_EQ(value(u"true"), Literal(true));
    EXPECT_EQ(value(u"FALSE"), Literal(false));
    EXPECT_EQ(value(u"Null"), Literal());
    EXPECT_EQ(value(u"#07/Mar/2026#"), Literal(DateLiteral{QDate(2026, 3, 7), QTime(0, 0)}));
    EXPECT_EQ(value(u"#7/march/2026 23:59#"), Literal(DateLiteral{QDate(2026, 3, 7), QTime(23, 59)}));
    EXPECT_EQ(value(u"# 07/MAR/2026  1:02:03 #"), Literal(DateLiteral{QDate(2026, 3, 7), QTime(1, 2, 3)}));
}

TEST(Parser, ADateThatDoesNotExistIsRefused) {
    for (const auto& date :
         {u"##", u"#30/Feb/2026#", u"#29/Feb/2025#", u"#01/Foo/2026#", u"#01/03/2026#", u"#2026-03-01#",
          u"#1/Mar/26#", u"#1/Mar/2026 24:00:00#", u"#1/Mar/2026 12#", u"#1/Mar/2026 1:2:3:4#",
          u"#1/Mar/2026 aa:bb#", u"#/Mar/2026#", u"#1//2026#", u"#14:30:15#", u"#001/Mar/2026#"}) {
        EXPECT_EQ(ExpressionFailure(date), Number::SyntaxInExpression)
            << QString::fromUtf16(date).toStdString();
    }
}

TEST(Parser, AndBindsTighterThanOrAndNotTighterThanAnd) {
    const QString text = QStringLiteral("SELECT a FROM t WHERE a = 1 OR NOT b = 2 AND c = 3 OR d");
    const Expression expression = Where(text);
    ASSERT_EQ(expression.Kind, ExpressionKind::Or);
    ASSERT_EQ(expression.Operands.size(), 3U);
    EXPECT_EQ(expression.Operands[0].Kind, ExpressionKind::Comparison);
    ASSERT_EQ(expression.Operands[1].Kind, ExpressionKind::And);
    EXPECT_EQ(expression.Operands[1].Operands[0].Kind, ExpressionKind::Not);
    EXPECT_EQ(expression.Operands[2].Kind, ExpressionKind::Column);
}

TEST(Parser, ProductsBindTighterThanSumsAndBothGoFromTheLeft) {
    const QString text = QStringLiteral("SELECT a FROM t WHERE a - b * c / d + e < 1");
    const Expression sum = Where(text).Operands[0];
    ASSERT_EQ(sum.Kind, ExpressionKind::Arithmetic);
    EXPECT_EQ(sum.Operators, std::vector({Operator::Subtract, Operator::Add}));
    EXPECT_EQ(sum.Operands[1].Operators, std::vector({Operator::Multiply, Operator::Divide}));
}

TEST(Parser, ComparisonsHaveTheirKinds) {
    const auto kind = [](const char16_t* expression) {
        const QString text = QStringLiteral("SELECT a FROM t WHERE ") + QString::fromUtf16(expression);
        const Expression where = Where(text);
        return std::pair(where.Kind, where.IsNegated);
    };
    EXPECT_EQ(kind(u"a LIKE 'x%'"), std::pair(ExpressionKind::Like, false));
    EXPECT_EQ(kind(u"a NOT LIKE 'x%'"), std::pair(ExpressionKind::Like, true));
    EXPECT_EQ(kind(u"a BETWEEN 1 AND 2"), std::pair(ExpressionKind::Between, false));
    EXPECT_EQ(kind(u"a NOT BETWEEN 1 AND 2"), std::pair(ExpressionKind::Between, true));
    EXPECT_EQ(kind(u"a BETWEEN 1 AND 2 AND b"), std::pair(ExpressionKind::And, false));
    EXPECT_EQ(kind(u"a IS NULL"), std::pair(ExpressionKind::IsNull, false));
    EXPECT_EQ(kind(u"a IS NOT NULL"), std::pair(ExpressionKind::IsNull, true));
    EXPECT_EQ(kind(u"a IN (1)"), std::pair(ExpressionKind::In, false));
    EXPECT_EQ(kind(u"a NOT IN (1, 'b', c)"), std::pair(ExpressionKind::In, true));
    EXPECT_EQ(kind(u"((a = 1))"), std::pair(ExpressionKind::Comparison, false));
}

TEST(Parser, ANameBeforeAParenthesisIsAFunctionUnlessItIsBracketed) {
    const QString text = QStringLiteral(
        "SELECT Count(*) AS [Count], LEN (a), IIF(a, b, 'c'), [Count] FROM t GROUP BY a, b, [Count]");
    const auto items = std::get<Select>(Read(text)).Items;
    EXPECT_EQ(items[0].Value.Operands[0].Kind, ExpressionKind::Star);
    EXPECT_EQ(items[1].Value.Called, Function::Len);
    EXPECT_EQ(items[2].Value.Operands.size(), 3U);
    EXPECT_EQ(items[3].Value.Kind, ExpressionKind::Column);
    EXPECT_EQ(FailureOf(QStringLiteral("SELECT [Count](a) FROM t")), Number::SyntaxInExpression);
}

TEST(Parser, TwoMinusSignsAreNoComment) {
    const QString text = QStringLiteral("SELECT a FROM t WHERE a -- b");
    const Expression expression = Where(text);
    EXPECT_EQ(expression.Operators, std::vector({Operator::Subtract}));
    EXPECT_EQ(expression.Operands.at(1).Kind, ExpressionKind::Negate);
}

TEST(Parser, NamesMayBeQualified) {
    const QString text = QStringLiteral("SELECT Message.msgID, [My Table].[My Column] FROM Message");
    const auto items = std::get<Select>(Read(text)).Items;
    EXPECT_EQ(items[0].Value.Column.Table.toString(), QStringLiteral("Message"));
    EXPECT_EQ(items[1].Value.Column.Column.toString(), QStringLiteral("My Column"));
}

// --- what is refused ---

TEST(Parser, TheShapeOfAStatementHasItsOwnNumber) {
    const auto expect = [](int number, std::initializer_list<const char16_t*> texts) {
        for (const char16_t* text : texts) {
            EXPECT_EQ(FailureOf(QString::fromUtf16(text)), number) << QString::fromUtf16(text).toStdString();
        }
    };
    expect(Number::SyntaxInSelect, {u"SELECT",
                                    u"SELECT FROM t",
                                    u"SELECT a, FROM t",
                                    u"SELECT *",
                                    u"SELECT a FROM",
                                    u"SELECT a FROM t ORDER a",
                                    u"SELECT a FROM t ORDER BY",
                                    u"SELECT a FROM t GROUP BY a, ORDER BY a",
                                    u"SELECT TOP FROM t",
                                    u"SELECT TOP 1.5 a FROM t",
                                    u"SELECT TOP -1 a FROM t",
                                    u"SELECT a AS FROM t",
                                    u"SELECT *, a FROM t",
                                    u"SELECT DISTINCT a FROM t",
                                    u"SELECT a FROM t, u",
                                    u"SELECT a FROM t JOIN u",
                                    u"SELECT a FROM t AS u",
                                    u"SELECT a FROM (SELECT b FROM u)",
                                    u"SELECT a FROM t UNION SELECT b FROM u",
                                    u"SELECT a FROM t HAVING a",
                                    u"SELECT a FROM t ORDER BY a WHERE b",
                                    u"SELECT a FROM t ORDER BY 1",
                                    u"SELECT a FROM t GROUP BY 'x'",
                                    u"SELECT a INTO b FROM t",
                                    u"SELECT a FROM t LIMIT 1",
                                    u"SELECT a FROM t.u",
                                    u"SELECT a FROM []",
                                    u"SELECT a FROM [ ]",
                                    u"SELECT a FROM select"});
    expect(
        Number::SyntaxInInsert,
        {u"INSERT", u"INSERT t (a) VALUES (1)", u"INSERT INTO t VALUES (1)", u"INSERT INTO t (a) VALUES",
         u"INSERT INTO t (a) VALUES ()", u"INSERT INTO t () VALUES ()", u"INSERT INTO t (a) VALUES (1), (2)",
         u"INSERT INTO t (a) SELECT b FROM u", u"INSERT INTO t (a,) VALUES (1)",
         u"INSERT INTO t (a) VALUES (1", u"INSERT INTO t (a) VALUES (,)", u"INSERT INTO t (a.b) VALUES (1)"});
    expect(Number::SyntaxInUpdate,
           {u"UPDATE", u"UPDATE t", u"UPDATE t SET", u"UPDATE t SET a", u"UPDATE t SET a =",
            u"UPDATE t SET a = ,", u"UPDATE t SET a = 1,", u"UPDATE t SET t.a = 1", u"UPDATE t, u SET a = 1",
            u"UPDATE t SET a = 1 ORDER BY a"});
    expect(Number::SyntaxInDelete, {u"DELETE", u"DELETE FROM", u"DELETE t", u"DELETE * FROM t",
                                    u"DELETE FROM t, u", u"DELETE FROM t ORDER BY a"});
    expect(Number::InvalidStatement,
           {u"", u" \r\n", u";", u"a", u"DROP TABLE t", u"CREATE TABLE t (a INTEGER)", u"(SELECT 1)",
            u"EXPLAIN SELECT 1", u"BEGIN", u"COMMIT", u"PRAGMA user_version",
            u"WITH a AS (SELECT 1) SELECT 1", u"REPLACE INTO t (a) VALUES (1)"});
}

TEST(Parser, WhatIsWrongInAnExpressionIs3075) {
    for (const auto& expression : {u"",
                                   u" ORDER BY a",
                                   u"a =",
                                   u"= 1",
                                   u"a = = 1",
                                   u"a 1",
                                   u"a = 1 b",
                                   u"a = 1 'x'",
                                   u"(a = 1",
                                   u"a = 1 AND",
                                   u"OR a",
                                   u"NOT",
                                   u"a LIKE",
                                   u"a NOT 1",
                                   u"a BETWEEN 1",
                                   u"a BETWEEN 1 OR 2",
                                   u"a IN 1",
                                   u"a IN ()",
                                   u"a IN (1,)",
                                   u"a IS 1",
                                   u"a IS NOT",
                                   u"a.b.c = 1",
                                   u"t. = 1",
                                   u"a = b = c",
                                   u"a < b < c",
                                   u"Foo(a)",
                                   u"LEN()",
                                   u"LEN(a, b)",
                                   u"LEN(*)",
                                   u"IIF(a, b)",
                                   u"Sum(a) > 1",
                                   u"a + 'x' = 1",
                                   u"-'x' = a",
                                   u"*",
                                   u"a = $1",
                                   u"a == 1",
                                   u"a != 1",
                                   u"a || b",
                                   u"EXISTS (SELECT 1)",
                                   u"CASE WHEN a THEN b END",
                                   u"a COLLATE BINARY = 1",
                                   u"? = 1",
                                   u"a = 1e999",
                                   u"a /* comment */",
                                   u"a = 'x",
                                   u"[\u0001] = 1",
                                   u"(a = 1))"}) {
        EXPECT_EQ(ExpressionFailure(expression), Number::SyntaxInExpression)
            << QString::fromUtf16(expression).toStdString();
    }
}

TEST(Parser, AggregatesStandInTheListAndInTheOrderAndNotInsideOneAnother) {
    EXPECT_EQ(FailureOf(QStringLiteral("SELECT Sum(a)/100 FROM t ORDER BY Sum(a) DESC, Count(*)")), 0);
    EXPECT_EQ(FailureOf(QStringLiteral("SELECT Sum(Sum(a)) FROM t")), Number::SyntaxInExpression);
    EXPECT_EQ(FailureOf(QStringLiteral("SELECT Max(IIF(a, Min(b), c)) FROM t")), Number::SyntaxInExpression);
    EXPECT_EQ(FailureOf(QStringLiteral("SELECT a FROM t GROUP BY Sum(a)")), Number::SyntaxInExpression);
    EXPECT_EQ(FailureOf(QStringLiteral("UPDATE t SET a = Max(b)")), Number::SyntaxInExpression);
    EXPECT_EQ(FailureOf(QStringLiteral("SELECT Sum(*) FROM t")), Number::SyntaxInExpression);
}

TEST(Parser, AColumnBesideASumIsGroupedBy) {
    for (const auto& text : {u"SELECT a, Sum(b) FROM t", u"SELECT * FROM t GROUP BY a",
                             u"SELECT b FROM t GROUP BY a", u"SELECT a, LEN(b) FROM t GROUP BY a",
                             u"SELECT a FROM t ORDER BY Sum(b)", u"SELECT a FROM t GROUP BY a ORDER BY b",
                             u"SELECT a + b FROM t GROUP BY a", u"SELECT LEN(a) FROM t GROUP BY LEN(b)"}) {
        EXPECT_EQ(FailureOf(QString::fromUtf16(text)), Number::NotPartOfAggregate)
            << QString::fromUtf16(text).toStdString();
    }
    for (const auto& text :
         {u"SELECT Sum(a + b), 5, @@IDENTITY FROM t",
          u"SELECT t.A, Sum(b) AS s FROM t GROUP BY a ORDER BY s, a, Max(c)",
          u"SELECT LEN(a) + 1 FROM t GROUP BY len([A])", u"SELECT a + 1 FROM t GROUP BY a",
          u"SELECT IIF(a > 1, 'x', Sum(b)) FROM t GROUP BY a", u"SELECT Count(*) FROM t"}) {
        EXPECT_EQ(FailureOf(QString::fromUtf16(text)), 0) << QString::fromUtf16(text).toStdString();
    }
}

TEST(Parser, OneStatementACall) {
    EXPECT_EQ(FailureOf(QStringLiteral("DELETE FROM t;")), 0);
    EXPECT_EQ(FailureOf(QStringLiteral("DELETE FROM t ; \r\n")), 0);
    EXPECT_EQ(FailureOf(QStringLiteral("DELETE FROM t; DELETE FROM u")), Number::CharactersAfterEnd);
    EXPECT_EQ(FailureOf(QStringLiteral("DELETE FROM t;;")), Number::CharactersAfterEnd);
    EXPECT_EQ(FailureOf(QStringLiteral("SELECT 1; x")), Number::CharactersAfterEnd);
}

TEST(Parser, DepthIsLimitedAndLengthIsNot) {
    const auto nested = [](int depth) {
        return QStringLiteral("SELECT a FROM t WHERE ") + QString(depth, u'(') + u'a' + QString(depth, u')');
    };
    EXPECT_EQ(FailureOf(nested(50)), 0);
    EXPECT_EQ(FailureOf(nested(61)), Number::QueryTooComplex);
    EXPECT_EQ(FailureOf(nested(1'000'000)), Number::QueryTooComplex);
    EXPECT_EQ(
        FailureOf(QStringLiteral("SELECT a FROM t WHERE ") + QStringLiteral("NOT ").repeated(100000) + u'a'),
        Number::QueryTooComplex);
    EXPECT_EQ(FailureOf(QStringLiteral("SELECT ") + QStringLiteral("- ").repeated(100000) + u'a'),
              Number::QueryTooComplex);
    EXPECT_EQ(FailureOf(QStringLiteral("SELECT ") + QStringLiteral("LEN(").repeated(100000)),
              Number::QueryTooComplex);
    EXPECT_EQ(FailureOf(QStringLiteral("SELECT a FROM t WHERE a = 0") +
                        QStringLiteral(" OR a = 1").repeated(20000)),
              0);
}

TEST(Parser, CountsAreLimited) {
    EXPECT_EQ(FailureOf(QStringLiteral("SELECT 1") + QStringLiteral(",1").repeated(255)),
              Number::QueryTooComplex);
    EXPECT_EQ(FailureOf(QStringLiteral("SELECT 1") + QStringLiteral("+1").repeated(250)),
              Number::QueryTooComplex);
    EXPECT_EQ(FailureOf(QStringLiteral("SELECT a FROM t WHERE a IN (1") +
                        QStringLiteral(",1").repeated(30000) + u')'),
              Number::QueryTooComplex);
    EXPECT_EQ(FailureOf(QStringLiteral("SELECT 1") + QStringLiteral(",1").repeated(254)), 0);
}

}  // namespace
