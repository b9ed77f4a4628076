#pragma once

#include <QString>

/// Network drives: letters and what is mounted under them.
class Drives {
public:
    virtual ~Drives() = default;
    /// The remote name behind "X:", as "\\server\share"; empty if the letter stands for nothing.
    [[nodiscard]] virtual QString GetNetworkConnection(const QString& drive) const = 0;
    /// Asks the machine to bring a mapped drive back, without waiting for it. The outcome is not known:
    /// always false.
    virtual bool RestoreNetworkDrive(int window, const QString& drive) = 0;
};

/// The drives of this machine: mounted network file systems (cifs, smb3, nfs) and the table `drives.ini`
/// (one line "X:=/mnt/office" or "\\server\share=/mnt/office" in its section [Drives]) in the settings
/// folder; see DriveTable. Restoring a drive runs "mount" on its folder, which does what the administrator's
/// fstab says, unless something is mounted there.
class SystemDrives final : public Drives {
public:
    [[nodiscard]] QString GetNetworkConnection(const QString& drive) const override;
    bool RestoreNetworkDrive(int window, const QString& drive) override;
};

/// Turns any path into what this machine opens, at the last moment before it is opened: backslashes become
/// slashes, "X:\..." and "\\server\share\..." are looked up among the mounted network file systems and in
/// `drives.ini`, and a name that does not exist as written is matched without regard to case. A path that
/// cannot be resolved comes back with its separators turned. The empty path stays empty. One system call for
/// a path from "/" without backslashes that exists.
[[nodiscard]] QString NativePath(const QString& path);
