#include "store/office/SampleNumbers.h"

#include <stdexcept>

struct SampleNumbers::Range {
    QStringView Language;
    QStringView Prefix;
    int Digits;  // behind the prefix
    int First;   // lowest of the free part
    int Count;
};

namespace {

// Walks a range in an order that does not look like one; prime, and no divisor of any range's size.
constexpr qint64 Stride = 7919;

bool EndsInFailure(int number) {
    const int end = number % 1000;
    return end == 4 || end == 6 || end == 7;
}

}  // namespace

const SampleNumbers::Range& SampleNumbers::RangeOf(QStringView language) {
    static constexpr Range Ranges[] = {
        {u"Irish", u"+3532091", 5, 0, 100000}, {u"English", u"+447700900", 3, 0, 1000},
        {u"French", u"+3363998", 4, 0, 10000}, {u"German", u"+493023125", 3, 0, 1000},
        {u"Swedish", u"+467017406", 2, 5, 95},
    };
    for (const Range& range : Ranges) {
        if (range.Language == language) {
            return range;
        }
    }
    return Ranges[0];
}

QString SampleNumbers::Take(const Range& range) {
    int& taken = m_taken[&range];
    while (taken < range.Count) {
        const int number = range.First + static_cast<int>((++taken * Stride) % range.Count);
        if (!EndsInFailure(range.Digits < 3 ? 600 + number : number)) {
            return range.Prefix.toString() + QStringLiteral("%1").arg(number, range.Digits, 10, QChar(u'0'));
        }
    }
    return {};
}

QString SampleNumbers::Next(QStringView language) {
    QString number = Take(RangeOf(language));
    if (number.isEmpty()) {
        number = Take(RangeOf(u"Irish"));
    }
    if (number.isEmpty()) {
        throw std::length_error("no more phone numbers for a sample");
    }
    return number;
}

QString SampleNumbers::EndingIn(QStringView digits) {
    return QStringLiteral("+353209100") + digits.toString();
}
