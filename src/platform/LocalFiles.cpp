#include "platform/LocalFiles.h"

#include <QFile>
#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <numeric>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/Drives.h"

namespace {

/// An open file, closed at the end of its life.
class Descriptor {
public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] bool IsOpen() const { return m_number >= 0; }
    [[nodiscard]] int Number() const { return m_number; }
    void Reset(int number) {
        Close();
        m_number = number;
    }
    /// False if the close failed: a network file system tells of a full disk only here.
    bool Close() {
        const int number = std::exchange(m_number, -1);
        return number < 0 || close(number) == 0 || errno == EINTR;
    }

private:
    int m_number;
};

int OpenFile(const QByteArray& path, int flags, mode_t mode = 0) {
    int number = -1;
    do {
        number = open(path.constData(), flags | O_CLOEXEC, mode);
    } while (number < 0 && errno == EINTR);
    return number;
}

ssize_t WriteSome(int descriptor, const char* bytes, qsizetype count) {
    ssize_t written = -1;
    do {
        written = write(descriptor, bytes, static_cast<std::size_t>(count));
    } while (written < 0 && errno == EINTR);
    return written;
}

bool WriteAll(int descriptor, const QList<QByteArrayView>& pieces) {
    for (QByteArrayView piece : pieces) {
        while (!piece.isEmpty()) {
            const ssize_t written = WriteSome(descriptor, piece.data(), piece.size());
            if (written <= 0) {
                return false;
            }
            piece = piece.sliced(written);
        }
    }
    return true;
}

/// All bytes of an open file; nothing if reading fails. One that grows meanwhile is read as long as it was.
std::optional<QByteArray> ReadAll(int descriptor) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    QByteArray bytes(status.st_size, Qt::Uninitialized);
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t got =
            read(descriptor, bytes.data() + done, static_cast<std::size_t>(bytes.size() - done));
        if (got < 0 && errno != EINTR) {
            return std::nullopt;
        }
        if (got == 0) {
            break;
        }
        done += std::max<ssize_t>(got, 0);
    }
    bytes.truncate(done);
    return bytes;
}

QByteArray OpenablePath(const QString& path) {
    return QFile::encodeName(NativePath(path));
}

QByteArray FolderOf(const QByteArray& path) {
    const qsizetype slash = path.lastIndexOf('/');
    return slash < 0 ? QByteArray(".") : path.left(slash + 1);
}

/// Whether somebody else may have planted the link: in a folder where everybody can make files, one that
/// belongs neither to this account nor to the administrator nor to whoever the folder belongs to.
bool IsForeignLink(const QByteArray& link) {
    constexpr uid_t Administrator = 0;
    struct stat folder {};
    struct stat own {};
    if (stat(FolderOf(link).constData(), &folder) != 0 || lstat(link.constData(), &own) != 0) {
        return true;
    }
    return (folder.st_mode & S_ISVTX) != 0 && own.st_uid != geteuid() && own.st_uid != Administrator &&
           own.st_uid != folder.st_uid;
}

/// The file itself behind a chain of symbolic links, also where the last one leads to a file that does not
/// exist yet. Empty for links that go round, and for one that is not to be trusted.
QByteArray BehindLinks(QByteArray path) {
    constexpr int MostLinks = 40;
    for (int link = 0; link < MostLinks; ++link) {
        QByteArray target(4096, '\0');
        const ssize_t length =
            readlink(path.constData(), target.data(), static_cast<std::size_t>(target.size()));
        if (length < 0) {
            return path;
        }
        if (IsForeignLink(path)) {
            return QByteArray();
        }
        target.truncate(length);
        path = target.startsWith('/') ? target : path.left(path.lastIndexOf('/') + 1) + target;
    }
    return QByteArray();
}

QByteArray TemporaryName(const QByteArray& folder) {
    const QByteArray number = QByteArray::number(QRandomGenerator::system()->generate64(), 36);
    return (folder.endsWith('/') ? folder : folder + '/') + ".larkspan-" + number;
}

/// What a new file in a folder looks like: for the user alone where the folder is the user's own, or
/// everyone's like the one for temporary files. A folder that others may write to is shared, and so is what
/// lies in it: the file gets the folder's rights and, if the account may, its group.
class NewFileRights {
public:
    explicit NewFileRights(const QByteArray& folder) {
        struct stat status {};
        if (stat(folder.constData(), &status) == 0 && (status.st_mode & S_ISVTX) == 0 &&
            (status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
            m_mode = status.st_mode & 0666U;
            m_group = status.st_gid;
        }
    }

    [[nodiscard]] mode_t Mode() const { return m_mode; }
    /// Gives back what the mask of the process has taken off. Some network file systems have rights of their
    /// own and refuse: their file is as good.
    void Give(int descriptor) const {
        struct stat own {};
        if (m_mode == PrivateMode || fstat(descriptor, &own) != 0) {
            return;
        }
        const bool isInGroup = own.st_gid == m_group || fchown(descriptor, NoChange, m_group) == 0;
        // The rights of the folder's group are not those of whichever group the account happens to have.
        const mode_t mode = isInGroup ? m_mode : (m_mode & ~0060U) | ((m_mode & 0006U) << 3U);
        if ((own.st_mode & 0777U) != mode) {
            [[maybe_unused]] const int ignored = fchmod(descriptor, mode);
        }
    }

private:
    static constexpr mode_t PrivateMode = 0600;
    static constexpr uid_t NoChange = static_cast<uid_t>(-1);

    mode_t m_mode = PrivateMode;
    gid_t m_group = 0;
};

/// A file in the folder that gets its name only once it is whole. Without a name it vanishes by itself when
/// the program is killed; file systems that know no such files (network ones) get one with a name.
class NewFile {
public:
    explicit NewFile(const QByteArray& folder)
        : m_folder(folder), m_file(OpenFile(folder, O_TMPFILE | O_WRONLY, 0600)) {
        if (!m_file.IsOpen()) {
            const QByteArray name = TemporaryName(folder);
            m_file.Reset(OpenFile(name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600));
            m_name = m_file.IsOpen() ? name : QByteArray();
        }
    }
    ~NewFile() {
        if (!m_name.isEmpty()) {
            unlink(m_name.constData());
        }
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    /// The blocks for so many bytes. What is renamed over another file while it has none yet, some file
    /// systems (ext4) write out at once. Where blocks cannot be had now, the write says so if it matters.
    void Reserve(qsizetype size) {
        if (m_file.IsOpen() && size > 0) {
            [[maybe_unused]] const int ignored = fallocate(m_file.Number(), FALLOC_FL_KEEP_SIZE, 0, size);
        }
    }
    /// Writes the bytes and takes the place of `path`.
    bool Become(const QByteArray& path, const QList<QByteArrayView>& pieces, const struct stat* old) {
        return m_file.IsOpen() && WriteAll(m_file.Number(), pieces) && TakeOver(old) && GiveName() &&
               m_file.Close() && Rename(path);
    }

private:
    /// Mode and, as far as the account may, owner and group of the file that is replaced; those that suit the
    /// folder if there was none.
    bool TakeOver(const struct stat* old) {
        struct stat own {};
        if (old == nullptr) {
            NewFileRights(m_folder).Give(m_file.Number());
            return true;
        }
        if (fstat(m_file.Number(), &own) != 0) {
            return false;
        }
        // Whoever may not give a file to somebody else may still give it to a group of his own.
        if ((own.st_uid != old->st_uid || own.st_gid != old->st_gid) &&
            fchown(m_file.Number(), old->st_uid, old->st_gid) != 0) {
            [[maybe_unused]] const int ignored = fchown(m_file.Number(), own.st_uid, old->st_gid);
        }
        return own.st_mode == old->st_mode || fchmod(m_file.Number(), old->st_mode & 07777U) == 0;
    }
    bool GiveName() {
        if (!m_name.isEmpty()) {
            return true;
        }
        const QByteArray name = TemporaryName(m_folder);
        const QByteArray self = "/proc/self/fd/" + QByteArray::number(m_file.Number());
        if (linkat(AT_FDCWD, self.constData(), AT_FDCWD, name.constData(), AT_SYMLINK_FOLLOW) != 0) {
            return false;
        }
        m_name = name;
        return true;
    }
    bool Rename(const QByteArray& path) {
        if (rename(m_name.constData(), path.constData()) != 0) {
            return false;
        }
        m_name.clear();
        return true;
    }

    QByteArray m_folder;
    Descriptor m_file;
    QByteArray m_name;  // the name that it has at present; empty: none
};

enum class Haste { None, Some };

bool ReplaceWhole(const QString& path, const QList<QByteArrayView>& pieces, Haste haste) {
    const QByteArray target = BehindLinks(OpenablePath(path));
    struct stat old {};
    const bool isThere = !target.isEmpty() && stat(target.constData(), &old) == 0;
    if (target.isEmpty() || (isThere && (!S_ISREG(old.st_mode) ||
                                         faccessat(AT_FDCWD, target.constData(), W_OK, AT_EACCESS) != 0))) {
        return false;
    }
    NewFile file(FolderOf(target));
    if (haste == Haste::Some) {
        file.Reserve(std::accumulate(pieces.begin(), pieces.end(), qsizetype{0},
                                     [](qsizetype sum, QByteArrayView piece) { return sum + piece.size(); }));
    }
    return file.Become(target, pieces, isThere ? &old : nullptr);
}

/// Takes off what a failed append wrote, unless another program has already written behind it.
void TakeBack(int descriptor, ssize_t written) {
    struct stat status {};
    const off_t end = lseek(descriptor, 0, SEEK_CUR);
    if (written > 0 && fstat(descriptor, &status) == 0 && status.st_size == end) {
        [[maybe_unused]] const int ignored = ftruncate(descriptor, end - written);
    }
}

}  // namespace

bool DiskFiles::Exists(const QString& path) const {
    return Size(path) >= 0;
}

qint64 DiskFiles::Size(const QString& path) const {
    struct stat status {};
    const bool isFile = stat(OpenablePath(path).constData(), &status) == 0 && !S_ISDIR(status.st_mode);
    return isFile ? qint64{status.st_size} : -1;
}

std::optional<QByteArray> DiskFiles::Read(const QString& path) const {
    const Descriptor file(OpenFile(OpenablePath(path), O_RDONLY));
    return file.IsOpen() ? ReadAll(file.Number()) : std::nullopt;
}

bool DiskFiles::Replace(const QString& path, const QList<QByteArrayView>& pieces) {
    return ReplaceWhole(path, pieces, Haste::None);
}

bool DiskFiles::ReplaceInHaste(const QString& path, const QList<QByteArrayView>& pieces) {
    return ReplaceWhole(path, pieces, Haste::Some);
}

bool DiskFiles::Link(const QString& path, const QString& secondName) {
    return link(BehindLinks(OpenablePath(path)).constData(), OpenablePath(secondName).constData()) == 0;
}

bool DiskFiles::Rename(const QString& path, const QString& newPath) {
    return rename(OpenablePath(path).constData(), BehindLinks(OpenablePath(newPath)).constData()) == 0;
}

bool DiskFiles::Append(const QString& path, const QByteArray& bytes) {
    const QByteArray target = BehindLinks(OpenablePath(path));
    if (target.isEmpty()) {
        return false;
    }
    constexpr int Flags = O_WRONLY | O_APPEND | O_NOFOLLOW;
    Descriptor file(OpenFile(target, Flags));
    const bool isNew = !file.IsOpen() && errno == ENOENT;
    if (isNew) {
        const NewFileRights rights(FolderOf(target));
        file.Reset(OpenFile(target, Flags | O_CREAT, rights.Mode()));
        rights.Give(file.Number());
    }
    if (!file.IsOpen()) {
        return false;
    }
    const ssize_t written = WriteSome(file.Number(), bytes.constData(), bytes.size());
    if (written == bytes.size()) {
        return file.Close();
    }
    TakeBack(file.Number(), written);
    struct stat status {};
    if (isNew && fstat(file.Number(), &status) == 0 && status.st_size == 0) {
        unlink(target.constData());
    }
    return false;
}

bool DiskFiles::Remove(const QString& path) {
    return unlink(OpenablePath(path).constData()) == 0;
}

bool DiskFiles::Sync(const QString& path) {
    const QByteArray target = BehindLinks(OpenablePath(path));
    const Descriptor file(OpenFile(target, O_RDONLY));
    const Descriptor folder(OpenFile(FolderOf(target), O_RDONLY | O_DIRECTORY));
    return file.IsOpen() && folder.IsOpen() && fdatasync(file.Number()) == 0 && fsync(folder.Number()) == 0;
}
