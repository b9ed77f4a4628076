#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QVariant>

#include "core/NumberedFailure.h"

/// A number that does not fit the width that a rule gives it (16 bits, 32 for NullToLong). Its number is 6.
class OverflowError : public NumberedFailure {
public:
    OverflowError();
};

/// Rules of numbers that hold everywhere.
namespace Numbers {

/// The leading numeric part of a text (sign, digits, one decimal point, exponent); 0 if none. Blanks are
/// skipped wherever they stand. The largest double of its sign if it is too large for one.
[[nodiscard]] double Read(const QString& text);

/// Rounds half to even into a signed 16-bit value. Throws OverflowError beyond -32768..32767; never wraps.
[[nodiscard]] qint16 ToInt16(double value);
[[nodiscard]] qint16 ToInt16(qint64 value);
/// The number at the start of `text`, as above.
[[nodiscard]] qint16 ToInt16(const QString& text);
/// A field's value, as above: null, and what is neither number nor text, throws std::invalid_argument.
[[nodiscard]] qint16 ToInt16(const QVariant& value);

/// `pattern` is "0", "#,##0" or "#,##0.00" and the like: grouping in threes if it has a comma, at least as
/// many whole digits and exactly as many decimals as it has zeros. Halves are rounded away from 0. Separators
/// are those of `locale`. A value that is not finite gives an empty text.
[[nodiscard]] QString Format(double value, const QString& pattern, const QLocale& locale = QLocale());

/// How large a file is, for people: "512 bytes", "24.0 KiB"; one decimal, a KiB is 1,024 bytes.
[[nodiscard]] QString FileSize(qint64 bytes);

/// The empty text, 0 or an invalid date for a null, otherwise the value. NullToLong rounds half to even and
/// throws OverflowError for what does not fit.
[[nodiscard]] QString NullToString(const QVariant& value);
[[nodiscard]] qint32 NullToLong(const QVariant& value);
[[nodiscard]] QDateTime NullToDate(const QVariant& value);

}  // namespace Numbers
