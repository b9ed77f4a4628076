#pragma once

#include <QString>

/// Rules of text that hold everywhere. A character is a UTF-16 unit; a length counts units.
namespace Text {

/// Removes blanks (U+0020) at both ends; tabs and line breaks stay.
[[nodiscard]] QString Trim(const QString& text);

/// `path` with a backslash behind it unless it ends in one; the empty path gives a single backslash. A path
/// that ends in "/" gets one too, which NativePath makes one separator of.
[[nodiscard]] QString WithBackslash(const QString& path);

/// The folder of a path: a path with no "." comes back as it stands; otherwise the part before the last
/// separator ("\" or "/"); without one the part up to and including the first ":"; with neither, empty.
[[nodiscard]] QString PathOnly(const QString& path);

/// Matches the whole of `text` against a wildcard pattern: `*` any run, `?` any one character, `#` one digit,
/// `[list]` one of, `[!list]` none of (ranges as in a-z). Case-sensitive. A malformed pattern throws
/// std::invalid_argument.
[[nodiscard]] bool MatchesWildcard(const QString& text, const QString& pattern);

}  // namespace Text
