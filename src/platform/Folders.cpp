#include "platform/Folders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QSysInfo>

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString DataName = QStringLiteral("larkspan-messenger");

QString Environment(const char* name) {
    return QFile::decodeName(qgetenv(name));
}

QString WithSeparator(const QString& folder) {
    return folder.endsWith(u'/') || folder.endsWith(u'\\') ? folder : folder + u'/';
}

QString FindProgramFolder() {
    return QCoreApplication::instance() != nullptr
               ? QCoreApplication::applicationDirPath()
               : QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).path();
}

/// Makes the folder and the ones above it that are missing; what is made is the user's own. A failure shows
/// when a file in it is opened.
void MakePrivateFolder(const QString& folder) {
    if (QFileInfo::exists(folder)) {
        return;
    }
    const QString parent = QFileInfo(QDir::cleanPath(folder)).path();
    if (parent != folder) {
        MakePrivateFolder(parent);
    }
    mkdir(QFile::encodeName(QDir::cleanPath(folder)).constData(), 0700);
}

QString UserDataFolder() {
    const QString home = Environment("XDG_DATA_HOME");
    // The XDG base directory rules: a relative path is to be ignored.
    return (home.startsWith(u'/') ? home : QDir::homePath() + QStringLiteral("/.local/share")) + u'/' +
           DataName;
}

QString PackageShare(const QString& programFolder) {
    return QDir::cleanPath(programFolder + QStringLiteral("/../share/") + DataName);
}

bool IsOwnCopy(const QString& programFolder) {
    return !QFileInfo::exists(PackageShare(programFolder)) &&
           faccessat(AT_FDCWD, QFile::encodeName(programFolder).constData(), W_OK, AT_EACCESS) == 0;
}

QByteArray AccountName() {
    const passwd* account = getpwuid(geteuid());
    return account != nullptr ? QByteArray(account->pw_name) : QByteArray::number(qulonglong{geteuid()});
}

}  // namespace

SystemFolders::SystemFolders(const QString& programFolder)
    : m_programFolder(programFolder.isEmpty() ? FindProgramFolder() : programFolder) {}

QString SystemFolders::ApplicationFolder() const {
    QString folder = Environment("LARKSPAN_HOME");
    if (folder.isEmpty()) {
        if (IsOwnCopy(m_programFolder)) {
            return WithSeparator(m_programFolder);
        }
        folder = UserDataFolder();
    }
    MakePrivateFolder(folder);
    return WithSeparator(folder);
}

QString SystemFolders::ShareFolder() const {
    QStringList places{PackageShare(m_programFolder)};
    const QString roots = Environment("XDG_DATA_DIRS");
    for (const QString& root : (roots.isEmpty() ? QStringLiteral("/usr/local/share:/usr/share") : roots)
                                   .split(u':', Qt::SkipEmptyParts)) {
        places.append(WithSeparator(root) + DataName);
    }
    for (const QString& place : places) {
        if (QFileInfo(place).isDir()) {
            return WithSeparator(place);
        }
    }
    return WithSeparator(places.constFirst());
}

QString SystemFolders::TempFolder() const {
    const QString folder = Environment("TEMP");
    return folder.isEmpty() ? ApplicationFolder() : WithSeparator(folder);
}

QString SystemFolders::CurrentFolder() const {
    return WithSeparator(QDir::currentPath());
}

void CompleteEnvironment() {
    if (qEnvironmentVariableIsEmpty("COMPUTERNAME")) {
        qputenv("COMPUTERNAME", QSysInfo::machineHostName().toUpper().toLocal8Bit());
    }
    if (qEnvironmentVariableIsEmpty("USERNAME")) {
        qputenv("USERNAME", AccountName());
    }
}
