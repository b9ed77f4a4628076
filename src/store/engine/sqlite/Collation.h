#pragma once

#include <QByteArrayView>

namespace engine::sqlite {

/// The order of the collation LARKSPAN over encoded texts: below 0, 0, above 0.
///
/// Texts are first ordered by their base letters: case folded, accents and other marks left out, a few
/// letters that have no decomposition taken apart ("ß" as "ss", "ø" as "o", "æ" as "ae", "ł" as "l"), by code
/// point. Among equals the folded texts themselves decide, by code point. So "Zoe" < "Zoë" < "Zof", and two
/// texts are equal only if they differ in nothing but case. Folding is the simple one, character by
/// character, and like decomposition it never changes for a character that Unicode has assigned: an index
/// ordered by it stays in order.
[[nodiscard]] int CompareText(QByteArrayView left, QByteArrayView right);

/// Whether `text` matches `pattern` without regard to case: % is any run of characters, _ any one. Every
/// other character stands for itself. Takes at most time proportional to the product of the lengths.
[[nodiscard]] bool MatchesLike(QByteArrayView pattern, QByteArrayView text);

}  // namespace engine::sqlite
