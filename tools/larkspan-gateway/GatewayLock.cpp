#include "larkspan-gateway/GatewayLock.h"

#include "platform/Drives.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace {

std::runtime_error Trouble(const QString& path, int systemError) {
    const QString reason = QString::fromLocal8Bit(std::strerror(systemError));
    return std::runtime_error(QStringLiteral("%1 cannot be locked: %2").arg(path, reason).toStdString());
}

}  // namespace

GatewayLock::GatewayLock(const QString& folder) {
    const QString path = QDir(NativePath(folder)).filePath(FileName);
    m_descriptor = open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (m_descriptor < 0) {
        throw Trouble(path, errno);
    }
    if (!Set(F_RDLCK, F_OFD_SETLKW)) {
        const int reason = errno;
        close(m_descriptor);
        throw Trouble(path, reason);
    }
}

GatewayLock::~GatewayLock() {
    close(m_descriptor);
}

bool GatewayLock::TryAlone() const {
    return Set(F_WRLCK, F_OFD_SETLK);
}

void GatewayLock::Share() const {
    // Giving up a part of a lock that is held does not wait for anybody.
    static_cast<void>(Set(F_RDLCK, F_OFD_SETLK));
}

bool GatewayLock::Set(short type, int command) const {
    // Locks of the open file, not of the process: they are not lost when another descriptor of the file is
    // closed, and turning a share into the whole is one step that leaves the share where it fails.
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    int result = 0;
    do {
        result = fcntl(m_descriptor, command, &lock);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}
