#include "app/EndSignals.h"

#include <QSocketNotifier>

#include <atomic>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Where the handler writes; -1 once it has. It is called with a number and nothing else.
std::atomic<int> writeEnd = -1;
static_assert(std::atomic<int>::is_always_lock_free);

void Handle(int number) {
    const int descriptor = writeEnd.exchange(-1);
    if (descriptor >= 0) {
        const int errorBefore = errno;  // it belongs to whatever was interrupted
        const char byte = 0;
        [[maybe_unused]] const ssize_t ignored = write(descriptor, &byte, 1);
        errno = errorBefore;
    } else {
        std::signal(number, SIG_DFL);
        std::raise(number);
    }
}

}  // namespace

EndSignals::EndSignals(std::function<void()> onEnd) : m_onEnd(std::move(onEnd)) {
    constexpr int Interval = 200;  // ms
    m_again.setInterval(Interval);
    connect(&m_again, &QTimer::timeout, this, m_onEnd);
    if (pipe2(m_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    auto* notifier = new QSocketNotifier(m_pipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        m_again.start();
        m_onEnd();
    });
    writeEnd = m_pipe[1];
    Take();
}

void EndSignals::Take() {
    struct sigaction handling {};
    handling.sa_handler = Handle;
    handling.sa_flags = SA_RESTART;
    sigemptyset(&handling.sa_mask);
    for (std::size_t index = 0; index < Numbers.size(); ++index) {
        sigaction(Numbers.at(index), nullptr, &m_before.at(index));
        if (m_before.at(index).sa_handler != SIG_IGN) {
            sigaction(Numbers.at(index), &handling, nullptr);
        }
    }
}

EndSignals::~EndSignals() {
    if (m_pipe[0] < 0) {
        return;
    }
    for (std::size_t index = 0; index < Numbers.size(); ++index) {
        sigaction(Numbers.at(index), &m_before.at(index), nullptr);
    }
    writeEnd = -1;
    close(m_pipe[0]);
    close(m_pipe[1]);
}
