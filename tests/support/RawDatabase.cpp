#include "support/RawDatabase.h"

#include "store/engine/sqlite/Collation.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace {

QVariant ColumnValue(sqlite3_stmt* statement, int column) {
    switch (sqlite3_column_type(statement, column)) {
        case SQLITE_NULL:
            return QVariant();
        case SQLITE_INTEGER:
            return QVariant(static_cast<qint64>(sqlite3_column_int64(statement, column)));
        case SQLITE_FLOAT:
            return QVariant(sqlite3_column_double(statement, column));
        default:
            return QVariant(QString::fromUtf16(
                static_cast<const char16_t*>(sqlite3_column_text16(statement, column)),
                sqlite3_column_bytes16(statement, column) / static_cast<int>(sizeof(char16_t))));
    }
}

int CompareNames(void*, int leftSize, const void* left, int rightSize, const void* right) {
    return engine::sqlite::CompareText({static_cast<const char*>(left), leftSize},
                                       {static_cast<const char*>(right), rightSize});
}

}  // namespace

RawDatabase::RawDatabase(const QString& nativePath) {
    EXPECT_EQ(sqlite3_open_v2(nativePath.toUtf8().constData(), &m_handle, SQLITE_OPEN_READWRITE, nullptr),
              SQLITE_OK)
        << nativePath.toStdString();
    EXPECT_EQ(sqlite3_create_collation(m_handle, "LARKSPAN", SQLITE_UTF8, nullptr, CompareNames), SQLITE_OK);
}

RawDatabase::~RawDatabase() {
    sqlite3_close(m_handle);
}

QList<QVariantMap> RawDatabase::Rows(const QString& sql) {
    QList<QVariantMap> rows;
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(m_handle, sql.toUtf8().constData(), -1, &statement, nullptr), SQLITE_OK)
        << sqlite3_errmsg(m_handle) << ": " << sql.toStdString();
    int step = SQLITE_DONE;
    while (statement != nullptr && (step = sqlite3_step(statement)) == SQLITE_ROW) {
        QVariantMap row;
        for (int column = 0; column < sqlite3_column_count(statement); ++column) {
            row.insert(QString::fromUtf8(sqlite3_column_name(statement, column)),
                       ColumnValue(statement, column));
        }
        rows.append(row);
    }
    EXPECT_EQ(step, SQLITE_DONE) << sqlite3_errmsg(m_handle) << ": " << sql.toStdString();
    sqlite3_finalize(statement);
    return rows;
}

QVariant RawDatabase::Value(const QString& sql) {
    const QList<QVariantMap> rows = Rows(sql);
    return rows.isEmpty() || rows.first().isEmpty() ? QVariant() : rows.first().first();
}

void RawDatabase::Execute(const QString& sql) {
    EXPECT_TRUE(Try(sql)) << sqlite3_errmsg(m_handle) << ": " << sql.toStdString();
}

bool RawDatabase::Try(const QString& sql) {
    return sqlite3_exec(m_handle, sql.toUtf8().constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
}
