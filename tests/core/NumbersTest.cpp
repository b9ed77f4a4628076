#include "core/Numbers.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

#include "support/Printing.h"

using namespace Qt::StringLiterals;

TEST(Numbers, ReadTakesTheLeadingNumericPart) {
    EXPECT_EQ(Numbers::Read(u"12"_s), 12.0);
    EXPECT_EQ(Numbers::Read(u"12abc"_s), 12.0);
    EXPECT_EQ(Numbers::Read(u"-3.5x"_s), -3.5);
    EXPECT_EQ(Numbers::Read(u"+7"_s), 7.0);
    EXPECT_EQ(Numbers::Read(u".5"_s), 0.5);
    EXPECT_EQ(Numbers::Read(u"5."_s), 5.0);
    EXPECT_EQ(Numbers::Read(u"1.2.3"_s), 1.2);
    EXPECT_EQ(Numbers::Read(u"1,5"_s), 1.0);
}

TEST(Numbers, ReadOfATextWithoutANumberInFrontIsZero) {
    for (const QString& text :
         {u""_s, u"abc"_s, u"a12"_s, u"-"_s, u"."_s, u"-."_s, u"--1"_s, u"\t1"_s, u"e5"_s, u"\u0663"_s}) {
        EXPECT_EQ(Numbers::Read(text), 0.0) << text.toStdString();
    }
    EXPECT_EQ(Numbers::Read(QString()), 0.0);
}

TEST(Numbers, ReadSkipsBlanks) {
    EXPECT_EQ(Numbers::Read(u"   42"_s), 42.0);
    EXPECT_EQ(Numbers::Read(u" - 1 615 Road"_s), -1615.0);
}

TEST(Numbers, ReadTakesAnExponentOnlyIfItIsWhole) {
    EXPECT_EQ(Numbers::Read(u"1e3"_s), 1000.0);
    EXPECT_EQ(Numbers::Read(u"25E-1"_s), 2.5);
    EXPECT_EQ(Numbers::Read(u"1e"_s), 1.0);
    EXPECT_EQ(Numbers::Read(u"1e+"_s), 1.0);
    EXPECT_EQ(Numbers::Read(u"1ex"_s), 1.0);
}

TEST(Numbers, ReadOfATooLargeNumberIsTheLargestOne) {
    EXPECT_EQ(Numbers::Read(u"1e999"_s), std::numeric_limits<double>::max());
    EXPECT_EQ(Numbers::Read(u"-1e999"_s), -std::numeric_limits<double>::max());
    EXPECT_EQ(Numbers::Read(QString(400, u'9')), std::numeric_limits<double>::max());
    EXPECT_EQ(Numbers::Read(u"1e-999"_s), 0.0);
}

TEST(Numbers, ToInt16RoundsHalfToEven) {
    EXPECT_EQ(Numbers::ToInt16(0.5), 0);
    EXPECT_EQ(Numbers::ToInt16(1.5), 2);
    EXPECT_EQ(Numbers::ToInt16(2.5), 2);
    EXPECT_EQ(Numbers::ToInt16(-0.5), 0);
    EXPECT_EQ(Numbers::ToInt16(-1.5), -2);
    EXPECT_EQ(Numbers::ToInt16(-2.5), -2);
    EXPECT_EQ(Numbers::ToInt16(2.5000001), 3);
    EXPECT_EQ(Numbers::ToInt16(2.4999999), 2);
    EXPECT_EQ(Numbers::ToInt16(u"3.5"_s), 4);
}

TEST(Numbers, ToInt16HoldsTheWholeRangeAndNothingBeyond) {
    EXPECT_EQ(Numbers::ToInt16(32767.0), 32767);
    EXPECT_EQ(Numbers::ToInt16(-32768.0), -32768);
    EXPECT_EQ(Numbers::ToInt16(32767.4), 32767);
    EXPECT_EQ(Numbers::ToInt16(-32768.5), -32768);
    EXPECT_EQ(Numbers::ToInt16(qint64{32767}), 32767);
    EXPECT_EQ(Numbers::ToInt16(qint64{-32768}), -32768);
    EXPECT_EQ(Numbers::ToInt16(u"-32768"_s), -32768);
}

TEST(Numbers, ToInt16FailsBeyondTheRangeAndNeverWraps) {
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double value : {32767.5, 32768.0, 65536.0, -32768.51, -32769.0, 1e300, infinity, -infinity,
                               std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_THROW(static_cast<void>(Numbers::ToInt16(value)), OverflowError) << value;
    }
    for (const qint64 value : {qint64{32768}, qint64{-32769}, std::numeric_limits<qint64>::max()}) {
        EXPECT_THROW(static_cast<void>(Numbers::ToInt16(value)), OverflowError) << value;
    }
    EXPECT_THROW(static_cast<void>(Numbers::ToInt16(u"32768"_s)), OverflowError);
    EXPECT_THROW(static_cast<void>(Numbers::ToInt16(u"1e999"_s)), OverflowError);
}

TEST(Numbers, AnOverflowIsFailureNumberSix) {
    try {
        static_cast<void>(Numbers::ToInt16(qint64{40000}));
        FAIL() << "no exception";
    } catch (const OverflowError& failure) {
        EXPECT_EQ(failure.Number(), 6);
        EXPECT_STREQ(failure.what(), "Overflow");
    }
}

TEST(Numbers, ToInt16OfAFieldTakesNumbersAndTexts) {
    EXPECT_EQ(Numbers::ToInt16(QVariant(qint64{12})), 12);
    EXPECT_EQ(Numbers::ToInt16(QVariant(12)), 12);
    EXPECT_EQ(Numbers::ToInt16(QVariant(2.5)), 2);
    EXPECT_EQ(Numbers::ToInt16(QVariant(u" 31x"_s)), 31);
    EXPECT_EQ(Numbers::ToInt16(QVariant(u""_s)), 0);
    EXPECT_THROW(static_cast<void>(Numbers::ToInt16(QVariant(qint64{32768}))), OverflowError);
}

TEST(Numbers, ToInt16OfANullFieldFails) {
    EXPECT_THROW(static_cast<void>(Numbers::ToInt16(QVariant())), std::invalid_argument);
    EXPECT_THROW(static_cast<void>(Numbers::ToInt16(QVariant(QMetaType::fromType<qint64>()))),
                 std::invalid_argument);
}

TEST(Numbers, ToInt16OfADateFieldFails) {
    EXPECT_THROW(static_cast<void>(Numbers::ToInt16(QVariant(QDateTime(QDate(2026, 3, 7), QTime(1, 2))))),
                 std::invalid_argument);
}

TEST(Numbers, FormatGroupsAndKeepsAFixedNumberOfDecimals) {
    const QLocale c = QLocale::c();
    const QLocale english(QLocale::English, QLocale::Ireland);
    EXPECT_EQ(Numbers::Format(1234567.891, u"#,##0.00"_s, english), u"1,234,567.89"_s);
    EXPECT_EQ(Numbers::Format(0, u"#,##0.00"_s, english), u"0.00"_s);
    EXPECT_EQ(Numbers::Format(12, u"#,##0.00"_s, english), u"12.00"_s);
    EXPECT_EQ(Numbers::Format(999.995, u"#,##0.00"_s, english), u"1,000.00"_s);
    EXPECT_EQ(Numbers::Format(-1234.5, u"#,##0.00"_s, english), u"-1,234.50"_s);
    EXPECT_EQ(Numbers::Format(1234, u"#,##0"_s, english), u"1,234"_s);
    EXPECT_EQ(Numbers::Format(123, u"#,##0"_s, english), u"123"_s);
    EXPECT_EQ(Numbers::Format(1234.4, u"0"_s, c), u"1234"_s);
    EXPECT_EQ(Numbers::Format(7, u"000"_s, c), u"007"_s);
    EXPECT_EQ(Numbers::Format(0.004, u"0.00"_s, c), u"0.00"_s);
    EXPECT_EQ(Numbers::Format(0.06, u"0.0"_s, c), u"0.1"_s);
    EXPECT_EQ(Numbers::Format(0.5, u"#.00"_s, c), u".50"_s);
    EXPECT_EQ(Numbers::Format(1e18, u"0"_s, c), u"1000000000000000000"_s);
}

TEST(Numbers, FormatRoundsHalvesAsTheyAreWritten) {
    const QLocale c = QLocale::c();
    EXPECT_EQ(Numbers::Format(2.5, u"0"_s, c), u"3"_s);
    EXPECT_EQ(Numbers::Format(-2.5, u"0"_s, c), u"-3"_s);
    EXPECT_EQ(Numbers::Format(0.125, u"0.00"_s, c), u"0.13"_s);
    EXPECT_EQ(Numbers::Format(1.005, u"0.00"_s, c), u"1.01"_s);
    EXPECT_EQ(Numbers::Format(9.995, u"0.00"_s, c), u"10.00"_s);
    EXPECT_EQ(Numbers::Format(0.1 + 0.2, u"0.00"_s, c), u"0.30"_s);
}

TEST(Numbers, FormatOfANegativeNumberThatRoundsToZeroHasNoSign) {
    EXPECT_EQ(Numbers::Format(-0.001, u"0.00"_s, QLocale::c()), u"0.00"_s);
}

TEST(Numbers, FormatUsesTheSeparatorsOfTheLocale) {
    EXPECT_EQ(Numbers::Format(1234.5, u"#,##0.00"_s, QLocale(QLocale::German, QLocale::Germany)),
              u"1.234,50"_s);
}

TEST(Numbers, FormatOfWhatIsNoNumberIsEmpty) {
    EXPECT_EQ(Numbers::Format(std::numeric_limits<double>::infinity(), u"0"_s), u""_s);
    EXPECT_EQ(Numbers::Format(std::numeric_limits<double>::quiet_NaN(), u"0"_s), u""_s);
}

TEST(Numbers, ASizeOfAFileIsToldInUnitsOf1024) {
    EXPECT_EQ(Numbers::FileSize(0), u"0 bytes"_s);
    EXPECT_EQ(Numbers::FileSize(1000), u"1000 bytes"_s);
    EXPECT_EQ(Numbers::FileSize(24576), u"24.0 KiB"_s);
    EXPECT_EQ(Numbers::FileSize(24832), u"24.3 KiB"_s);
    EXPECT_EQ(Numbers::FileSize(qint64{3} << 20), u"3.0 MiB"_s);
}

TEST(Numbers, ANullIsTheEmptyTextZeroAndNoDate) {
    EXPECT_EQ(Numbers::NullToString(QVariant()), u""_s);
    EXPECT_EQ(Numbers::NullToLong(QVariant()), 0);
    EXPECT_FALSE(Numbers::NullToDate(QVariant()).isValid());
    EXPECT_EQ(Numbers::NullToString(QVariant(QMetaType::fromType<QString>())), u""_s);
}

TEST(Numbers, AValueThatIsNotNullComesThrough) {
    const QDateTime date(QDate(2026, 3, 7), QTime(14, 30));
    EXPECT_EQ(Numbers::NullToString(QVariant(u"a "_s)), u"a "_s);
    EXPECT_EQ(Numbers::NullToString(QVariant(qint64{5})), u"5"_s);
    EXPECT_EQ(Numbers::NullToLong(QVariant(qint64{-70000})), -70000);
    EXPECT_EQ(Numbers::NullToLong(QVariant(u"12"_s)), 12);
    EXPECT_EQ(Numbers::NullToDate(QVariant(date)), date);
    EXPECT_THROW(static_cast<void>(Numbers::NullToLong(QVariant(qint64{1} << 31))), OverflowError);
}
