#include "store/engine/sqlite/SqliteDialect.h"

#include "store/engine/Error.h"

#include <algorithm>
#include <array>

namespace engine::sqlite {

namespace {

/// Tables that every file has without being asked, or that are functions in disguise.
constexpr std::array<QStringView, 2> HiddenPrefixes = {u"sqlite_", u"pragma_"};
constexpr std::array<QStringView, 6> HiddenTables = {u"json_each", u"json_tree",   u"dbstat",
                                                     u"bytecode",  u"tables_used", u"completion"};
constexpr std::array<QStringView, 3> HiddenColumns = {u"rowid", u"oid", u"_rowid_"};

bool IsSame(QStringView left, QStringView right) {
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

}  // namespace

void SqliteDialect::AppendName(QByteArray& out, QStringView name) const {
    out.append('"');
    const bool isPlain = std::all_of(name.begin(), name.end(),
                                     [](QChar unit) { return unit.unicode() < 0x80 && unit != u'"'; });
    if (isPlain) {
        for (const QChar unit : name) {
            out.append(static_cast<char>(unit.unicode()));
        }
    } else {
        out.append(name.toString().replace(u'"', QStringLiteral("\"\"")).toUtf8());
    }
    out.append('"');
}

void SqliteDialect::AppendParameter(QByteArray& out, int number) const {
    Q_UNUSED(number)
    out.append('?');
}

void SqliteDialect::CheckTable(QStringView name) const {
    const bool isHidden =
        std::any_of(HiddenPrefixes.begin(), HiddenPrefixes.end(),
                    [name](QStringView prefix) { return name.startsWith(prefix, Qt::CaseInsensitive); }) ||
        std::any_of(HiddenTables.begin(), HiddenTables.end(),
                    [name](QStringView hidden) { return IsSame(name, hidden); });
    if (isHidden) {
        throw Failure(Number::NoSuchTable, QStringLiteral("There is no table or query of that name."));
    }
}

void SqliteDialect::CheckColumn(QStringView name) const {
    if (std::any_of(HiddenColumns.begin(), HiddenColumns.end(),
                    [name](QStringView hidden) { return IsSame(name, hidden); })) {
        throw Failure(Number::UnknownColumn, QStringLiteral("There is no column of that name."));
    }
}

QByteArrayView SqliteDialect::FunctionName(sql::Function function) const {
    switch (function) {
        case sql::Function::Len:
            return "len";
        case sql::Function::Iif:
            return "iif";
        case sql::Function::Sum:
            return "sum";
        case sql::Function::Count:
            return "count";
        case sql::Function::Min:
            return "min";
        case sql::Function::Max:
            return "max";
        case sql::Function::Avg:
            return "avg";
    }
    Q_UNREACHABLE();
}

}  // namespace engine::sqlite
