#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// What stands behind drive letters and the names of network shares on one machine: its mounted network file
/// systems and the table `drives.ini`. A mount belongs to a letter if the last part of its folder is that
/// letter ("/mnt/x", "/media/X:"); so does, behind all others, a network line of fstab, mounted or not. The
/// lines of the section [Drives] go before the mounts:
///
///     [Drives]
///     X:=/mnt/office
///     Y:=\\server\share\folder
///     \\server\share=/mnt/office
class DriveTable {
public:
    /// `mounts` is text as in /proc/self/mounts (fstab(5), octal escapes), `fstab` what could be mounted, in
    /// the same form; `drivesIniPath` may name a file that does not exist.
    DriveTable(const QByteArray& mounts, const QString& drivesIniPath, const QByteArray& fstab = {});
    /// The table of the running machine at this moment; `drives.ini` lies beside the settings files.
    [[nodiscard]] static DriveTable OfThisMachine(const QString& fstabPath = QStringLiteral("/etc/fstab"));

    /// What this machine opens for `path` (see the function NativePath).
    [[nodiscard]] QString NativePath(const QString& path) const;
    /// The remote name behind "X:", as "\\server\share"; the folder itself for a letter that `drives.ini`
    /// gives to a folder which no network file system holds; empty for anything else.
    [[nodiscard]] QString RemoteName(const QString& drive) const;
    /// The folder behind "X:"; empty if the letter stands for nothing.
    [[nodiscard]] QString FolderOf(const QString& drive) const;
    /// Whether a file system, of whatever kind, is mounted on exactly this folder.
    [[nodiscard]] bool IsMounted(const QString& folder) const;

private:
    /// A share or a letter, and the folder that it stands for. Names are kept with slashes: "//server/share",
    /// "X:".
    struct Place {
        QString Name;
        QString Folder;
    };

    void ReadMounts(const QByteArray& mounts);
    void ReadFstab(const QByteArray& fstab);
    void ReadDrivesIni(const QString& path);
    [[nodiscard]] QString LetterFolder(const QString& drive) const;
    [[nodiscard]] QString ShareFolder(const QString& share) const;
    [[nodiscard]] QString RemoteNameOfFolder(const QString& folder) const;

    QList<QString> m_mountPoints;
    QList<Place> m_networkMounts;
    QList<Place> m_mountable;
    QList<Place> m_letters;
    QList<Place> m_shares;
};
