#pragma once

#include <QString>
#include <QStringView>

#include <map>

/// Phone numbers that ring nowhere: from the ranges that the regulators of Ireland (ComReg, 020 91x xxxx),
/// the United Kingdom (Ofcom, 07700 900xxx), France (ARCEP, 06 39 98 xx xx), Germany (BNetzA, 030 23125 xxx)
/// and Sweden (PTS, 070-174 06 xx) keep free for films and books. Other languages, and ranges that are used
/// up, take Irish ones.
///
/// No number comes twice, and none ends in 004, 006 or 007, on which the stand-in gateway fails unless told
/// otherwise.
class SampleNumbers {
public:
    /// The next number for somebody of that language ("German"), "+" and 10 to 12 digits. Throws
    /// std::length_error when the Irish range is used up, which takes more contacts than a phonebook can
    /// hold.
    [[nodiscard]] QString Next(QStringView language);
    /// A number that ends in these three digits, outside of what Next gives.
    [[nodiscard]] static QString EndingIn(QStringView digits);

private:
    struct Range;
    [[nodiscard]] static const Range& RangeOf(QStringView language);
    [[nodiscard]] QString Take(const Range& range);

    std::map<const Range*, int> m_taken;
};
