#include "common/StopSignal.h"

#include <sys/signalfd.h>
#include <unistd.h>
#include <initializer_list>

StopSignal::StopSignal() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&signals, number);
    }
    pthread_sigmask(SIG_BLOCK, &signals, &m_before);
    m_descriptor = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
}

StopSignal::~StopSignal() {
    if (m_descriptor >= 0) {
        close(m_descriptor);
    }
    if (!m_isStopped) {
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }
}

bool StopSignal::IsStopped() {
    signalfd_siginfo info;
    if (!m_isStopped && read(m_descriptor, &info, sizeof info) == static_cast<ssize_t>(sizeof info)) {
        m_isStopped = true;
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }
    return m_isStopped;
}
