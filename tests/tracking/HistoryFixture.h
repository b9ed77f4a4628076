#pragma once

#include "core/CodePage.h"
#include "support/FailingFiles.h"
#include "support/FakeMachine.h"
#include "tracking/History.h"

#include <QByteArray>
#include <QDateTime>
#include <QFile>
#include <QString>

#include <gtest/gtest.h>

/// A history in a folder of its own, on a disk that fails on demand, in code page 1252.
class HistoryFixture : public ::testing::Test {
public:
    FailingFiles Files;
    FakeFolders Folders;
    RecordingBoxes Boxes;
    CodePage Page{1252};
    mdlHistory History{Files, Folders, Boxes, Page};
    const QDateTime Noon{QDate(2026, 3, 7), QTime(12, 0)};

    [[nodiscard]] QString HistoryPath() const {
        return Folders.ApplicationFolder() + QStringLiteral("history.sms");
    }
    [[nodiscard]] QString LogPath() const {
        return Folders.ApplicationFolder() + QStringLiteral("messagelog.sms");
    }

    [[nodiscard]] static QByteArray Bytes(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static void Write(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }
    /// Record `index` of the file, counted from 0.
    [[nodiscard]] QByteArray Record(int index) const {
        return Bytes(HistoryPath()).mid(qsizetype{index} * HistoryRecord::Size, HistoryRecord::Size);
    }
    /// A record of a file, built by hand.
    [[nodiscard]] static QByteArray RawRecord(char id, const QByteArray& reserved,
                                              const QByteArray& recipient, const QByteArray& text) {
        QByteArray record;
        record += id;
        record += QByteArray(3, '\0');
        record += reserved;
        record += recipient.leftJustified(30, ' ');
        record += text.leftJustified(1024, ' ');
        record += QByteArray::fromHex("000000002081e640");  // 46089.0
        return record;
    }
    /// Of all records, the newest first.
    [[nodiscard]] QList<qint32> IDs() {
        QList<qint32> ids;
        for (const HistoryRecord& record : History.ReadHistory()) {
            ids.append(record.MessageID);
        }
        return ids;
    }
    void Add(qint32 id, const QString& recipient = QStringLiteral("Aoife Brennan"),
             const QString& text = QStringLiteral("Hello")) {
        History.AddToHistory(id, recipient, text, Noon);
    }
};
