#include "core/Dates.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr qint64 MillisecondsADay = 86'400'000;
// The first and the last whole day of the years 100 to 9999.
constexpr double FirstDay = -657434.0;
constexpr double EndDay = 2958466.0;

QDate DayZero() {
    return QDate(1899, 12, 30);
}

QString Number(int value, qsizetype width) {
    return QString::number(value).rightJustified(width, u'0');
}

/// How many of the letters from `position` on belong to one field: the longest length that the letter's
/// fields have and that fits into the run; 0 if the letter stands for itself.
qsizetype FieldLength(const QString& pattern, qsizetype position, char16_t letter) {
    qsizetype run = 0;
    while (position + run < pattern.size() && pattern.at(position + run).toLower() == letter) {
        ++run;
    }
    switch (letter) {
        case u'd':
        case u'h':
        case u'n':
        case u's':
            return std::min<qsizetype>(run, 2);
        case u'm':
            return std::min<qsizetype>(run, 4);
        case u'y':
            return run >= 4 ? 4 : run >= 2 ? 2 : 0;
        default:
            return 0;
    }
}

QString MonthField(int month, qsizetype length, const QLocale& locale) {
    if (length == 4) {
        return locale.monthName(month, QLocale::LongFormat);
    }
    return length == 3 ? Dates::ShortMonthName(month, locale) : Number(month, length);
}

QString Field(const QDateTime& value, char16_t letter, qsizetype length, const QLocale& locale) {
    const QDate date = value.date();
    const QTime time = value.time();
    switch (letter) {
        case u'd':
            return Number(date.day(), length);
        case u'm':
            return MonthField(date.month(), length, locale);
        case u'y':
            return length == 4 ? Number(date.year(), 4) : Number(date.year() % 100, 2);
        case u'h':
            return Number(time.hour(), length);
        case u'n':
            return Number(time.minute(), length);
        default:
            return Number(time.second(), length);
    }
}

QString DotlessShortName(int month, const QLocale& locale) {
    return locale.monthName(month, QLocale::ShortFormat).remove(u'.');
}

}  // namespace

QString Dates::Format(const QDateTime& value, const QString& pattern, const QLocale& locale) {
    if (!value.date().isValid() || !value.time().isValid()) {
        return QString();
    }
    QString text;
    char16_t previousField = 0;
    for (qsizetype position = 0; position < pattern.size();) {
        char16_t letter = pattern.at(position).toLower().unicode();
        const qsizetype length = FieldLength(pattern, position, letter);
        if (length == 0) {
            text += pattern.at(position++);
            continue;
        }
        if (letter == u'm' && length <= 2 && previousField == u'h') {
            letter = u'n';
        }
        text += Field(value, letter, length, locale);
        previousField = letter;
        position += length;
    }
    return text;
}

QString Dates::ShortMonthName(int month, const QLocale& locale) {
    std::array<QString, 12> names;
    for (std::size_t each = 0; each < names.size(); ++each) {
        names[each] = DotlessShortName(static_cast<int>(each) + 1, locale).left(3).toLower();
    }
    std::sort(names.begin(), names.end());
    const bool isUnique = std::adjacent_find(names.cbegin(), names.cend()) == names.cend();
    const QString name = DotlessShortName(month, locale);
    return isUnique ? name.left(3) : name;
}

double Dates::ToDays(const QDateTime& value) {
    const QDateTime local = value.timeSpec() == Qt::LocalTime ? value : value.toLocalTime();
    if (!local.date().isValid() || !local.time().isValid()) {
        return 0.0;
    }
    const auto day = static_cast<double>(DayZero().daysTo(local.date()));
    const double fraction =
        static_cast<double>(local.time().msecsSinceStartOfDay()) / double{MillisecondsADay};
    return day < 0 ? day - fraction : day + fraction;
}

QDateTime Dates::FromDays(double days) {
    if (!(days > FirstDay - 1.0 && days < EndDay)) {
        return QDateTime();
    }
    const double whole = std::trunc(days);
    auto milliseconds = static_cast<qint64>(std::llround(std::fabs(days - whole) * double{MillisecondsADay}));
    QDate date = DayZero().addDays(static_cast<qint64>(whole));
    if (milliseconds == MillisecondsADay) {
        milliseconds = 0;
        date = date.addDays(1);
    }
    return QDateTime(date, QTime::fromMSecsSinceStartOfDay(static_cast<int>(milliseconds)));
}
