#include "core/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <stdexcept>

namespace {

bool IsDigit(QChar character) {
    return character >= u'0' && character <= u'9';
}

/// Appends the digits from `position` on and returns how many there were.
qsizetype TakeDigits(const QString& text, qsizetype& position, QByteArray& number) {
    const qsizetype before = number.size();
    while (position < text.size() && IsDigit(text.at(position))) {
        number.append(text.at(position++).toLatin1());
    }
    return number.size() - before;
}

void TakeSign(const QString& text, qsizetype& position, QByteArray& number) {
    if (position < text.size() && (text.at(position) == u'-' || text.at(position) == u'+')) {
        number.append(text.at(position++).toLatin1());
    }
}

void TakeExponent(const QString& text, qsizetype position, QByteArray& number) {
    if (position >= text.size() || text.at(position).toLower() != u'e') {
        return;
    }
    QByteArray exponent("e");
    TakeSign(text, ++position, exponent);
    if (TakeDigits(text, position, exponent) > 0) {
        number.append(exponent);
    }
}

/// `number` holds a sign, digits, one point and an exponent at most.
double ToDouble(const QByteArray& number) {
    const char* const begin = number.constData() + (number.startsWith('+') ? 1 : 0);
    double value = 0.0;
    if (std::from_chars(begin, number.constData() + number.size(), value).ec !=
        std::errc::result_out_of_range) {
        return value;
    }
    // Streams, unlike from_chars, tell the too large from the too small.
    std::istringstream stream(number.toStdString());
    stream.imbue(std::locale::classic());
    stream >> value;
    return value;
}

double RoundHalfToEven(double value) {
    const double below = std::floor(value);
    const double rest = value - below;
    const bool isUp = rest > 0.5 || (rest == 0.5 && std::fmod(below, 2.0) != 0.0);
    return isUp ? below + 1.0 : below;
}

template <typename Integer>
Integer Narrow(double value) {
    const double rounded = RoundHalfToEven(value);
    // Written so that "not a number" fails too.
    if (!(rounded >= double{std::numeric_limits<Integer>::min()} &&
          rounded <= double{std::numeric_limits<Integer>::max()})) {
        throw OverflowError();
    }
    return static_cast<Integer>(rounded);
}

template <typename Integer>
Integer Narrow(qint64 value) {
    if (value < std::numeric_limits<Integer>::min() || value > std::numeric_limits<Integer>::max()) {
        throw OverflowError();
    }
    return static_cast<Integer>(value);
}

template <typename Integer>
Integer FromField(const QVariant& value) {
    switch (value.typeId()) {
        case QMetaType::Bool:
        case QMetaType::Short:
        case QMetaType::UShort:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::Long:
        case QMetaType::LongLong:
            return Narrow<Integer>(value.toLongLong());
        case QMetaType::Float:
        case QMetaType::Double:
        case QMetaType::ULong:
        case QMetaType::ULongLong:
            return Narrow<Integer>(value.toDouble());
        case QMetaType::QString:
            return Narrow<Integer>(Numbers::Read(value.toString()));
        default:
            throw std::invalid_argument("the field does not hold a number");
    }
}

/// A number as its 15 significant decimal digits: 0.d1d2d3... times ten to the power of Exponent.
struct Decimal {
    QByteArray Digits;
    int Exponent = 0;
};

Decimal ToDecimal(double magnitude) {
    const QByteArray text = QByteArray::number(magnitude, 'e', 14);  // d.dddde+xx
    const qsizetype mark = text.indexOf('e');
    return {text.left(1) + text.mid(2, mark - 2), text.mid(mark + 1).toInt() + 1};
}

/// Whole digits and `decimals` further ones of `magnitude` without a point, rounded half up.
QByteArray RoundedDigits(double magnitude, int decimals) {
    const Decimal decimal = ToDecimal(magnitude);
    const qsizetype wanted = qsizetype{decimal.Exponent} + decimals;
    if (wanted < 0) {
        return QByteArray();
    }
    QByteArray digits = decimal.Digits.left(wanted);
    digits.append(wanted - digits.size(), '0');
    if (wanted < decimal.Digits.size() && decimal.Digits.at(wanted) >= '5') {
        qsizetype index = digits.size();
        while (index > 0 && digits.at(index - 1) == '9') {
            digits[--index] = '0';
        }
        if (index == 0) {
            digits.prepend('1');
        } else {
            digits[index - 1] = static_cast<char>(digits.at(index - 1) + 1);
        }
    }
    return digits;
}

QString Grouped(const QByteArray& whole, const QString& separator) {
    QString text;
    for (qsizetype index = 0; index < whole.size(); ++index) {
        if (index > 0 && (whole.size() - index) % 3 == 0) {
            text += separator;
        }
        text += QLatin1Char(whole.at(index));
    }
    return text;
}

}  // namespace

OverflowError::OverflowError() : NumberedFailure(6, QStringLiteral("Overflow")) {}

double Numbers::Read(const QString& text) {
    QString dense = text;
    dense.remove(u' ');
    QByteArray number;
    qsizetype position = 0;
    TakeSign(dense, position, number);
    qsizetype digits = TakeDigits(dense, position, number);
    if (position < dense.size() && dense.at(position) == u'.') {
        number.append('.');
        digits += TakeDigits(dense, ++position, number);
    }
    if (digits == 0) {
        return 0.0;
    }
    TakeExponent(dense, position, number);
    return ToDouble(number);
}

qint16 Numbers::ToInt16(double value) {
    return Narrow<qint16>(value);
}

qint16 Numbers::ToInt16(qint64 value) {
    return Narrow<qint16>(value);
}

qint16 Numbers::ToInt16(const QString& text) {
    return Narrow<qint16>(Read(text));
}

qint16 Numbers::ToInt16(const QVariant& value) {
    if (value.isNull()) {
        throw std::invalid_argument("null is not a number");
    }
    return FromField<qint16>(value);
}

QString Numbers::Format(double value, const QString& pattern, const QLocale& locale) {
    if (!std::isfinite(value)) {
        return QString();
    }
    const qsizetype point = pattern.indexOf(u'.');
    const QString wholePattern = point < 0 ? pattern : pattern.left(point);
    const int decimals = point < 0 ? 0 : static_cast<int>(pattern.mid(point + 1).count(u'0'));
    const qsizetype leastWhole = wholePattern.count(u'0');

    QByteArray digits = RoundedDigits(std::fabs(value), decimals);
    digits.prepend(std::max<qsizetype>(0, decimals - digits.size()), '0');
    QByteArray whole = digits.left(digits.size() - decimals);
    while (whole.startsWith('0')) {
        whole.remove(0, 1);
    }
    whole.prepend(std::max<qsizetype>(0, leastWhole - whole.size()), '0');
    const QByteArray fraction = digits.right(decimals);

    const bool isZero = digits.count('0') == digits.size();
    QString text = value < 0 && !isZero ? locale.negativeSign() : QString();
    text += Grouped(whole, wholePattern.contains(u',') ? locale.groupSeparator() : QString());
    if (decimals > 0) {
        text += locale.decimalPoint() + QString::fromLatin1(fraction);
    }
    return text;
}

QString Numbers::FileSize(qint64 bytes) {
    return QLocale::c().formattedDataSize(bytes, 1, QLocale::DataSizeIecFormat);
}

QString Numbers::NullToString(const QVariant& value) {
    return value.isNull() ? QString() : value.toString();
}

qint32 Numbers::NullToLong(const QVariant& value) {
    return value.isNull() ? 0 : FromField<qint32>(value);
}

QDateTime Numbers::NullToDate(const QVariant& value) {
    return value.isNull() ? QDateTime() : value.toDateTime();
}
