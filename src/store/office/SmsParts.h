#pragma once

#include <QChar>
#include <QStringView>

/// How a network cuts a text into short messages (3GPP TS 23.038 and 23.040): what a gateway counts and
/// charges. The client's size display has simpler rules of its own.
namespace SmsParts {

/// Alphabet of a message on the air.
enum class Coding { Gsm7Bit, Ucs2 };

// Room of one short message of 140 bytes. A part of a longer text gives up six bytes to the header that joins
// the parts.
inline constexpr int SingleSeptets = 160;
inline constexpr int PartSeptets = 153;
inline constexpr int SingleUnits = 70;
inline constexpr int PartUnits = 67;
/// The number of parts stands in one byte of that header.
inline constexpr int MaxParts = 255;

/// Septets that a character takes in the 7-bit alphabet: 1 in the default table, 2 (escape and code) in the
/// extension table, 0 if it is in neither.
[[nodiscard]] int Septets(QChar character);

/// Seven bits if every character is in the default alphabet or its extension table, otherwise UCS-2.
[[nodiscard]] Coding CodingOf(QStringView text);

/// Short messages that the text takes, at least 1. Neither an escape and its code nor the two halves of a
/// surrogate pair are ever put into different parts, so a part may stay one unit short. Can exceed MaxParts:
/// such a text cannot be sent.
[[nodiscard]] int Count(QStringView text);

}  // namespace SmsParts
