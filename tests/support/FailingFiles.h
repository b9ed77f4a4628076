#pragma once

#include "platform/LocalFiles.h"

#include <functional>

/// Files on the disk whose writes fail on demand, as on a full disk or in a read-only folder. A failing write
/// changes nothing of what a reader sees, as LocalFiles promises.
class FailingFiles final : public LocalFiles {
public:
    /// How many more writes (all but Sync) succeed; -1: all.
    int WritesLeft = -1;
    bool IsReadFailing = false;
    int Writes = 0;
    /// Of them those in haste, and the calls of Sync.
    int HastyWrites = 0;
    int Syncs = 0;
    bool IsLinkFailing = false;
    bool IsSyncFailing = false;
    /// Calls that only look (Exists, Size, Read).
    mutable int Looks = 0;
    /// Runs at the start of each write.
    std::function<void()> OnWrite;

    [[nodiscard]] bool Exists(const QString& path) const override {
        ++Looks;
        return m_disk.Exists(path);
    }
    [[nodiscard]] qint64 Size(const QString& path) const override {
        ++Looks;
        return m_disk.Size(path);
    }
    [[nodiscard]] std::optional<QByteArray> Read(const QString& path) const override {
        ++Looks;
        return IsReadFailing ? std::nullopt : m_disk.Read(path);
    }
    using LocalFiles::Replace;
    [[nodiscard]] bool Replace(const QString& path, const QList<QByteArrayView>& pieces) override {
        return Allow() && m_disk.Replace(path, pieces);
    }
    [[nodiscard]] bool ReplaceInHaste(const QString& path, const QList<QByteArrayView>& pieces) override {
        ++HastyWrites;
        return Allow() && m_disk.ReplaceInHaste(path, pieces);
    }
    [[nodiscard]] bool Link(const QString& path, const QString& secondName) override {
        return !IsLinkFailing && Allow() && m_disk.Link(path, secondName);
    }
    [[nodiscard]] bool Rename(const QString& path, const QString& newPath) override {
        return Allow() && m_disk.Rename(path, newPath);
    }
    [[nodiscard]] bool Append(const QString& path, const QByteArray& bytes) override {
        return Allow() && m_disk.Append(path, bytes);
    }
    [[nodiscard]] bool Remove(const QString& path) override { return Allow() && m_disk.Remove(path); }
    [[nodiscard]] bool Sync(const QString& path) override {
        ++Syncs;
        return !IsSyncFailing && m_disk.Sync(path);
    }

private:
    bool Allow() {
        ++Writes;
        if (OnWrite) {
            OnWrite();
        }
        if (WritesLeft == 0) {
            return false;
        }
        if (WritesLeft > 0) {
            --WritesLeft;
        }
        return true;
    }

    DiskFiles m_disk;
};
