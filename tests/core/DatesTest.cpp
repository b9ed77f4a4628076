#include "core/Dates.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>
#include <QSet>

#include <limits>
#include <optional>

#include <ctime>

#include "support/Environment.h"
#include "support/Printing.h"

using namespace Qt::StringLiterals;

namespace {

const QLocale English(QLocale::English, QLocale::Ireland);

QDateTime At(int year, int month, int day, int hour = 0, int minute = 0, int second = 0,
             int millisecond = 0) {
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second, millisecond));
}

QString Formatted(const QString& pattern) {
    return Dates::Format(At(2026, 3, 7, 9, 5, 8), pattern, English);
}

/// The process in another time zone.
class Zone {
public:
    explicit Zone(const char* name) : m_variable(std::in_place, "TZ", QByteArray(name)) { tzset(); }
    ~Zone() {
        m_variable.reset();
        tzset();
    }
    Zone(const Zone&) = delete;
    Zone& operator=(const Zone&) = delete;

private:
    std::optional<EnvironmentVariable> m_variable;
};

}  // namespace

TEST(Dates, FormatsTheDateOfAStatement) {
    EXPECT_EQ(Formatted(u"dd/mmm/yyyy hh:nn:ss"_s), u"07/Mar/2026 09:05:08"_s);
}

TEST(Dates, FormatsTheTimeOfTheMessageLog) {
    EXPECT_EQ(Formatted(u"YYYYMMDDHHNNSS"_s), u"20260307090508"_s);
}

TEST(Dates, FormatsTheTimesOfMergeFieldsAndLists) {
    EXPECT_EQ(Formatted(u"HH:NN"_s), u"09:05"_s);
    EXPECT_EQ(Formatted(u"DD.Mmm"_s), u"07.Mar"_s);
    EXPECT_EQ(Formatted(u"Dd Mmm"_s), u"07 Mar"_s);
    EXPECT_EQ(Formatted(u"dd mmm hh:mm"_s), u"07 Mar 09:05"_s);
    EXPECT_EQ(Formatted(u"dd hh:mm"_s), u"07 09:05"_s);
}

TEST(Dates, FormatsEveryFieldInBothWidths) {
    EXPECT_EQ(Formatted(u"d-dd m-mm yy-yyyy h-hh n-nn s-ss"_s), u"7-07 3-03 26-2026 9-09 5-05 8-08"_s);
    EXPECT_EQ(Formatted(u"mmmm"_s), u"March"_s);
    EXPECT_EQ(Dates::Format(At(2026, 12, 25, 23, 59, 58), u"d m h n s"_s, English), u"25 12 23 59 58"_s);
    EXPECT_EQ(Dates::Format(At(2005, 1, 1), u"yy"_s, English), u"05"_s);
}

TEST(Dates, TakesMForMinutesOnlyBehindAnHour) {
    EXPECT_EQ(Formatted(u"hh:mm"_s), u"09:05"_s);
    EXPECT_EQ(Formatted(u"hhmm"_s), u"0905"_s);
    EXPECT_EQ(Formatted(u"h m"_s), u"9 5"_s);
    EXPECT_EQ(Formatted(u"mm hh"_s), u"03 09"_s);
    EXPECT_EQ(Formatted(u"hh dd mm"_s), u"09 07 03"_s);
    EXPECT_EQ(Formatted(u"hh:mm mm"_s), u"09:05 03"_s);
    EXPECT_EQ(Formatted(u"hh mmm"_s), u"09 Mar"_s);
}

TEST(Dates, LetsEverythingElseStandForItself) {
    EXPECT_EQ(Formatted(u"#dd/mm/yyyy#, Q[x]\\"_s), u"#07/03/2026#, Q[x]\\"_s);
    EXPECT_EQ(Formatted(u"y"_s), u"y"_s);
    EXPECT_EQ(Formatted(QString()), u""_s);
}

TEST(Dates, FormatsAnInvalidDateAsTheEmptyText) {
    EXPECT_EQ(Dates::Format(QDateTime(), u"dd/mmm/yyyy"_s, English), u""_s);
}

TEST(Dates, WritesMonthNamesOfTheLocaleInThreeLetters) {
    EXPECT_EQ(Dates::Format(At(2026, 9, 1), u"dd.mmm"_s, English), u"01.Sep"_s);
    EXPECT_EQ(Dates::Format(At(2026, 3, 1), u"dd.mmm"_s, QLocale(QLocale::German)), u"01.M\u00E4r"_s);
    EXPECT_EQ(Dates::Format(At(2026, 12, 1), u"DD.Mmm"_s, QLocale(QLocale::German)), u"01.Dez"_s);
    EXPECT_EQ(Dates::Format(At(2026, 3, 1), u"mmmm"_s, QLocale(QLocale::German)), u"M\u00E4rz"_s);
}

TEST(Dates, NeverWritesTwoMonthsAlike) {
    const QLocale french(QLocale::French, QLocale::France);
    EXPECT_EQ(Dates::ShortMonthName(6, french), u"juin"_s);
    EXPECT_EQ(Dates::ShortMonthName(7, french), u"juil"_s);
    for (const QLocale& locale :
         QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry)) {
        QSet<QString> names;
        for (int month = 1; month <= 12; ++month) {
            names.insert(Dates::ShortMonthName(month, locale));
        }
        EXPECT_EQ(names.size(), 12) << locale.name().toStdString();
    }
}

TEST(Dates, WritesPlainDigitsInEveryLocale) {
    EXPECT_EQ(
        Dates::Format(At(2026, 3, 7, 9, 5), u"yyyymmdd hh:nn"_s, QLocale(QLocale::Arabic, QLocale::Egypt)),
        u"20260307 09:05"_s);
}

TEST(Dates, CountsDaysSinceThe30thOfDecember1899) {
    EXPECT_EQ(Dates::ToDays(At(1899, 12, 30)), 0.0);
    EXPECT_EQ(Dates::ToDays(At(1899, 12, 31)), 1.0);
    EXPECT_EQ(Dates::ToDays(At(1900, 1, 1, 12)), 2.5);
    EXPECT_EQ(Dates::ToDays(At(2026, 3, 7, 18)), 46088.75);
    EXPECT_EQ(Dates::FromDays(46088.75), At(2026, 3, 7, 18));
    EXPECT_EQ(Dates::FromDays(0.0), At(1899, 12, 30));
}

TEST(Dates, CountsTheTimeOfDayForwardBeforeThatDayToo) {
    EXPECT_EQ(Dates::ToDays(At(1899, 12, 29, 6)), -1.25);
    EXPECT_EQ(Dates::FromDays(-1.25), At(1899, 12, 29, 6));
    EXPECT_EQ(Dates::FromDays(-0.25), At(1899, 12, 30, 6));
}

TEST(Dates, AreExactToTheMillisecondInBothDirections) {
    const Zone zone("UTC");
    QRandomGenerator random(20260307);
    for (int round = 0; round < 20000; ++round) {
        const QDate date = QDate(1890, 1, 1).addDays(random.bounded(73000));
        const QTime time = QTime::fromMSecsSinceStartOfDay(random.bounded(86'400'000));
        const QDateTime back = Dates::FromDays(Dates::ToDays(QDateTime(date, time)));
        ASSERT_EQ(back.date(), date);
        ASSERT_EQ(back.time(), time);
    }
    EXPECT_EQ(Dates::FromDays(Dates::ToDays(At(2026, 3, 7, 23, 59, 59, 999))),
              At(2026, 3, 7, 23, 59, 59, 999));
}

TEST(Dates, RoundUpIntoTheNextDay) {
    EXPECT_EQ(Dates::FromDays(46088.0 - 1e-10), At(2026, 3, 7));
    EXPECT_EQ(Dates::FromDays(-1.0 - (1.0 - 1e-12)), At(1899, 12, 30));
}

TEST(Dates, StayOnTheClockFaceWhenSummerTimeBegins) {
    const Zone zone("Europe/Dublin");
    const QDate lastSunday(2026, 3, 29);  // 01:00 to 02:00 is left out
    for (const QTime time : {QTime(0, 59, 59, 999), QTime(2, 0), QTime(2, 30), QTime(12, 0)}) {
        const QDateTime value(lastSunday, time);
        const double days = 46110.0 + time.msecsSinceStartOfDay() / 86'400'000.0;
        EXPECT_EQ(Dates::ToDays(value), days);
        EXPECT_EQ(Dates::FromDays(days), value);
    }
    const QDateTime leftOut = Dates::FromDays(46110.0 + 1.5 / 24.0);
    EXPECT_EQ(leftOut.date(), lastSunday);
    EXPECT_NE(Dates::ToDays(leftOut), 0.0);
}

TEST(Dates, StayOnTheClockFaceWhenSummerTimeEnds) {
    const Zone zone("Europe/Dublin");
    const QDateTime twice(QDate(2026, 10, 25), QTime(1, 30));
    EXPECT_EQ(Dates::ToDays(twice), 46320.0625);
    EXPECT_EQ(Dates::FromDays(46320.0625).time(), QTime(1, 30));
    EXPECT_EQ(Dates::FromDays(46320.0625).date(), QDate(2026, 10, 25));
}

TEST(Dates, AreLocalTimes) {
    const Zone zone("Europe/Dublin");
    const QDateTime utc(QDate(2026, 7, 1), QTime(11, 0), Qt::UTC);
    EXPECT_EQ(Dates::ToDays(utc), Dates::ToDays(At(2026, 7, 1, 12)));
}

TEST(Dates, OfAnInvalidDateAreZeroDays) {
    EXPECT_EQ(Dates::ToDays(QDateTime()), 0.0);
}

TEST(Dates, OutsideTheYears100To9999AreInvalid) {
    EXPECT_TRUE(Dates::FromDays(-657434.0).isValid());
    EXPECT_EQ(Dates::FromDays(-657434.0).date(), QDate(100, 1, 1));
    EXPECT_EQ(Dates::FromDays(2958465.0).date(), QDate(9999, 12, 31));
    for (const double days : {-657435.0, 2958466.0, 1e300, -1e300, std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_FALSE(Dates::FromDays(days).isValid()) << days;
    }
}
