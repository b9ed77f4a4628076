#pragma once

#include "store/Outbox.h"
#include "support/TempOffice.h"

#include <gtest/gtest.h>

/// The operations of the outbox on a file of its own.
class OutboxFileTest : public ::testing::Test {
protected:
    TempOffice Office;

    void OpenForWriting() { ASSERT_TRUE(Office.OutboxDB().OpenDatabase(engine::Mode::ReadWriteShared)); }
    [[nodiscard]] qint16 Insert(const OutgoingMessage& message) {
        return mdlOutbox::InsertMessage(Office.Outbox(), message);
    }
    [[nodiscard]] qint16 InsertText(const QString& text) {
        OutgoingMessage message = AnyMessage();
        message.Text = text;
        return Insert(message);
    }
    [[nodiscard]] static OutgoingMessage AnyMessage() {
        OutgoingMessage message;
        message.Recipient = QStringLiteral("Mary Byrne");
        message.Address = QStringLiteral("+353871234567");
        message.Text = QStringLiteral("See you at five - Front desk");
        message.SendTime = QDateTime(QDate(2026, 3, 7), QTime(14, 5, 9));
        message.Station = QStringLiteral("DESK4\\MARY");
        message.Signature = QStringLiteral("Mary");
        message.BodyTextSize = 15;
        return message;
    }
    [[nodiscard]] QVariant Stored(const char16_t* column, int row = 0) {
        return Office.MessageRows().value(row).value(QString::fromUtf16(column));
    }
    /// The next automatic number of a table will be one higher.
    void SetLastIdentity(qint64 id) {
        Office.ExecuteOnOutbox(
            QStringLiteral("INSERT INTO sqlite_sequence (name, seq) VALUES ('Message', %1)").arg(id));
    }
};
