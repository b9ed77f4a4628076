#pragma once

#include <QByteArray>
#include <QFile>
#include <QHash>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <sys/inotify.h>
#include <unistd.h>

/// Sees what any process does to the files of some folders: opening, reading, writing, making, renaming and
/// removing. Does not see a file that is only asked for its size.
class FolderWatch {
public:
    explicit FolderWatch(const QStringList& folders) {
        EXPECT_GE(m_queue, 0);
        for (const QString& folder : folders) {
            const int watch = inotify_add_watch(
                m_queue, QFile::encodeName(folder).constData(),
                IN_ACCESS | IN_OPEN | IN_MODIFY | IN_ATTRIB | IN_CREATE | IN_DELETE | IN_MOVE);
            EXPECT_GE(watch, 0) << folder.toStdString();
        }
    }
    ~FolderWatch() { close(m_queue); }
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;

    /// What has happened since the last call, in its order: "open smsmessages.mdb". A burst of equal events
    /// may be one. Empty if nothing has.
    [[nodiscard]] QStringList Events() {
        QStringList events;
        QByteArray bytes(qsizetype{64} * 1024, '\0');
        ssize_t count = 0;
        while ((count = read(m_queue, bytes.data(), static_cast<size_t>(bytes.size()))) > 0) {
            for (ssize_t at = 0; at < count;) {
                const auto* event = reinterpret_cast<const inotify_event*>(bytes.constData() + at);
                events.append(Verb(event->mask) + u' ' +
                              (event->len > 0 ? QFile::decodeName(event->name) : QStringLiteral("(folder)")));
                at += static_cast<ssize_t>(sizeof(inotify_event)) + static_cast<ssize_t>(event->len);
            }
        }
        return events;
    }

private:
    [[nodiscard]] static QString Verb(quint32 mask) {
        const QHash<quint32, QString> verbs = {
            {IN_ACCESS, QStringLiteral("read")},      {IN_OPEN, QStringLiteral("open")},
            {IN_MODIFY, QStringLiteral("write")},     {IN_ATTRIB, QStringLiteral("attributes")},
            {IN_CREATE, QStringLiteral("make")},      {IN_DELETE, QStringLiteral("remove")},
            {IN_MOVED_FROM, QStringLiteral("leave")}, {IN_MOVED_TO, QStringLiteral("arrive")},
        };
        return verbs.value(mask & ~quint32{IN_ISDIR}, QStringLiteral("event %1").arg(mask));
    }

    int m_queue = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
};
