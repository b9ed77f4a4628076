#include "store/engine/sqlite/Collation.h"

#include "store/engine/sqlite/TextCodec.h"

#include <QChar>
#include <QList>
#include <QString>

#include <algorithm>
#include <array>
#include <utility>

namespace engine::sqlite {

namespace {

constexpr char32_t LastCharacter = 0x10FFFF;

char32_t Fold(char32_t character) {
    if (character < 0x80) {
        return character >= U'A' && character <= U'Z' ? character | 0x20 : character;
    }
    return character > LastCharacter ? character : QChar::toCaseFolded(character);
}

/// What a character counts as in the first comparison: up to two characters; none (0) for a mark.
using Base = std::array<char32_t, 2>;

struct Special {
    char32_t Folded;
    Base Letters;
};

constexpr std::array Specials = {
    Special{U'ß', {U's', U's'}}, Special{U'æ', {U'a', U'e'}}, Special{U'œ', {U'o', U'e'}},
    Special{U'ø', {U'o', 0}},    Special{U'đ', {U'd', 0}},    Special{U'ð', {U'd', 0}},
    Special{U'ħ', {U'h', 0}},    Special{U'ı', {U'i', 0}},    Special{U'ł', {U'l', 0}},
    Special{U'þ', {U't', U'h'}},
};

bool IsMark(char32_t character) {
    return character <= LastCharacter && QChar::category(character) == QChar::Mark_NonSpacing;
}

Base ComputeBase(char32_t character) {
    if (character > LastCharacter) {
        return {character, 0};
    }
    if (IsMark(character)) {
        return {0, 0};
    }
    char32_t base = character;
    if (QChar::decompositionTag(base) == QChar::Canonical) {
        const QList<uint> parts = QChar::decomposition(base).toUcs4();
        if (!parts.isEmpty()) {
            base = parts.first();
        }
    }
    base = Fold(base);
    const auto* special = std::find_if(Specials.begin(), Specials.end(),
                                       [base](const Special& entry) { return entry.Folded == base; });
    return special == Specials.end() ? Base{base, 0} : special->Letters;
}

/// Latin, Greek and Cyrillic, where most names with accents are, worked out once.
constexpr char32_t TableSize = 0x500;

const Base& BaseFromTable(char32_t character) {
    static const std::array<Base, TableSize> table = [] {
        std::array<Base, TableSize> bases;
        for (char32_t i = 0; i < TableSize; ++i) {
            bases[i] = ComputeBase(i);
        }
        return bases;
    }();
    return table[character];
}

/// The base letters of a text, one at a time.
class BaseReader {
public:
    BaseReader(const uchar* begin, const uchar* end) : m_position(begin), m_end(end) {}

    /// 0 at the end; otherwise the letter plus 1.
    char32_t Next() {
        if (m_second != 0) {
            return std::exchange(m_second, 0) + 1;
        }
        while (m_position < m_end) {
            const uchar lead = *m_position;
            if (lead < 0x80) {
                ++m_position;
                return Fold(lead) + 1;
            }
            const char32_t character = NextCharacter(&m_position, m_end);
            const Base base = character < TableSize ? BaseFromTable(character) : ComputeBase(character);
            if (base[0] != 0) {
                m_second = base[1];
                return base[0] + 1;
            }
        }
        return 0;
    }

private:
    const uchar* m_position;
    const uchar* m_end;
    char32_t m_second = 0;
};

int Order(char32_t left, char32_t right) {
    return left < right ? -1 : static_cast<int>(left > right);
}

int CompareBases(const uchar* left, const uchar* leftEnd, const uchar* right, const uchar* rightEnd) {
    BaseReader leftReader(left, leftEnd);
    BaseReader rightReader(right, rightEnd);
    while (true) {
        const char32_t a = leftReader.Next();
        const char32_t b = rightReader.Next();
        if (a != b || a == 0) {
            return Order(a, b);
        }
    }
}

int CompareFolded(const uchar* left, const uchar* leftEnd, const uchar* right, const uchar* rightEnd) {
    while (left < leftEnd && right < rightEnd) {
        const int order = Order(Fold(NextCharacter(&left, leftEnd)), Fold(NextCharacter(&right, rightEnd)));
        if (order != 0) {
            return order;
        }
    }
    return static_cast<int>(left < leftEnd) - static_cast<int>(right < rightEnd);
}

constexpr std::array<uchar, 128> MakeLower() {
    std::array<uchar, 128> lower{};
    for (uchar i = 0; i < 128; ++i) {
        lower[i] = i >= 'A' && i <= 'Z' ? static_cast<uchar>(i | 0x20) : i;
    }
    return lower;
}
constexpr std::array<uchar, 128> Lower = MakeLower();

const uchar* Begin(QByteArrayView bytes) {
    return reinterpret_cast<const uchar*>(bytes.data());
}

}  // namespace

int CompareText(QByteArrayView left, QByteArrayView right) {
    const uchar* a = Begin(left);
    const uchar* b = Begin(right);
    const uchar* const aEnd = a + left.size();
    const uchar* const bEnd = b + right.size();
    while (a < aEnd && b < bEnd && *a < 0x80 && *b < 0x80) {
        if (Lower[*a] != Lower[*b]) {
            return Lower[*a] < Lower[*b] ? -1 : 1;
        }
        ++a;
        ++b;
    }
    const bool isPlain = (a == aEnd || *a < 0x80) && (b == bEnd || *b < 0x80);
    if (isPlain) {
        return static_cast<int>(a < aEnd) - static_cast<int>(b < bEnd);
    }
    const int order = CompareBases(a, aEnd, b, bEnd);
    return order != 0 ? order : CompareFolded(a, aEnd, b, bEnd);
}

bool MatchesLike(QByteArrayView pattern, QByteArrayView text) {
    const uchar* p = Begin(pattern);
    const uchar* t = Begin(text);
    const uchar* const pEnd = p + pattern.size();
    const uchar* const tEnd = t + text.size();
    // Where to go on after the latest %: the pattern behind it, and the next place in the text to try.
    const uchar* retryPattern = nullptr;
    const uchar* retryText = nullptr;
    while (t < tEnd) {
        if (p < pEnd && *p == '%') {
            retryPattern = ++p;
            retryText = t;
            continue;
        }
        if (p < pEnd) {
            const char32_t character = NextCharacter(&t, tEnd);
            const bool isAny = *p == '_';
            if (Fold(NextCharacter(&p, pEnd)) == Fold(character) || isAny) {
                continue;
            }
        }
        if (retryPattern == nullptr) {
            return false;
        }
        Q_UNUSED(NextCharacter(&retryText, tEnd));
        p = retryPattern;
        t = retryText;
    }
    return std::all_of(p, pEnd, [](uchar byte) { return byte == '%'; });
}

}  // namespace engine::sqlite
