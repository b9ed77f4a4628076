#pragma once

#include "common/ToolMachine.h"
#include "store/office/NewOffice.h"

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QTemporaryDir>
#include <QVariant>

#include <memory>
#include <optional>

/// A data folder of a test's own, with real files in it.
class TestOffice {
public:
    explicit TestOffice(const std::optional<SampleOffice::Plan>& sample = std::nullopt);

    [[nodiscard]] QString Folder() const { return m_root.filePath(QStringLiteral("office")); }
    [[nodiscard]] QString Outbox() const { return Folder() + u'/' + NewOffice::OutboxName; }
    [[nodiscard]] QString Phonebook() const { return Folder() + u'/' + NewOffice::PhonebookName; }
    [[nodiscard]] QString PathOf(const QString& name) const { return m_root.filePath(name); }

    /// Inserts messages as a client does, in one transaction; their numbers.
    QList<qint32> AddMessages(int count, const QDateTime& sendTime,
                              const QString& address = QStringLiteral("+353209112345"),
                              const QString& text = QStringLiteral("Hello"));
    qint32 AddMessage(const QDateTime& sendTime, const QString& address = QStringLiteral("+353209112345"),
                      const QString& text = QStringLiteral("Hello"));

    /// One statement on one of the files; the number of rows that it changed. Fails the test if it fails.
    qint64 Execute(const QString& file, const QString& sql) const;
    /// The first column of the rows of a statement.
    [[nodiscard]] QVariantList Column(const QString& file, const QString& sql) const;
    /// A field of a message.
    [[nodiscard]] QVariant Field(qint32 id, const QString& name) const;
    [[nodiscard]] int Status(qint32 id) const;
    /// Number of messages at each status.
    [[nodiscard]] QMap<int, int> Statuses() const;

    /// The cancel of a client: true if the row was canceled.
    [[nodiscard]] bool Cancel(qint32 id) const;

    mutable ToolMachine Machine;

private:
    QTemporaryDir m_root;
};

/// How often each message stands in the journal of a gateway.
[[nodiscard]] QMap<qint32, int> ReadJournal(const QString& path);
