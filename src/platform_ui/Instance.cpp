#include "platform_ui/Instance.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace {

/// Milliseconds that a second start waits for the socket; the kernel takes the request even from a busy copy.
constexpr int RequestTimeout = 2000;
const QByteArray ShowRequest = QByteArrayLiteral("show\n");

bool IsOwnFolder(const QString& path) {
    struct stat state = {};
    const QByteArray name = QFile::encodeName(path);
    return lstat(name.constData(), &state) == 0 && S_ISDIR(state.st_mode) && state.st_uid == getuid() &&
           access(name.constData(), W_OK) == 0;
}

/// "host:10.1" is screen 1 of the display "host:10"; ":0" and ":0.0" are one session.
QString WithoutScreen(const QString& display) {
    const qsizetype point = display.indexOf(u'.', display.lastIndexOf(u':') + 1);
    return point < 0 ? display : display.left(point);
}

/// Cleaners of runtime folders pass over what is marked so, however old it is.
void MarkAsInUse(const QByteArray& path) {
    struct stat state = {};
    if (lstat(path.constData(), &state) == 0) {
        [[maybe_unused]] const int ignored = chmod(path.constData(), (state.st_mode & 0777U) | S_ISVTX);
    }
}

}  // namespace

LocalInstance::LocalInstance(const QString& folder, const QString& session)
    : m_lockPath(folder + QStringLiteral("/larkspan-") + session + QStringLiteral(".lock")),
      m_socketPath(folder + QStringLiteral("/larkspan-") + session + QStringLiteral(".socket")) {
    if (folder.isEmpty()) {
        m_lockPath.clear();
    }
    connect(&m_refresh, &QTimer::timeout, this, &LocalInstance::KeepFresh);
}

LocalInstance::~LocalInstance() {
    Release();
}

bool LocalInstance::IsPreviousInstance() {
    if (m_lock >= 0 || m_lockPath.isEmpty()) {
        return false;
    }
    // Not inherited: a program started by this one must not keep the claim alive.
    const int lock = open(QFile::encodeName(m_lockPath).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (lock < 0) {
        return false;
    }
    if (flock(lock, LOCK_EX | LOCK_NB) != 0) {
        const bool isHeld = errno == EWOULDBLOCK;
        close(lock);
        return isHeld;
    }
    m_lock = lock;
    MarkAsInUse(QFile::encodeName(m_lockPath));
    Listen();
    m_refresh.start(RefreshInterval);
    return false;
}

void LocalInstance::Listen() {
    // Only the holder of the lock comes here, so a socket that lies there is left from a crash.
    QLocalServer::removeServer(m_socketPath);
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server.get(), &QLocalServer::newConnection, this, &LocalInstance::AnswerRequests);
    if (m_server->listen(m_socketPath)) {
        MarkAsInUse(QFile::encodeName(m_socketPath));
    } else {
        m_server = nullptr;
    }
}

void LocalInstance::KeepFresh() {
    for (const QString& path : {m_lockPath, m_socketPath}) {
        utimensat(AT_FDCWD, QFile::encodeName(path).constData(), nullptr, AT_SYMLINK_NOFOLLOW);
    }
}

void LocalInstance::AnswerRequests() {
    while (QLocalSocket* socket = m_server->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            if (socket->canReadLine() && socket->readLine() == ShowRequest && m_onShow) {
                m_onShow();
            }
        });
        if (socket->bytesAvailable() > 0) {
            Q_EMIT socket->readyRead();
        }
    }
}

bool LocalInstance::RequestShow() {
    QLocalSocket socket;
    socket.connectToServer(m_socketPath, QIODevice::WriteOnly);
    if (!socket.waitForConnected(RequestTimeout)) {
        return false;
    }
    socket.write(ShowRequest);
    const bool isTold = socket.flush() || socket.waitForBytesWritten(RequestTimeout);
    socket.disconnectFromServer();
    return isTold;
}

void LocalInstance::Release() {
    m_refresh.stop();    // from here on the files are those of whoever comes next
    m_server = nullptr;  // before the lock: whoever gets that makes a socket of the same name
    if (m_lock >= 0) {
        close(std::exchange(m_lock, -1));
    }
}

QString LocalInstance::RuntimeFolder() {
    QString given = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!given.isEmpty() && IsOwnFolder(given)) {
        return given;
    }
    const QString own = QDir::tempPath() + QStringLiteral("/larkspan-%1").arg(getuid());
    if (mkdir(QFile::encodeName(own).constData(), 0700) != 0 && errno != EEXIST) {
        return {};
    }
    return IsOwnFolder(own) ? own : QString();
}

QString LocalInstance::SessionName() {
    for (const char* name : {"WAYLAND_DISPLAY", "DISPLAY", "XDG_SESSION_ID"}) {
        QString value = qEnvironmentVariable(name);
        if (!value.isEmpty()) {
            if (qstrcmp(name, "DISPLAY") == 0) {
                value = WithoutScreen(value);
            }
            for (QChar& letter : value) {
                const bool isPlain = letter.unicode() < 128 && letter.isLetterOrNumber();
                letter = isPlain ? letter : QChar(u'-');
            }
            return value;
        }
    }
    return QStringLiteral("0");
}
