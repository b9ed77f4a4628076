#pragma once

#include <QList>
#include <QString>
#include <QVariant>
#include <QVariantMap>

struct sqlite3;

/// A database file seen past the program's own engine: one more reader and writer, as the gateway is one.
/// Column names are keys as the file spells them. A statement that fails fails the test, unless `Try` runs
/// it.
class RawDatabase {
public:
    explicit RawDatabase(const QString& nativePath);
    ~RawDatabase();
    RawDatabase(const RawDatabase&) = delete;
    RawDatabase& operator=(const RawDatabase&) = delete;

    [[nodiscard]] QList<QVariantMap> Rows(const QString& sql);
    /// The first column of the first row; invalid if there is none.
    [[nodiscard]] QVariant Value(const QString& sql);
    void Execute(const QString& sql);
    /// False if the statement failed, as when another holds a lock; waits for nobody.
    [[nodiscard]] bool Try(const QString& sql);

private:
    sqlite3* m_handle = nullptr;
};
