#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

#include <optional>

/// The small files that the program keeps beside itself. All paths go through NativePath. A seam, so that a
/// test can let any write fail after any number of bytes. Folders are no files.
///
/// A new file is its user's own (mode 0600) in a folder that only its owner may write to, or that is sticky
/// like the one for temporary files. In a folder that is shared it can be read and written by whom the folder
/// lets in: the users of one installation share its files.
///
/// Nothing is written behind a symbolic link in a sticky folder that belongs neither to this account nor to
/// the administrator nor to whoever the folder belongs to: somebody may have planted it.
class LocalFiles {
public:
    virtual ~LocalFiles() = default;
    /// Whether there is a file of that name; a folder does not count.
    [[nodiscard]] virtual bool Exists(const QString& path) const = 0;
    /// Length in bytes; -1 if there is no such file.
    [[nodiscard]] virtual qint64 Size(const QString& path) const = 0;
    /// The whole file; nothing if it cannot be read.
    [[nodiscard]] virtual std::optional<QByteArray> Read(const QString& path) const = 0;
    /// Replaces the whole file by an atomic rename: afterwards it holds the old bytes or the new ones (the
    /// pieces, one behind the other), whatever happens in between. False if it was not replaced. An old file
    /// keeps its mode and, if the account may, its group; one that may not be written is not replaced; behind
    /// a symbolic link the file that it leads to is replaced. Whole after a crash of the program at any
    /// moment; a crash of the machine may take the newest calls back unless Sync followed.
    [[nodiscard]] virtual bool Replace(const QString& path, const QList<QByteArrayView>& pieces) = 0;
    [[nodiscard]] bool Replace(const QString& path, const QByteArray& bytes) {
        return Replace(path, QList<QByteArrayView>{bytes});
    }
    /// As Replace, for a file that is replaced many times in a row: does not start to write the bytes to the
    /// disk, which takes most of the time of a Replace. Until Sync has followed, a crash of the machine may
    /// leave the file empty or cut short; whoever calls this keeps what is needed then.
    [[nodiscard]] virtual bool ReplaceInHaste(const QString& path, const QList<QByteArrayView>& pieces) = 0;
    /// Gives the file a second name on the same file system, under which it stays as it is when the first one
    /// is replaced. False where that cannot be done, or where there is something of that name.
    [[nodiscard]] virtual bool Link(const QString& path, const QString& secondName) = 0;
    /// The file takes the place and name of another one, if there is one, in one step. False if nothing was
    /// moved.
    [[nodiscard]] virtual bool Rename(const QString& path, const QString& newPath) = 0;
    /// Appends in one write; makes the file if it is missing. False if not all bytes went in;
    /// what a failed append wrote is taken off again.
    [[nodiscard]] virtual bool Append(const QString& path, const QByteArray& bytes) = 0;
    /// False if the file is still there, or was not.
    [[nodiscard]] virtual bool Remove(const QString& path) = 0;
    /// Waits until the file as it stands is on the disk, once after a batch of writes. False if that failed.
    [[nodiscard]] virtual bool Sync(const QString& path) = 0;
};

/// Files on the disk.
class DiskFiles final : public LocalFiles {
public:
    [[nodiscard]] bool Exists(const QString& path) const override;
    [[nodiscard]] qint64 Size(const QString& path) const override;
    [[nodiscard]] std::optional<QByteArray> Read(const QString& path) const override;
    using LocalFiles::Replace;
    [[nodiscard]] bool Replace(const QString& path, const QList<QByteArrayView>& pieces) override;
    [[nodiscard]] bool ReplaceInHaste(const QString& path, const QList<QByteArrayView>& pieces) override;
    [[nodiscard]] bool Link(const QString& path, const QString& secondName) override;
    [[nodiscard]] bool Rename(const QString& path, const QString& newPath) override;
    [[nodiscard]] bool Append(const QString& path, const QByteArray& bytes) override;
    [[nodiscard]] bool Remove(const QString& path) override;
    [[nodiscard]] bool Sync(const QString& path) override;
};
