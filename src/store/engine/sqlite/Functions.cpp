#include "store/engine/sqlite/Functions.h"

#include "store/engine/sqlite/Collation.h"
#include "store/engine/sqlite/ErrorMap.h"
#include "store/engine/sqlite/TextCodec.h"

#include <sqlite3.h>

#include <QByteArray>
#include <QString>

#include <algorithm>

namespace engine::sqlite {

namespace {

// Nothing may be thrown through SQLite's C code: out of memory is the only failure here, and ends the
// statement.
template <typename Step>
void Guard(sqlite3_context* context, Step step) noexcept {
    try {
        step();
    } catch (...) {
        sqlite3_result_error_nomem(context);
    }
}

int Collate(void*, int leftSize, const void* left, int rightSize, const void* right) noexcept {
    try {
        return CompareText({static_cast<const char*>(left), leftSize},
                           {static_cast<const char*>(right), rightSize});
    } catch (...) {
        return 0;
    }
}

/// The value as text; the bytes belong to SQLite.
QByteArrayView Bytes(sqlite3_value* value) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    return {text, sqlite3_value_bytes(value)};
}

bool IsNull(sqlite3_value* value) {
    return sqlite3_value_type(value) == SQLITE_NULL;
}

void Like(sqlite3_context* context, int, sqlite3_value** arguments) noexcept {
    Guard(context, [&] {
        if (!IsNull(arguments[0]) && !IsNull(arguments[1])) {
            sqlite3_result_int(context,
                               static_cast<int>(MatchesLike(Bytes(arguments[0]), Bytes(arguments[1]))));
        }
    });
}

void Len(sqlite3_context* context, int, sqlite3_value** arguments) noexcept {
    Guard(context, [&] {
        if (!IsNull(arguments[0])) {
            sqlite3_result_int64(context, DecodeText(Bytes(arguments[0])).size());
        }
    });
}

/// Part of `text` from the 1-based index `from` (from the end if negative), `count` units (those before it if
/// negative).
QString Part(const QString& text, qint64 from, qint64 count) {
    const qint64 size = text.size();
    qint64 begin = from > 0 ? from - 1 : from < 0 ? size + from : -1;
    qint64 end = begin + count;
    if (count < 0) {
        std::swap(begin, end);
        if (from == 0) {
            return {};
        }
    }
    begin = std::clamp<qint64>(begin, 0, size);
    end = std::clamp<qint64>(end, begin, size);
    return text.mid(begin, end - begin);
}

void Substr(sqlite3_context* context, int, sqlite3_value** arguments) noexcept {
    Guard(context, [&] {
        if (IsNull(arguments[0]) || IsNull(arguments[1]) || IsNull(arguments[2])) {
            return;
        }
        constexpr sqlite3_int64 Far = 0x7FFFFFFF;
        const QString part =
            Part(DecodeText(Bytes(arguments[0])), std::clamp(sqlite3_value_int64(arguments[1]), -Far, Far),
                 std::clamp(sqlite3_value_int64(arguments[2]), -Far, Far));
        const QByteArray bytes = EncodeText(part);
        sqlite3_result_text64(context, bytes.constData(), static_cast<sqlite3_uint64>(bytes.size()),
                              SQLITE_TRANSIENT, SQLITE_UTF8);
    });
}

using Body = void (*)(sqlite3_context*, int, sqlite3_value**);

void Register(sqlite3* database, const char* name, int arguments, Body body) {
    constexpr int Flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    const int code = sqlite3_create_function_v2(database, name, arguments, Flags, nullptr, body, nullptr,
                                                nullptr, nullptr);
    if (code != SQLITE_OK) {
        ThrowFailure(database, code, Doing::Open);
    }
}

}  // namespace

void RegisterFunctions(sqlite3* database) {
    const int code =
        sqlite3_create_collation_v2(database, "LARKSPAN", SQLITE_UTF8, nullptr, Collate, nullptr);
    if (code != SQLITE_OK) {
        ThrowFailure(database, code, Doing::Open);
    }
    Register(database, "like", 2, Like);
    Register(database, "len", 1, Len);
    Register(database, "substr", 3, Substr);
}

}  // namespace engine::sqlite
