#pragma once

struct sqlite3;

namespace engine::sqlite {

/// Brings what the statements and the saved queries of an office need to a connection; all of it is
/// deterministic and harmless in views. Texts are counted in UTF-16 units, NUL included:
///   collation LARKSPAN       CompareText
///   like(pattern, text)      behind LIKE: MatchesLike
///   len(text)                number of characters, NULL for NULL
///   substr(text, from, n)    as the built-in one, which counts otherwise beyond the Basic Multilingual Plane
/// Throws Failure.
void RegisterFunctions(sqlite3* database);

}  // namespace engine::sqlite
