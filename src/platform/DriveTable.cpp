#include "platform/DriveTable.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <cerrno>

#include <sys/stat.h>

namespace {

QString WithSlashes(QString path) {
    return path.replace(u'\\', u'/');
}

QString WithoutEndSlash(QString path) {
    while (path.size() > 1 && path.endsWith(u'/')) {
        path.chop(1);
    }
    return path;
}

bool IsDrive(const QString& text) {
    return text.size() >= 2 && text.at(1) == u':' &&
           ((text.at(0) >= u'A' && text.at(0) <= u'Z') || (text.at(0) >= u'a' && text.at(0) <= u'z'));
}

bool IsShare(const QString& path) {
    return path.startsWith(QStringLiteral("//"));
}

bool IsSameName(const QString& left, const QString& right) {
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

/// True if `path` is `folder` or lies below it.
bool IsWithin(const QString& path, const QString& folder, Qt::CaseSensitivity sensitivity) {
    return path.startsWith(folder, sensitivity) &&
           (path.size() == folder.size() || folder.endsWith(u'/') || path.at(folder.size()) == u'/');
}

QString Joined(const QString& folder, const QString& rest) {
    if (rest.isEmpty()) {
        return folder;
    }
    return folder + (folder.endsWith(u'/') || rest.startsWith(u'/') ? QString() : QStringLiteral("/")) + rest;
}

/// Blanks and the like stand as "\040" in the mount table.
QString UnescapedField(const QByteArray& field) {
    QByteArray bytes;
    for (qsizetype index = 0; index < field.size(); ++index) {
        bool isOctal = false;
        const int code = field.at(index) == '\\' ? field.mid(index + 1, 3).toInt(&isOctal, 8) : 0;
        if (isOctal && index + 3 < field.size()) {
            bytes.append(static_cast<char>(code));
            index += 3;
        } else {
            bytes.append(field.at(index));
        }
    }
    return QFile::decodeName(bytes);
}

/// The share behind a mount's source, as "//server/share": cifs writes it so, nfs as "server:/export".
QString ShareName(const QString& source, const QByteArray& type) {
    if (type == "cifs" || type == "smb3" || type == "smbfs") {
        return WithoutEndSlash(WithSlashes(source));
    }
    const qsizetype colon = source.indexOf(QStringLiteral(":/"));
    if ((type == "nfs" || type == "nfs4") && colon > 0) {
        return WithoutEndSlash(QStringLiteral("//") + source.left(colon) + source.mid(colon + 1));
    }
    return QString();
}

/// One line of a mount table; `Share` is empty for what lies on no network.
struct MountLine {
    QString Share;
    QString Folder;
};

QList<MountLine> MountLines(const QByteArray& table) {
    QList<MountLine> lines;
    for (const QByteArray& line : table.split('\n')) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() >= 3 && !fields.constFirst().startsWith('#')) {
            lines.append({ShareName(UnescapedField(fields.at(0)), fields.at(2)),
                          WithoutEndSlash(UnescapedField(fields.at(1)))});
        }
    }
    return lines;
}

bool Exists(const QString& path) {
    struct stat status {};
    return lstat(QFile::encodeName(path).constData(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

/// The path as it lies on the disk: each part whose exact name is missing is taken by its name without regard
/// to case, the first in binary order if there are several. Parts behind one that is not found stay as they
/// are.
QString MatchCase(const QString& path) {
    if (path.isEmpty() || Exists(path)) {
        return path;
    }
    const qsizetype slash = path.lastIndexOf(u'/');
    const QString name = path.mid(slash + 1);
    const QString parentAsWritten = slash <= 0 ? path.left(slash + 1) : path.left(slash);
    const QString parent = MatchCase(parentAsWritten);
    const QString prefix = parent.isEmpty() || parent.endsWith(u'/') ? parent : parent + u'/';
    if (name.isEmpty() || (parent != parentAsWritten && Exists(prefix + name))) {
        return prefix + name;
    }
    const QStringList names = QDir(parent.isEmpty() ? QStringLiteral(".") : parent)
                                  .entryList(QDir::AllEntries | QDir::Hidden | QDir::System, QDir::Unsorted);
    QString found;
    for (const QString& each : names) {
        if (IsSameName(each, name) && (found.isEmpty() || each < found)) {
            found = each;
        }
    }
    return prefix + (found.isEmpty() ? name : found);
}

QByteArray WholeFile(const QString& path) {
    QFile file(path);
    return !path.isEmpty() && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

DriveTable::DriveTable(const QByteArray& mounts, const QString& drivesIniPath, const QByteArray& fstab) {
    ReadMounts(mounts);
    ReadFstab(fstab);
    ReadDrivesIni(drivesIniPath);
}

DriveTable DriveTable::OfThisMachine(const QString& fstabPath) {
    const QSettings settings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Brenmoor"),
                             QStringLiteral("Larkspan Messenger"));
    return DriveTable(WholeFile(QStringLiteral("/proc/self/mounts")),
                      QFileInfo(settings.fileName()).path() + QStringLiteral("/drives.ini"),
                      WholeFile(fstabPath));
}

void DriveTable::ReadMounts(const QByteArray& mounts) {
    for (const MountLine& line : MountLines(mounts)) {
        m_mountPoints.append(line.Folder);
        if (!line.Share.isEmpty()) {
            m_networkMounts.append({line.Share, line.Folder});
        }
    }
}

void DriveTable::ReadFstab(const QByteArray& fstab) {
    for (const MountLine& line : MountLines(fstab)) {
        if (!line.Share.isEmpty()) {
            m_mountable.append({line.Share, line.Folder});
        }
    }
}

// Not through QSettings, which takes the backslashes of a share for something else.
void DriveTable::ReadDrivesIni(const QString& path) {
    bool isDrivesSection = false;
    for (const QByteArray& raw : WholeFile(path).split('\n')) {
        const QString line = QString::fromUtf8(raw).trimmed();
        if (line.startsWith(u'[')) {
            isDrivesSection = IsSameName(line, QStringLiteral("[Drives]"));
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (!isDrivesSection || equals <= 0 || line.startsWith(u';') || line.startsWith(u'#')) {
            continue;
        }
        const Place place{WithoutEndSlash(WithSlashes(line.left(equals).trimmed())),
                          WithoutEndSlash(WithSlashes(line.mid(equals + 1).trimmed()))};
        if (place.Folder.isEmpty()) {
            continue;
        }
        if (IsShare(place.Name)) {
            m_shares.append(place);
        } else if (place.Name.size() == 2 && IsDrive(place.Name)) {
            m_letters.append(place);
        }
    }
}

QString DriveTable::LetterFolder(const QString& drive) const {
    for (const Place& place : m_letters) {
        if (IsSameName(place.Name, drive)) {
            return place.Folder;
        }
    }
    for (const QList<Place>* places : {&m_networkMounts, &m_mountable}) {
        for (const Place& place : *places) {
            const QString last = place.Folder.mid(place.Folder.lastIndexOf(u'/') + 1);
            if (IsSameName(last, drive) || IsSameName(last, drive.left(1))) {
                return place.Folder;
            }
        }
    }
    return QString();
}

QString DriveTable::ShareFolder(const QString& share) const {
    const Place* best = nullptr;
    for (const QList<Place>* places : {&m_shares, &m_networkMounts}) {
        for (const Place& place : *places) {
            if (IsWithin(share, place.Name, Qt::CaseInsensitive) &&
                (best == nullptr || place.Name.size() > best->Name.size())) {
                best = &place;
            }
        }
    }
    return best == nullptr ? QString() : Joined(best->Folder, share.mid(best->Name.size()));
}

QString DriveTable::FolderOf(const QString& drive) const {
    QString folder = IsDrive(drive) ? LetterFolder(drive.left(2)) : QString();
    if (!IsShare(folder)) {
        return folder;
    }
    const QString mounted = ShareFolder(folder);
    return mounted.isEmpty() ? folder : mounted;
}

bool DriveTable::IsMounted(const QString& folder) const {
    return m_mountPoints.contains(WithoutEndSlash(folder));
}

QString DriveTable::NativePath(const QString& path) const {
    const QString turned = WithSlashes(path);
    if (IsDrive(turned)) {
        const QString folder = FolderOf(turned);
        return folder.isEmpty() ? turned : MatchCase(Joined(folder, turned.mid(2)));
    }
    if (IsShare(turned) && path.at(0) == path.at(1)) {
        const QString place = ShareFolder(turned);
        return place.isEmpty() ? turned : MatchCase(place);
    }
    return MatchCase(turned);
}

QString DriveTable::RemoteNameOfFolder(const QString& folder) const {
    const Place* best = nullptr;
    for (const QList<Place>* places : {&m_shares, &m_networkMounts, &m_mountable}) {
        for (const Place& place : *places) {
            if (IsWithin(folder, place.Folder, Qt::CaseSensitive) &&
                (best == nullptr || place.Folder.size() > best->Folder.size())) {
                best = &place;
            }
        }
    }
    return best == nullptr ? QString() : Joined(best->Name, folder.mid(best->Folder.size()));
}

QString DriveTable::RemoteName(const QString& drive) const {
    const QString folder = drive.size() == 2 && IsDrive(drive) ? LetterFolder(drive) : QString();
    const QString remote = IsShare(folder) ? folder : RemoteNameOfFolder(folder);
    return remote.isEmpty() ? folder : QString(remote).replace(u'/', u'\\');
}
