#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

/// Text as it lies in a file: UTF-8, in which a lone surrogate, which UTF-8 has no form for, stands as the
/// three bytes that the same rule gives its number (ED A0..BF xx, known as WTF-8). So every sequence of
/// UTF-16 units comes back as it was; a text without lone surrogates is plain UTF-8, and a reader that knows
/// only that shows a replacement character for the others. NUL is a character like any other.
namespace engine::sqlite {

/// The bytes that a file gets; DecodeText gives the same text back.
[[nodiscard]] QByteArray EncodeText(QStringView text);
/// Bytes that are no UTF-8 at all become replacement characters.
[[nodiscard]] QString DecodeText(QByteArrayView bytes);

/// Reads one character (code point, lone surrogates included) at `*position` and moves on; a byte that begins
/// no character reads as 0x110000 plus its value, so that an order over all byte strings stays total.
/// `*position` < `end`.
[[nodiscard]] char32_t NextCharacter(const uchar** position, const uchar* end);

}  // namespace engine::sqlite
