#pragma once

#include <QString>
#include <QVariant>

#include <stdexcept>

/// A number that does not fit the 16-bit width that a rule gives it.
class OverflowError : public std::runtime_error {
public:
    OverflowError();
};

/// Rules of numbers that hold everywhere.
namespace Numbers {

/// The leading numeric part of a text (blanks skipped, sign, digits, one decimal point, exponent); 0 if none.
[[nodiscard]] double Read(const QString& text);

/// Rounds half to even into a signed 16-bit value. Throws OverflowError beyond -32768..32767; never wraps.
[[nodiscard]] qint16 ToInt16(double value);
[[nodiscard]] qint16 ToInt16(qint64 value);
/// The number at the start of `text`, as above.
[[nodiscard]] qint16 ToInt16(const QString& text);
/// A field's value, as above: null throws std::invalid_argument.
[[nodiscard]] qint16 ToInt16(const QVariant& value);

/// `pattern` is "0", "#,##0" or "#,##0.00" and the like: grouping, a fixed number of decimals.
[[nodiscard]] QString Format(double value, const QString& pattern);

/// The empty text, 0 or an invalid date for a null, otherwise the value.
[[nodiscard]] QString NullToString(const QVariant& value);
[[nodiscard]] qint32 NullToLong(const QVariant& value);
[[nodiscard]] QDateTime NullToDate(const QVariant& value);

}  // namespace Numbers
