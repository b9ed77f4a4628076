#pragma once

#include "store/engine/sql/Dialect.h"

namespace engine::sqlite {

/// SQLite's SQL. A comparison with a text goes by the collation LARKSPAN, and so do the groups and the order
/// of a column of texts, whatever collation the file gave it; where only columns meet, their own collation
/// holds.
class SqliteDialect final : public sql::Dialect {
public:
    void AppendName(QByteArray& out, QStringView name) const override;
    void AppendParameter(QByteArray& out, int number) const override;
    void CheckTable(QStringView name) const override;
    void CheckColumn(QStringView name) const override;
    [[nodiscard]] QByteArrayView TextComparison() const override { return " COLLATE LARKSPAN"; }
    [[nodiscard]] QByteArrayView Like() const override { return "LIKE"; }
    [[nodiscard]] QByteArrayView FunctionName(sql::Function function) const override;
    [[nodiscard]] QByteArrayView Identity() const override { return "last_insert_rowid()"; }
    [[nodiscard]] QByteArrayView Division() const override { return "* 1.0 /"; }
    /// Its reader has a stack of 100, of which the statement around an expression takes some.
    [[nodiscard]] int MaxNesting() const override { return 80; }
};

}  // namespace engine::sqlite
