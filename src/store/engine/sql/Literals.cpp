#include "store/engine/sql/Literals.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace engine::sql {

namespace {

bool IsDigit(QChar unit) {
    return unit >= u'0' && unit <= u'9';
}

std::optional<int> ReadDigits(QStringView text, int minimum, int maximum) {
    if (text.size() < minimum || text.size() > maximum || !std::all_of(text.begin(), text.end(), IsDigit)) {
        return std::nullopt;
    }
    int number = 0;
    for (const QChar unit : text) {
        number = number * 10 + (unit.unicode() - u'0');
    }
    return number;
}

/// hh:nn or hh:nn:ss; an invalid time for anything else.
QTime ReadTime(QStringView text) {
    std::array<std::optional<int>, 3> parts = {std::nullopt, std::nullopt, 0};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const qsizetype colon = i + 1 < parts.size() ? text.indexOf(u':') : -1;
        parts[i] = ReadDigits(colon < 0 ? text : text.first(colon), 1, 2);
        if (!parts[i]) {
            return {};
        }
        if (colon < 0) {
            return i == 0 ? QTime() : QTime(*parts[0], *parts[1], *parts[2]);
        }
        text = text.sliced(colon + 1);
    }
    return {};
}

}  // namespace

std::optional<Literal> ReadNumber(QStringView text) {
    constexpr qsizetype SafeDigits = 18;
    if (text.size() <= SafeDigits && std::all_of(text.begin(), text.end(), IsDigit)) {
        qint64 number = 0;
        for (const QChar unit : text) {
            number = number * 10 + (unit.unicode() - u'0');
        }
        return number;
    }
    const double number = text.toDouble();
    return std::isfinite(number) ? std::optional<Literal>(number) : std::nullopt;
}

QString ReadText(const Token& token) {
    QString text = token.Text.toString();
    const QChar quote(token.Quote);
    return text.contains(quote) ? text.replace(QString(2, quote), QString(quote)) : text;
}

std::optional<DateLiteral> ReadDate(QStringView source, const MonthNames& months) {
    const QStringView text = source.trimmed();
    const qsizetype firstSlash = text.indexOf(u'/');
    const qsizetype secondSlash = firstSlash < 0 ? -1 : text.indexOf(u'/', firstSlash + 1);
    if (secondSlash < 0) {
        return std::nullopt;
    }
    const QStringView rest = text.sliced(secondSlash + 1);
    const qsizetype blank = rest.indexOf(u' ');
    const auto day = ReadDigits(text.first(firstSlash), 1, 2);
    const auto year = ReadDigits(blank < 0 ? rest : rest.first(blank), 4, 4);
    const int month = months.Find(text.sliced(firstSlash + 1, secondSlash - firstSlash - 1));
    if (!day || !year || month == 0) {
        return std::nullopt;
    }
    DateLiteral date{QDate(*year, month, *day), QTime(0, 0)};
    if (blank >= 0) {
        date.Time = ReadTime(rest.sliced(blank).trimmed());
    }
    return date.Day.isValid() && date.Time.isValid() ? std::optional(date) : std::nullopt;
}

}  // namespace engine::sql
