#include "store/engine/sql/Writer.h"

#include "store/engine/Error.h"
#include "store/engine/sql/Parser.h"
#include "support/Printing.h"

#include <gtest/gtest.h>

namespace {

namespace sql = engine::sql;
using sql::Literal;

/// A dialect that shows what was asked of it.
class ShowingDialect final : public sql::Dialect {
public:
    void AppendName(QByteArray& out, QStringView name) const override { out += '<' + name.toUtf8() + '>'; }
    void AppendParameter(QByteArray& out, int number) const override {
        out += '$' + QByteArray::number(number);
    }
    void CheckTable(QStringView name) const override {
        if (name == u"hidden") {
            throw engine::Failure(engine::Number::NoSuchTable, QStringLiteral("hidden"));
        }
    }
    void CheckColumn(QStringView name) const override {
        if (name == u"secret") {
            throw engine::Failure(engine::Number::UnknownColumn, QStringLiteral("secret"));
        }
    }
    [[nodiscard]] QByteArrayView TextComparison() const override { return "~"; }
    [[nodiscard]] QByteArrayView Like() const override { return "MATCHES"; }
    [[nodiscard]] QByteArrayView FunctionName(sql::Function function) const override {
        return function == sql::Function::Iif ? "choose" : "call";
    }
    [[nodiscard]] QByteArrayView Identity() const override { return "identity()"; }
    [[nodiscard]] QByteArrayView Division() const override { return "DIVIDED BY"; }
    [[nodiscard]] int MaxNesting() const override { return 40; }
};

sql::Written WriteOf(const QString& text, QByteArrayView extraColumn = {}) {
    return sql::Write(sql::Parse(text, sql::MonthNames(QLocale::c())), ShowingDialect(), extraColumn);
}

std::string Sql(const char16_t* text) {
    return WriteOf(QString::fromUtf16(text)).Sql.toStdString();
}

std::string Where(const char16_t* expression) {
    const QByteArray sql =
        WriteOf(QStringLiteral("SELECT a FROM t WHERE ") + QString::fromUtf16(expression)).Sql;
    return sql.mid(sql.indexOf("WHERE ") + 6).toStdString();
}

int FailureOf(const QString& text) {
    try {
        Q_UNUSED(WriteOf(text));
    } catch (const engine::Failure& failure) {
        return failure.Item().SQLState.toInt();
    }
    return 0;
}

TEST(Writer, EveryValueIsAParameterInItsOrder) {
    const sql::Written written = WriteOf(QStringLiteral(
        "INSERT INTO t (a, b, c, d, e, f) VALUES ('O''Neill', -5, 2.5, TRUE, NULL, #07/Mar/2026 1:2:3#)"));
    EXPECT_EQ(written.Sql.toStdString(),
              "INSERT INTO <t> (<a>, <b>, <c>, <d>, <e>, <f>) VALUES ($1, $2, $3, $4, $5, $6)");
    EXPECT_EQ(written.Values,
              (std::vector<Literal>{QStringLiteral("O'Neill"), qint64{-5}, 2.5, true, Literal(),
                                    sql::DateLiteral{QDate(2026, 3, 7), QTime(1, 2, 3)}}));
}

TEST(Writer, StatementsOfOneShapeAreOneText) {
    EXPECT_EQ(Sql(u"select * from T where a = 1 or a=2;"),
              Sql(u"SELECT  *  FROM T WHERE (a = 77) OR [a] = 0"));
}

TEST(Writer, ASelectIsWrittenInItsOrderAndTopGoesLast) {
    EXPECT_EQ(
        Sql(u"SELECT TOP 9 a, Sum(b) AS [Count] FROM t WHERE a = 'x' GROUP BY a ORDER BY Sum(b) DESC , a"),
        "SELECT <a> AS <a>, call(<b>) AS <Count> FROM <t> WHERE (<a>~ = $1) GROUP BY <a> "
        "ORDER BY call(<b>) DESC, <a> LIMIT $2");
    EXPECT_EQ(Sql(u"SELECT * FROM t"), "SELECT * FROM <t>");
    EXPECT_EQ(Sql(u"SELECT @@IDENTITY AS ID"), "SELECT identity() AS <ID>");
    EXPECT_EQ(WriteOf(QStringLiteral("SELECT * FROM t"), "extra").Sql.toStdString(),
              "SELECT *, extra FROM <t>");
}

TEST(Writer, ColumnsOfTextsAreGroupedAndOrderedAsTextsAreCompared) {
    const QString text = QStringLiteral(
        "SELECT t.a, b, Sum(c) AS s FROM t GROUP BY t.a, b ORDER BY Sum(c) DESC, t.A DESC, b, LEN(a)");
    const auto written = sql::Write(sql::Parse(text, sql::MonthNames(QLocale::c())), ShowingDialect(), {},
                                    {QStringLiteral("A"), QStringLiteral("c")});
    EXPECT_EQ(written.Sql.mid(written.Sql.indexOf("GROUP")).toStdString(),
              "GROUP BY <t>.<a>~, <b> ORDER BY call(<c>) DESC, <t>.<A>~ DESC, <b>, call(<a>)");
}

TEST(Writer, UpdatesAndDeletesAreWritten) {
    EXPECT_EQ(Sql(u"UPDATE t SET a = 'x',b=TRUE WHERE c = 5"),
              "UPDATE <t> SET <a> = $1, <b> = $2 WHERE (<c> = $3)");
    EXPECT_EQ(Sql(u"DELETE FROM t"), "DELETE FROM <t>");
}

TEST(Writer, AColumnKeepsItsNameWhenItIsQualified) {
    EXPECT_EQ(Sql(u"SELECT t.a FROM t"), "SELECT <t>.<a> AS <a> FROM <t>");
}

TEST(Writer, ComparisonsWithATextHaveNoRegardToCaseAndOthersAreLeftAlone) {
    EXPECT_EQ(Where(u"a = 'x'"), "(<a>~ = $1)");
    EXPECT_EQ(Where(u"'x' <> a"), "($1~ <> <a>)");
    EXPECT_EQ(Where(u"a IN (b, 'x')"), "(<a>~ IN (<b>, $1))");
    EXPECT_EQ(Where(u"a NOT BETWEEN 'x' AND 'y'"), "(<a>~ NOT BETWEEN $1 AND $2)");
    EXPECT_EQ(Where(u"a >= 5"), "(<a> >= $1)");
    EXPECT_EQ(Where(u"a = #1/Jan/2026#"), "(<a> = $1)");
    EXPECT_EQ(Where(u"a = b"), "(<a> = <b>)");
    EXPECT_EQ(Where(u"a LIKE 'x%'"), "(<a> MATCHES $1)");
    EXPECT_EQ(Where(u"a NOT LIKE 'x%'"), "(<a> NOT MATCHES $1)");
    EXPECT_EQ(Where(u"a IS NOT NULL"), "(<a> IS NOT NULL)");
}

TEST(Writer, DivisionIsTheDialectsOwn) {
    EXPECT_EQ(Where(u"a / b = c"), "((<a> DIVIDED BY <b>) = <c>)");
    EXPECT_EQ(Where(u"a / b * c = d"), "((<a> DIVIDED BY <b> * <c>) = <d>)");
    EXPECT_EQ(Where(u"a * b + c = d"), "(((<a> * <b>) + <c>) = <d>)");
}

TEST(Writer, WhatTheEngineCannotNestIsRefused) {
    const auto negated = [](int signs) {
        return QStringLiteral("SELECT ") + QStringLiteral("-").repeated(signs) + u'a';
    };
    EXPECT_EQ(FailureOf(negated(13)), 0);
    EXPECT_EQ(FailureOf(negated(14)), engine::Number::QueryTooComplex);
    EXPECT_EQ(FailureOf(QStringLiteral("SELECT ((((((((((((((((((((a))))))))))))))))))))")), 0);
}

TEST(Writer, SignsNeverBecomeAComment) {
    EXPECT_EQ(Where(u"a - - b = - - c"), "((<a> - (-<b>)) = (-(-<c>)))");
    EXPECT_EQ(Where(u"a - -5 = b"), "((<a> - $1) = <b>)");
}

TEST(Writer, LongChainsBecomeBalancedTrees) {
    QString text = QStringLiteral("SELECT a FROM t WHERE a = 0");
    for (int i = 1; i < 1024; ++i) {
        text += QStringLiteral(" OR a = %1").arg(i);
    }
    const sql::Written written = WriteOf(text);
    int depth = 0;
    int deepest = 0;
    for (const char byte : written.Sql) {
        depth += byte == '(' ? 1 : byte == ')' ? -1 : 0;
        deepest = std::max(deepest, depth);
    }
    EXPECT_EQ(depth, 0);
    EXPECT_LE(deepest, 10);
    EXPECT_EQ(written.Values.size(), 1024U);
    EXPECT_EQ(written.Values.back(), Literal(qint64{1023}));
    EXPECT_EQ(written.Sql.count("$"), 1024);
}

TEST(Writer, NamesThatTheDialectRefusesAreRefusedWhereverTheyStand) {
    for (const auto& text : {u"SELECT * FROM hidden", u"DELETE FROM hidden", u"UPDATE hidden SET a = 1",
                             u"INSERT INTO hidden (a) VALUES (1)", u"SELECT hidden.a FROM t"}) {
        EXPECT_EQ(FailureOf(QString::fromUtf16(text)), engine::Number::NoSuchTable)
            << QString::fromUtf16(text).toStdString();
    }
    for (const auto& text :
         {u"SELECT secret FROM t", u"DELETE FROM t WHERE secret = 1", u"UPDATE t SET secret = 1",
          u"INSERT INTO t (secret) VALUES (1)", u"SELECT a FROM t ORDER BY LEN(secret)"}) {
        EXPECT_EQ(FailureOf(QString::fromUtf16(text)), engine::Number::UnknownColumn)
            << QString::fromUtf16(text).toStdString();
    }
    EXPECT_EQ(FailureOf(QStringLiteral("SELECT a AS secret FROM t")), 0);
}

}  // namespace
