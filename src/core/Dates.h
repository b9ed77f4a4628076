#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>

/// Rules of dates that hold everywhere. Dates are local date and time.
namespace Dates {

/// Formats by a pattern of: d dd, m mm mmm mmmm, yy yyyy, h hh (0 to 23), n nn, s ss; letters in any case,
/// everything else stands for itself. `m` and `mm` mean minutes if the field before them is an hour, as `n`
/// always does. Month names follow `locale` ("mmm" is ShortMonthName). "DD.Mmm" gives "07.Mar". Digits are 0
/// to 9 in every locale. An invalid date gives an empty text.
[[nodiscard]] QString Format(const QDateTime& value, const QString& pattern,
                             const QLocale& locale = QLocale());

/// The name of month 1 to 12 as "mmm" writes it: the first three letters of the locale's short name, without
/// a dot. Where three letters would not tell two months apart (French "juin" and "juil."), the whole short
/// name without a dot, in all months of that locale.
[[nodiscard]] QString ShortMonthName(int month, const QLocale& locale = QLocale());

/// Days and fractions of a day since 30 December 1899, local time, exact to the millisecond; an invalid date
/// gives 0. Before that day the whole part counts back and the fraction still is the time of day: -1.25 is 6
/// o'clock of 29 December 1899. The clock face counts, so that no change to summer time moves a date.
[[nodiscard]] double ToDays(const QDateTime& value);
/// The other way, rounded to the millisecond; invalid outside the years 100 to 9999.
[[nodiscard]] QDateTime FromDays(double days);

}  // namespace Dates
