#pragma once

#include "store/AnyMessage.h"
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
    [[nodiscard]] QVariant Stored(const char16_t* column, int row = 0) {
        return Office.MessageRows().value(row).value(QString::fromUtf16(column));
    }
    /// The next automatic number of a table will be one higher.
    void SetLastIdentity(qint64 id) {
        Office.ExecuteOnOutbox(
            QStringLiteral("INSERT INTO sqlite_sequence (name, seq) VALUES ('Message', %1)").arg(id));
    }
};
