#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>

/// Rules of dates that hold everywhere. Dates are local date and time.
namespace Dates {

/// Formats by a pattern of: d dd, m mm mmm mmmm, yy yyyy, h hh, n nn, s ss; letters in any case, everything else
/// stands for itself. `m` right behind an hour means minutes, as `n` always does. Month names follow
/// `locale` ("mmm" is the first three letters of its short name, without a dot). "DD.Mmm" gives "07.Mar".
[[nodiscard]] QString Format(const QDateTime& value, const QString& pattern,
                             const QLocale& locale = QLocale());

/// Days and fractions of a day since 30 December 1899, local time; an invalid date gives 0.
[[nodiscard]] double ToDays(const QDateTime& value);
[[nodiscard]] QDateTime FromDays(double days);

}  // namespace Dates
