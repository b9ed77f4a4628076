#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <sqlite3.h>

/// The limit: SQLite through its C interface, with the pragmas that this program uses, and nothing else.
class BareOutbox {
public:
    explicit BareOutbox(const QString& file) {
        sqlite3_open_v2(file.toUtf8().constData(), &m_db, SQLITE_OPEN_READWRITE, nullptr);
        for (const char* pragma :
             {"PRAGMA journal_mode=PERSIST", "PRAGMA synchronous=FULL", "PRAGMA foreign_keys=ON"}) {
            sqlite3_exec(m_db, pragma, nullptr, nullptr, nullptr);
        }
    }
    ~BareOutbox() { sqlite3_close(m_db); }
    BareOutbox(const BareOutbox&) = delete;
    BareOutbox& operator=(const BareOutbox&) = delete;

    /// `count` rows, each in a transaction of its own.
    void Insert(int count) {
        sqlite3_stmt* insert = nullptr;
        sqlite3_prepare_v2(
            m_db,
            "INSERT INTO Message (msgRecipient, msgAddress, msgText, msgSendTime, msgSignature, msgStation,"
            " msgBodyTextSize) VALUES (?,?,?,?,?,?,?)",
            -1, &insert, nullptr);
        for (int i = 0; i < count; ++i) {
            Bind(insert, 1, "Aoife Ahern");
            Bind(insert, 2, "+353865550142");
            Bind(insert, 3,
                 "Dear Aoife, the canteen closes at 14:00 on 07.Mar. Please collect orders before then. : "
                 "Front "
                 "Desk - Hartley House");
            Bind(insert, 4, "2026-03-07 14:30:15");
            Bind(insert, 5, "Front Desk");
            Bind(insert, 6, "RECEPTION\\MARY");
            sqlite3_bind_int(insert, 7, 86);
            sqlite3_step(insert);
            sqlite3_reset(insert);
        }
        sqlite3_finalize(insert);
    }

    /// Runs a SELECT and touches every column of every row; how many rows.
    int Read(const QByteArray& sql) {
        sqlite3_stmt* select = nullptr;
        sqlite3_prepare_v2(m_db, sql.constData(), static_cast<int>(sql.size()), &select, nullptr);
        int rows = 0;
        while (sqlite3_step(select) == SQLITE_ROW) {
            ++rows;
            for (int column = 0; column < sqlite3_column_count(select); ++column) {
                m_touched += sqlite3_column_bytes(select, column);
            }
        }
        sqlite3_finalize(select);
        return rows;
    }

    void Execute(const char* sql) { sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr); }

private:
    static void Bind(sqlite3_stmt* statement, int index, const char* text) {
        sqlite3_bind_text(statement, index, text, -1, SQLITE_STATIC);
    }

    sqlite3* m_db = nullptr;
    qint64 m_touched = 0;
};
