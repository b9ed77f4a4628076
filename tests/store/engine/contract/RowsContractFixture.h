#pragma once

#include "store/engine/contract/ContractTest.h"

/// Statements that the tests of rows use.
class RowsContractTest : public ContractTest {
protected:
    static QString Contact(const QString& surname) {
        return QStringLiteral(
                   "INSERT INTO Contact (cntSurname, cntFirstnames, cntConfirmSend) VALUES ('%1', 'Ann', "
                   "TRUE)")
            .arg(surname);
    }
    static QString Group(const QString& name) {
        return QStringLiteral("INSERT INTO ContactGroup (grpName) VALUES ('%1')").arg(name);
    }
    static std::unique_ptr<engine::Recordset> Writable(engine::Connection& connection, const QString& sql) {
        return connection.OpenRecordset(sql, engine::CursorType::Dynamic, engine::LockType::Optimistic);
    }
};
