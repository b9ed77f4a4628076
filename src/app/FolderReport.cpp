#include "app/FolderReport.h"

#include "app/Machine.h"
#include "core/Log.h"
#include "platform/Drives.h"
#include "platform/Folders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

namespace FolderReport {

namespace {

/// The permissions of the account that the process acts for, which QFileInfo does not ask about.
bool CanBeWritten(const QString& path) {
    QString folder = QDir::cleanPath(NativePath(path));
    while (!QFileInfo::exists(folder) && QFileInfo(folder).path() != folder) {
        folder = QFileInfo(folder).path();
    }
    return faccessat(AT_FDCWD, QFile::encodeName(folder).constData(), W_OK | X_OK, AT_EACCESS) == 0;
}

}  // namespace

void Write(const Machine& machine, const QString& settingsFile) {
    const auto look = [&machine](const QString& name, const QString& folder, const QString& loss) {
        if (!CanBeWritten(folder)) {
            machine.AppLog.Write(QStringLiteral("The %1 folder cannot be written: %2 (%3)")
                                     .arg(name, loss, QDir::cleanPath(folder)));
        }
    };
    if (!settingsFile.isEmpty()) {
        look(QStringLiteral("settings"), QFileInfo(settingsFile).path(),
             QStringLiteral("changes of settings last until the program ends"));
    }
    look(QStringLiteral("application"), machine.Places.ApplicationFolder(),
         QStringLiteral("what is sent does not get into the history"));
    look(QStringLiteral("temporary"), machine.Places.TempFolder(),
         QStringLiteral("a second start may not find this window"));
}

}  // namespace FolderReport
