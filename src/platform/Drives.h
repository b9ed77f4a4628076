#pragma once

#include <QString>

/// Network drives: letters and what is mounted under them.
class Drives {
public:
    virtual ~Drives() = default;
    /// The remote name behind "X:", as "\\server\share"; empty if the letter stands for nothing.
    [[nodiscard]] virtual QString GetNetworkConnection(const QString& drive) const = 0;
    /// Brings a mapped drive back; when it returns, the drive is there if it could be had soon. The outcome
    /// is not told: always false.
    virtual bool RestoreNetworkDrive(int window, const QString& drive) = 0;
};

/// The drives of this machine: mounted network file systems (cifs, smb3, nfs), the table `drives.ini`
/// (one line "X:=/mnt/office" or "\\server\share=/mnt/office" in its section [Drives]) in the settings
/// folder, and the network lines of fstab; see DriveTable. Restoring a drive runs "mount" on its folder,
/// which does what the administrator's fstab says, unless something is mounted there, and waits for it up to
/// 5 s without letting events through; a mount that takes longer goes on by itself.
class SystemDrives final : public Drives {
public:
    explicit SystemDrives(const QString& fstabPath = QStringLiteral("/etc/fstab")) : m_fstabPath(fstabPath) {}
    [[nodiscard]] QString GetNetworkConnection(const QString& drive) const override;
    bool RestoreNetworkDrive(int window, const QString& drive) override;

private:
    QString m_fstabPath;
};

/// Turns any path into what this machine opens, at the last moment before it is opened: backslashes become
/// slashes, "X:\..." and "\\server\share\..." are looked up among the mounted network file systems and in
/// `drives.ini`, and a name that does not exist as written is matched without regard to case. A path that
/// cannot be resolved comes back with its separators turned. The empty path stays empty. One system call for
/// a path from "/" without backslashes that exists.
[[nodiscard]] QString NativePath(const QString& path);
