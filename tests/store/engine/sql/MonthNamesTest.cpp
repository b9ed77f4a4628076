#include "store/engine/sql/MonthNames.h"

#include "core/Dates.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace {

using engine::sql::MonthNames;

TEST(MonthNames, EnglishNamesAreReadInFullAndShortInAnyCaseAndLanguage) {
    for (const QLocale& locale :
         {QLocale::c(), QLocale(QStringLiteral("de_DE")), QLocale(QStringLiteral("fi_FI"))}) {
        const MonthNames months(locale);
        for (int month = 1; month <= 12; ++month) {
            const QString name = QLocale::c().monthName(month);
            EXPECT_EQ(months.Find(name), month);
            EXPECT_EQ(months.Find(name.toUpper()), month);
            EXPECT_EQ(months.Find(name.left(3).toLower()), month);
            EXPECT_EQ(months.Find(QString(name.left(3) + u'.')), month);
        }
    }
}

TEST(MonthNames, EveryNameThatAUsersLanguageWritesIsRead) {
    // "mar" is November in Finnish; statements are written in English, so it is March for this program.
    const QStringList englishInOtherWords = {QStringLiteral("fi_FI"),  QStringLiteral("teo_UG"),
                                             QStringLiteral("teo_KE"), QStringLiteral("gv_IM"),
                                             QStringLiteral("dua_CM"), QStringLiteral("bas_CM")};
    for (const QLocale& locale :
         QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory)) {
        if (englishInOtherWords.contains(locale.name())) {
            continue;
        }
        const MonthNames months(locale);
        for (int month = 1; month <= 12; ++month) {
            const QString name = Dates::ShortMonthName(month, locale);
            EXPECT_EQ(months.Find(name), month) << locale.name().toStdString() << ' ' << name.toStdString();
        }
    }
}

TEST(MonthNames, WhatIsNoMonthIsNone) {
    const MonthNames months(QLocale(QStringLiteral("de_DE")));
    for (const auto& name : {u"", u".", u"Ma", u"J", u"03", u"Foo", u"Marchx"}) {
        EXPECT_EQ(months.Find(name), 0) << QString::fromUtf16(name).toStdString();
    }
    EXPECT_EQ(MonthNames(QLocale::c()).Find(u"Mai"), 0);
    EXPECT_EQ(months.Find(u"Mai"), 5);
    EXPECT_EQ(months.Find(u"dez."), 12);
}

}  // namespace
