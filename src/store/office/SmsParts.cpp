#include "store/office/SmsParts.h"

#include <QString>

#include <algorithm>

namespace SmsParts {

namespace {

// 3GPP TS 23.038, 6.2.1, without the letters, digits and the escape itself.
constexpr QStringView DefaultSigns =
    u"@\u00A3$\u00A5\u00E8\u00E9\u00F9\u00EC\u00F2\u00C7\n\u00D8\u00F8\r\u00C5\u00E5"
    u"\u0394_\u03A6\u0393\u039B\u03A9\u03A0\u03A8\u03A3\u0398\u039E\u00C6\u00E6\u00DF\u00C9"
    u" !\"#\u00A4%&'()*+,-./:;<=>?\u00A1\u00C4\u00D6\u00D1\u00DC\u00A7\u00BF\u00E4\u00F6\u00F1\u00FC\u00E0";

// 3GPP TS 23.038, 6.2.1.1.
constexpr QStringView ExtensionSigns = u"\f^{}\\[~]|\u20AC";

bool IsAsciiLetterOrDigit(QChar character) {
    const char16_t unit = character.unicode();
    return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z');
}

/// Units that stay together at `index`: of the 7-bit alphabet's septets, or of UTF-16.
int SizeAt(QStringView text, qsizetype index, Coding coding) {
    if (coding == Coding::Gsm7Bit) {
        return Septets(text[index]);
    }
    const bool isPair =
        text[index].isHighSurrogate() && index + 1 < text.size() && text[index + 1].isLowSurrogate();
    return isPair ? 2 : 1;
}

}  // namespace

int Septets(QChar character) {
    if (IsAsciiLetterOrDigit(character) || DefaultSigns.contains(character)) {
        return 1;
    }
    return ExtensionSigns.contains(character) ? 2 : 0;
}

Coding CodingOf(QStringView text) {
    const bool isSevenBit =
        std::all_of(text.begin(), text.end(), [](QChar character) { return Septets(character) > 0; });
    return isSevenBit ? Coding::Gsm7Bit : Coding::Ucs2;
}

int Count(QStringView text) {
    const Coding coding = CodingOf(text);
    const int single = coding == Coding::Gsm7Bit ? SingleSeptets : SingleUnits;
    const int room = coding == Coding::Gsm7Bit ? PartSeptets : PartUnits;
    int total = 0;
    int parts = 1;
    int used = 0;
    for (qsizetype index = 0; index < text.size();) {
        const int size = SizeAt(text, index, coding);
        if (used + size > room) {
            ++parts;
            used = 0;
        }
        used += size;
        total += size;
        index += coding == Coding::Gsm7Bit ? 1 : size;
    }
    return total <= single ? 1 : parts;
}

}  // namespace SmsParts
