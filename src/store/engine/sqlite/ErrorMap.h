#pragma once

#include "store/engine/Error.h"

struct sqlite3;

namespace engine::sqlite {

/// What was being done when SQLite reported an error: the same code means different things.
enum class Doing { Open, Read, Insert, Update, Delete, Begin, Commit, Copy };

/// The engine error for an extended result code of SQLite; `systemError` is the errno behind it, 0 if
/// unknown. An I/O error while a row was being written or a transaction committed is OutcomeUnknown: the row
/// may stand or not.
[[nodiscard]] int NumberFor(int code, Doing doing, int systemError);

/// Throws the Failure for the latest error of a connection. The description is SQLite's own, which names
/// tables and columns but never values.
[[noreturn]] void ThrowFailure(sqlite3* database, int code, Doing doing);

}  // namespace engine::sqlite
