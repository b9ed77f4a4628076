#include "store/engine/sqlite/Collation.h"

#include "store/engine/sqlite/TextCodec.h"
#include "support/Printing.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using engine::sqlite::CompareText;
using engine::sqlite::EncodeText;
using engine::sqlite::MatchesLike;

int Compare(const QString& left, const QString& right) {
    const int order = CompareText(EncodeText(left), EncodeText(right));
    EXPECT_EQ(CompareText(EncodeText(right), EncodeText(left)), -order);
    return order;
}

bool Like(const QString& text, const QString& pattern) {
    return MatchesLike(EncodeText(pattern), EncodeText(text));
}

TEST(Collation, CaseMakesNoDifferenceInAnyScript) {
    EXPECT_EQ(Compare(QStringLiteral("abcXYZ"), QStringLiteral("ABCxyz")), 0);
    EXPECT_EQ(Compare(QStringLiteral("\u00c9\u0141\u00d6"), QStringLiteral("\u00e9\u0142\u00f6")), 0);
    EXPECT_EQ(Compare(QStringLiteral("\u0416\u03a9\U00010400"), QStringLiteral("\u0436\u03c9\U00010428")), 0);
}

TEST(Collation, EqualMeansDifferentInNothingButCase) {
    EXPECT_NE(Compare(QStringLiteral("Zoe"), QStringLiteral("Zo\u00eb")), 0);
    EXPECT_NE(Compare(QStringLiteral("stra\u00dfe"), QStringLiteral("strasse")), 0);
    EXPECT_NE(Compare(QStringLiteral("e\u0301"), QStringLiteral("\u00e9")), 0);
    EXPECT_NE(Compare(QStringLiteral("a"), QStringLiteral("a ")), 0);
    EXPECT_NE(Compare(QStringLiteral("a"), QString(QStringLiteral("a") + QChar(u'\0'))), 0);
}

TEST(Collation, BaseLettersComeFirstAndAccentsDecideAmongEquals) {
    const QStringList ordered = {QString(),
                                 QStringLiteral(" a"),
                                 QStringLiteral("0"),
                                 QStringLiteral("Abel"),
                                 QStringLiteral("\u00c1bel"),
                                 QStringLiteral("abelard"),
                                 QStringLiteral("Aeb"),
                                 QStringLiteral("\u00c6ble"),
                                 QStringLiteral("\u0141abe"),
                                 QStringLiteral("Lacy"),
                                 QStringLiteral("\u00d6sten"),
                                 QStringLiteral("Otto"),
                                 QStringLiteral("\u00d8vind"),
                                 QStringLiteral("strasse"),
                                 QStringLiteral("Stra\u00dfe"),
                                 QStringLiteral("strassen"),
                                 QStringLiteral("zoe"),
                                 QStringLiteral("Zo\u00e9"),
                                 QStringLiteral("Zo\u00eb"),
                                 QStringLiteral("ZOF"),
                                 QStringLiteral("\u0416\u0443\u043a")};
    for (qsizetype i = 1; i < ordered.size(); ++i) {
        EXPECT_LT(Compare(ordered[i - 1], ordered[i]), 0)
            << ordered[i - 1].toStdString() << " before " << ordered[i].toStdString();
    }
}

TEST(Collation, TheOrderIsTotalForAnyBytesAtAll) {
    QRandomGenerator random(3);
    QList<QByteArray> texts;
    for (int i = 0; i < 60; ++i) {
        QByteArray text;
        for (int byte = random.bounded(5); byte > 0; --byte) {
            static const QByteArrayList parts = {"a",
                                                 "A",
                                                 "e",
                                                 "\xC3\xA9",
                                                 "\xCC\x81",
                                                 "\xC3\x9F",
                                                 "s",
                                                 "\xED\xA0\x80",
                                                 "\xFF",
                                                 "\xE2\x82",
                                                 QByteArray("\0", 1)};
            text += parts.at(random.bounded(static_cast<int>(parts.size())));
        }
        texts.append(text);
    }
    for (const QByteArray& a : texts) {
        EXPECT_EQ(CompareText(a, a), 0);
        for (const QByteArray& b : texts) {
            ASSERT_EQ(CompareText(a, b), -CompareText(b, a));
            for (const QByteArray& c : texts) {
                if (CompareText(a, b) <= 0 && CompareText(b, c) <= 0) {
                    ASSERT_LE(CompareText(a, c), 0)
                        << a.toHex().toStdString() << ' ' << b.toHex().toStdString() << ' '
                        << c.toHex().toStdString();
                }
            }
        }
    }
}

TEST(Like, PercentIsAnyRunAndUnderscoreAnyOneCharacter) {
    EXPECT_TRUE(Like(QString(), QString()));
    EXPECT_TRUE(Like(QString(), QStringLiteral("%")));
    EXPECT_FALSE(Like(QString(), QStringLiteral("_")));
    EXPECT_TRUE(Like(QStringLiteral("O'Neill"), QStringLiteral("o%")));
    EXPECT_FALSE(Like(QStringLiteral("O'Neill"), QStringLiteral("o")));
    EXPECT_TRUE(Like(QStringLiteral("abcabd"), QStringLiteral("%ab_")));
    EXPECT_TRUE(Like(QStringLiteral("abcabd"), QStringLiteral("a%b%d%")));
    EXPECT_FALSE(Like(QStringLiteral("abcabd"), QStringLiteral("%c")));
    EXPECT_TRUE(Like(QStringLiteral("\U0001F600"), QStringLiteral("_")));
    EXPECT_FALSE(Like(QStringLiteral("\U0001F600"), QStringLiteral("__")));
    EXPECT_TRUE(Like(QStringLiteral("100%"), QStringLiteral("100%")));
}

TEST(Like, CaseMakesNoDifferenceAndAccentsDo) {
    EXPECT_TRUE(Like(QStringLiteral("\u00c9ric"), QStringLiteral("\u00e9R%")));
    EXPECT_FALSE(Like(QStringLiteral("\u00c9ric"), QStringLiteral("e%")));
}

TEST(Like, NothingElseIsSpecial) {
    for (const auto& text : {u"[a-z]", u"*", u"?", u"#", u"\\", u"a\u0000b"}) {
        EXPECT_TRUE(Like(QString::fromUtf16(text), QString::fromUtf16(text)));
        EXPECT_FALSE(Like(QStringLiteral("x7"), QString::fromUtf16(text)));
    }
}

TEST(Like, AHostilePatternEndsInTime) {
    const QString text(3000, u'a');
    EXPECT_FALSE(Like(text, QStringLiteral("%a").repeated(500) + QStringLiteral("b")));
}

}  // namespace
