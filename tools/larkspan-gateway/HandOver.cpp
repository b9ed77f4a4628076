#include "larkspan-gateway/HandOver.h"

#include "platform/Drives.h"

#include <QByteArray>
#include <QFile>

#include <fcntl.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>

JournalHandOver::JournalHandOver(const QString& path) {
    m_descriptor = open(QFile::encodeName(NativePath(path)).constData(),
                        O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    if (m_descriptor < 0) {
        const QString reason = QString::fromLocal8Bit(std::strerror(errno));
        throw std::runtime_error(
            QStringLiteral("the journal %1 cannot be written: %2").arg(path, reason).toStdString());
    }
}

JournalHandOver::~JournalHandOver() {
    close(m_descriptor);
}

bool JournalHandOver::Send(qint32 id) {
    const QByteArray line = QByteArray::number(id) + " sent\n";
    return write(m_descriptor, line.constData(), static_cast<std::size_t>(line.size())) == line.size();
}
