#pragma once

#include "platform/LocalFiles.h"

#include <functional>

/// Files on the disk whose writes fail on demand, as on a full disk or in a read-only folder. A failing write
/// changes nothing of what a reader sees, as LocalFiles promises.
class FailingFiles final : public LocalFiles {
public:
    /// How many more writes (Replace, Append, Remove) succeed; -1: all.
    int WritesLeft = -1;
    bool IsReadFailing = false;
    int Writes = 0;
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
    [[nodiscard]] bool Append(const QString& path, const QByteArray& bytes) override {
        return Allow() && m_disk.Append(path, bytes);
    }
    [[nodiscard]] bool Remove(const QString& path) override { return Allow() && m_disk.Remove(path); }
    [[nodiscard]] bool Sync(const QString& path) override { return m_disk.Sync(path); }

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
