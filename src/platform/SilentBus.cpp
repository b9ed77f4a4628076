#include "platform/SilentBus.h"

#include <QByteArray>
#include <QList>
#include <QtGlobal>

#include <algorithm>
#include <cerrno>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr int Patience = 1000;  // ms
const char* const AddressName = "DBUS_SESSION_BUS_ADDRESS";

/// The path of the socket that the session's address names first; empty for an address of another kind.
QByteArray SocketPath() {
    const QByteArray address = qgetenv(AddressName);
    if (address.isEmpty()) {
        return qgetenv("XDG_RUNTIME_DIR") + "/bus";
    }
    const QByteArray kind = "unix:path=";
    const QByteArray first = address.split(';').first().split(',').first();
    return first.startsWith(kind) ? QByteArray::fromPercentEncoding(first.mid(kind.size())) : QByteArray();
}

/// A socket that closes.
class Socket {
public:
    Socket() : m_number(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {}
    ~Socket() {
        if (m_number >= 0) {
            close(m_number);
        }
    }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    /// What becomes of the call: nobody listens there, somebody takes it, or so many wait already that it is
    /// not even taken.
    enum class Call { Nobody, Taken, Full };
    [[nodiscard]] Call Connect(const QByteArray& path) const {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        if (path.isEmpty() || static_cast<size_t>(path.size()) >= sizeof(address.sun_path)) {
            return Call::Nobody;
        }
        std::copy(path.cbegin(), path.cend(), address.sun_path);
        if (m_number >= 0 &&
            connect(m_number, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0) {
            return Call::Taken;
        }
        return m_number >= 0 && errno == EAGAIN ? Call::Full : Call::Nobody;
    }
    /// Greets as a client of a bus does; true if an answer comes in time.
    [[nodiscard]] bool IsAnswering() const {
        // A zero byte comes first, which carries who we are; then who we say we are.
        const QByteArray greeting =
            QByteArray(1, '\0') + "AUTH EXTERNAL " + QByteArray::number(getuid()).toHex() + "\r\n";
        pollfd wanted{m_number, POLLIN, 0};
        return send(m_number, greeting.constData(), static_cast<size_t>(greeting.size()), MSG_NOSIGNAL) ==
                   greeting.size() &&
               poll(&wanted, 1, Patience) > 0;
    }

private:
    int m_number;
};

}  // namespace

void PassOverSilentSessionBus() {
    const Socket socket;
    const Socket::Call call = socket.Connect(SocketPath());
    if (call == Socket::Call::Full || (call == Socket::Call::Taken && !socket.IsAnswering())) {
        qputenv(AddressName, "unix:path=/nonexistent/silent-bus");
    }
}
