#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <mutex>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

/// Keeps what stood in the files that any process makes or changes in some folders, and in the folders that
/// come into being there, as long as it lives: also in a file that is gone or renamed a moment later. Files
/// of some names are spared, under these names and under those that they had before.
class FilesSeen {
public:
    FilesSeen(const QStringList& folders, QStringList spared) : m_spared(std::move(spared)) {
        EXPECT_GE(m_queue, 0);
        for (const QString& folder : folders) {
            Watch(QDir::cleanPath(folder));
        }
        m_thread = std::thread([this] { Run(); });
    }
    ~FilesSeen() {
        m_isStopping = true;
        m_thread.join();
        for (const int file : m_open) {
            close(file);
        }
        close(m_queue);
    }
    FilesSeen(const FilesSeen&) = delete;
    FilesSeen& operator=(const FilesSeen&) = delete;

    /// By path: everything that was read from the file, its name included. What has happened by now is in.
    [[nodiscard]] QMap<QString, QByteArray> Contents() {
        const std::lock_guard guard(m_lock);
        while (TakeEvents()) {
        }
        return m_contents;
    }

private:
    void Watch(const QString& folder) {
        constexpr quint32 Events = IN_CREATE | IN_MODIFY | IN_CLOSE_WRITE | IN_ATTRIB | IN_MOVE | IN_DELETE;
        const int watch = inotify_add_watch(m_queue, QFile::encodeName(folder).constData(), Events);
        EXPECT_TRUE(watch >= 0 || errno == ENOENT) << folder.toStdString();  // it may be gone already
        m_folders.insert(watch, folder);
        for (const QFileInfo& entry :
             QDir(folder).entryInfoList(QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot)) {
            entry.isDir() ? Watch(entry.filePath()) : Read(entry.filePath());
        }
    }
    void Run() {
        constexpr int Patience = 20;  // ms until the next look whether all is over
        bool isMore = true;
        while (!m_isStopping || isMore) {
            pollfd wait{m_queue, POLLIN, 0};
            isMore = poll(&wait, 1, Patience) > 0;
            if (isMore) {
                const std::lock_guard guard(m_lock);
                TakeEvents();
            }
        }
    }
    /// False when nothing had happened.
    bool TakeEvents() {
        alignas(inotify_event) char bytes[16 * 1024];
        const ssize_t count = read(m_queue, bytes, sizeof bytes);
        for (ssize_t at = 0; at < count;) {
            const auto* event = reinterpret_cast<const inotify_event*>(bytes + at);
            if (event->len > 0) {
                Take(*event, m_folders.value(event->wd) + u'/' + QFile::decodeName(event->name));
            }
            at += static_cast<ssize_t>(sizeof(inotify_event)) + static_cast<ssize_t>(event->len);
        }
        return count > 0;
    }
    void Take(const inotify_event& event, const QString& path) {
        if ((event.mask & IN_ISDIR) != 0) {
            if ((event.mask & (IN_CREATE | IN_MOVED_TO)) != 0) {
                Watch(path);
            }
            return;
        }
        Read(path);
        if ((event.mask & IN_MOVED_FROM) != 0) {
            m_moved.insert(event.cookie, path);
        } else if ((event.mask & IN_MOVED_TO) != 0) {
            const QString before = m_moved.take(event.cookie);
            if (IsSpared(path)) {
                m_contents.remove(before);
            }
            Forget(before);
            Forget(path);  // it is another file now
            Read(path);
        } else if ((event.mask & IN_DELETE) != 0) {
            Forget(path);
        }
    }
    /// The file stays open, so that it can be read when it has no name any more.
    void Read(const QString& path) {
        if (IsSpared(path)) {
            return;
        }
        if (!m_open.contains(path)) {
            const int file = open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
            if (file >= 0) {
                m_open.insert(path, file);
            }
        }
        QByteArray& kept = m_contents[path];
        if (kept.isEmpty()) {
            kept = QFile::encodeName(path) + '\n';
        }
        const QByteArray now = BytesOf(m_open.value(path, -1));
        if (!kept.endsWith(now)) {
            // A file that has only grown is kept once.
            kept += now.startsWith(m_last.value(path)) ? now.mid(m_last.value(path).size()) : '\n' + now;
        }
        m_last[path] = now;
    }
    [[nodiscard]] static QByteArray BytesOf(int file) {
        QByteArray all;
        char part[16 * 1024];
        ssize_t count = 0;
        while (file >= 0 && (count = pread(file, part, sizeof part, all.size())) > 0) {
            all.append(part, count);
        }
        return all;
    }
    void Forget(const QString& path) {
        const auto file = m_open.constFind(path);
        if (file != m_open.constEnd()) {
            close(*file);
            m_open.erase(file);
        }
        m_last.remove(path);
    }
    [[nodiscard]] bool IsSpared(const QString& path) const {
        return m_spared.contains(path.mid(path.lastIndexOf(u'/') + 1));
    }

    const QStringList m_spared;
    int m_queue = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    std::atomic<bool> m_isStopping = false;
    std::mutex m_lock;
    QHash<int, QString> m_folders;
    QHash<quint32, QString> m_moved;  // where a file was, by the number of its move
    QHash<QString, int> m_open;
    QHash<QString, QByteArray> m_last;
    QMap<QString, QByteArray> m_contents;
    std::thread m_thread;
};
