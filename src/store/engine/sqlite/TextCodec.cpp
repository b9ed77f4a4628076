#include "store/engine/sqlite/TextCodec.h"

#include <cstring>

namespace engine::sqlite {

namespace {

constexpr uchar SurrogateLead = 0xED;
constexpr uchar SurrogateSecond = 0xA0;

bool HasLoneSurrogate(QStringView text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text[i].isSurrogate()) {
            continue;
        }
        if (text[i].isLowSurrogate() || i + 1 == text.size() || !text[i + 1].isLowSurrogate()) {
            return true;
        }
        ++i;
    }
    return false;
}

/// Index of the next encoded surrogate at or behind `from`; -1 if there is none.
qsizetype FindSurrogate(QByteArrayView bytes, qsizetype from) {
    while (from + 2 < bytes.size()) {
        const void* found =
            std::memchr(bytes.data() + from, SurrogateLead, static_cast<std::size_t>(bytes.size() - from));
        if (found == nullptr) {
            return -1;
        }
        const qsizetype index = static_cast<const char*>(found) - bytes.data();
        if (index + 2 < bytes.size() && static_cast<uchar>(bytes[index + 1]) >= SurrogateSecond) {
            return index;
        }
        from = index + 1;
    }
    return -1;
}

/// Plain UTF-8. QString takes a byte order mark at the start for no part of the text; here it is one.
QString FromUtf8(QByteArrayView bytes) {
    constexpr QByteArrayView Mark = "\xEF\xBB\xBF";
    if (bytes.isEmpty() || bytes.front() != Mark.front() || !bytes.startsWith(Mark)) {
        return QString::fromUtf8(bytes);
    }
    QString text;
    while (bytes.startsWith(Mark)) {
        text.append(QChar::ByteOrderMark);
        bytes = bytes.sliced(Mark.size());
    }
    return text.append(QString::fromUtf8(bytes));
}

bool IsTail(const uchar* position, const uchar* end) {
    return position < end && (*position & 0xC0) == 0x80;
}

}  // namespace

QByteArray EncodeText(QStringView text) {
    if (!HasLoneSurrogate(text)) {
        return text.toUtf8();
    }
    QByteArray bytes;
    qsizetype start = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            ++i;
        } else if (text[i].isSurrogate()) {
            bytes.append(text.sliced(start, i - start).toUtf8());
            const ushort unit = text[i].unicode();
            bytes.append(static_cast<char>(SurrogateLead));
            bytes.append(static_cast<char>(0x80 | ((unit >> 6) & 0x3F)));
            bytes.append(static_cast<char>(0x80 | (unit & 0x3F)));
            start = i + 1;
        }
    }
    return bytes.append(text.sliced(start).toUtf8());
}

QString DecodeText(QByteArrayView bytes) {
    qsizetype surrogate = FindSurrogate(bytes, 0);
    if (surrogate < 0) {
        return FromUtf8(bytes);
    }
    QString text;
    qsizetype start = 0;
    while (surrogate >= 0) {
        text.append(FromUtf8(bytes.sliced(start, surrogate - start)));
        const auto unit =
            static_cast<ushort>(0xD000 | ((static_cast<uchar>(bytes[surrogate + 1]) & 0x3F) << 6) |
                                (static_cast<uchar>(bytes[surrogate + 2]) & 0x3F));
        text.append(QChar(unit));
        start = surrogate + 3;
        surrogate = FindSurrogate(bytes, start);
    }
    return text.append(FromUtf8(bytes.sliced(start)));
}

char32_t NextCharacter(const uchar** position, const uchar* end) {
    const uchar* p = *position;
    const uchar lead = *p++;
    int tails = 0;
    char32_t character = lead;
    if (lead >= 0xF0 && lead <= 0xF4) {
        tails = 3;
        character = lead & 0x07U;
    } else if (lead >= 0xE0 && lead < 0xF0) {
        tails = 2;
        character = lead & 0x0FU;
    } else if (lead >= 0xC2 && lead < 0xE0) {
        tails = 1;
        character = lead & 0x1FU;
    } else if (lead >= 0x80) {
        *position = p;
        return 0x110000U + lead;
    }
    for (int i = 0; i < tails; ++i) {
        if (!IsTail(p, end)) {
            ++*position;
            return 0x110000U + lead;
        }
        character = (character << 6) | (*p++ & 0x3FU);
    }
    *position = p;
    return character;
}

}  // namespace engine::sqlite
