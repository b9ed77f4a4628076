#pragma once

#include "support/FakeEngine.h"

#include <QString>
#include <QStringList>

#include <memory>

/// Rows of the table Contact out of a fake engine, with any columns and any values.
class ContactRows {
public:
    FakeEngine Engine;

    [[nodiscard]] static QStringList AllColumns() {
        return {QStringLiteral("cntID"),          QStringLiteral("cntSurname"),
                QStringLiteral("cntFirstnames"),  QStringLiteral("cntPhone"),
                QStringLiteral("cntConfirmSend"), QStringLiteral("cntPrivateNumber"),
                QStringLiteral("cntNote"),        QStringLiteral("cntUserField1"),
                QStringLiteral("cntUserField2"),  QStringLiteral("cntUserField3")};
    }

    /// A contact with everything in it.
    [[nodiscard]] static QVariantList Full(const QVariant& id) {
        return {id,
                QStringLiteral("Brennan"),
                QStringLiteral("Aoife"),
                QStringLiteral("+353861234567"),
                true,
                false,
                QStringLiteral("back door"),
                QStringLiteral("one"),
                QStringLiteral("two"),
                QStringLiteral("three")};
    }

    /// The current row is the first; the recordset lives as long as this object.
    [[nodiscard]] engine::Recordset& Open(const QStringList& columns, const QList<QVariantList>& rows) {
        Engine.Serve(QStringLiteral("FROM Contact"), {columns, rows});
        m_connection = Engine.NewConnection();
        m_connection->Open(QStringLiteral("smscontacts.mdb"));
        m_rows = m_connection->OpenRecordset(QStringLiteral("SELECT * FROM Contact"),
                                             engine::CursorType::ForwardOnly, engine::LockType::ReadOnly);
        return *m_rows;
    }

    /// The columns of AllColumns with the named one changed in the single row.
    [[nodiscard]] engine::Recordset& OpenWith(const QString& column, const QVariant& value) {
        QVariantList row = Full(qint64{12});
        row[AllColumns().indexOf(column)] = value;
        return Open(AllColumns(), {row});
    }

    /// One row that lacks a column.
    [[nodiscard]] engine::Recordset& OpenWithout(const QString& column) {
        QStringList columns = AllColumns();
        QVariantList row = Full(qint64{12});
        row.removeAt(columns.indexOf(column));
        columns.removeOne(column);
        return Open(columns, {row});
    }

private:
    std::unique_ptr<engine::Connection> m_connection;
    std::unique_ptr<engine::Recordset> m_rows;
};
