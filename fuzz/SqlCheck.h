#pragma once

#include <QByteArrayView>
#include <QString>

#include <memory>

struct sqlite3;

/// What must hold for any bytes at all that are given to the engine as a statement: they are refused with a
/// number of the engine, or written as exactly one statement that SQLite takes, or refuses for nothing but a
/// name that it does not know.
class SqlCheck {
public:
    SqlCheck();
    ~SqlCheck();
    SqlCheck(const SqlCheck&) = delete;
    SqlCheck& operator=(const SqlCheck&) = delete;

    /// Empty if all is well, otherwise what is not. `bytes` are UTF-8, or, if the first one is 0xFF, UTF-16
    /// units behind it.
    [[nodiscard]] QString Run(QByteArrayView bytes);

private:
    [[nodiscard]] QString CheckPrepared(const QByteArray& sql, std::size_t values);

    struct Closer {
        void operator()(sqlite3* handle) const;
    };
    std::unique_ptr<sqlite3, Closer> m_database;
};
