#include "platform/Drives.h"

#include <QFile>
#include <QProcess>

#include <memory>

#include <unistd.h>

#include "platform/DriveTable.h"

namespace {

constexpr int MountPatience = 5000;  // ms

bool IsSeparator(QChar character) {
    return character == u'\\' || character == u'/';
}

}  // namespace

QString SystemDrives::GetNetworkConnection(const QString& drive) const {
    return DriveTable::OfThisMachine(m_fstabPath).RemoteName(drive);
}

bool SystemDrives::RestoreNetworkDrive(int /*window*/, const QString& drive) {
    const DriveTable table = DriveTable::OfThisMachine(m_fstabPath);
    const QString folder = table.FolderOf(drive);
    if (!folder.startsWith(u'/') || table.IsMounted(folder)) {
        return false;
    }
    auto mount = std::make_unique<QProcess>();
    mount->setStandardInputFile(QProcess::nullDevice());
    mount->setStandardOutputFile(QProcess::nullDevice());
    mount->setStandardErrorFile(QProcess::nullDevice());
    mount->start(QStringLiteral("mount"), {folder});
    if (!mount->waitForFinished(MountPatience) && mount->state() != QProcess::NotRunning) {
        // Its end would end the mount as well, so it stays until that is done.
        QProcess* const late = mount.release();
        QObject::connect(late, &QProcess::finished, late, &QObject::deleteLater);
    }
    return false;
}

QString NativePath(const QString& path) {
    // Nearly every path is one of this machine, and this is on the road of every file that is opened.
    const bool isPlain =
        path.startsWith(u'/') && !path.startsWith(QStringLiteral("//")) && !path.contains(u'\\');
    if (path.isEmpty() || (isPlain && access(QFile::encodeName(path).constData(), F_OK) == 0)) {
        return path;
    }
    // Two alike: a backslash behind the root folder makes no share of it.
    const bool isShare = path.size() >= 2 && IsSeparator(path.at(0)) && path.at(0) == path.at(1);
    const bool isDrive = path.size() >= 2 && path.at(1) == u':';
    return isShare || isDrive ? DriveTable::OfThisMachine().NativePath(path)
                              : DriveTable({}, {}).NativePath(path);
}
