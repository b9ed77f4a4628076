#pragma once

#include <array>
#include <utility>

/// Characters of the bytes 0x80 to 0xFF.
using CodePageUpperHalf = std::array<char16_t, 128>;

/// One 8-bit code page; the bytes below 0x80 are ASCII in all of them.
struct CodePageTable {
    int Number = 0;
    CodePageUpperHalf Upper{};
    /// Character and byte of the upper half, ascending by character.
    std::array<std::pair<char16_t, unsigned char>, 128> ByCharacter{};
};

/// The table of a page; the one of 1252 for a number that is not 1250..1258 or 874.
[[nodiscard]] const CodePageTable& FindCodePageTable(int number);
