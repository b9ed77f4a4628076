#include "platform/Clock.h"

#include <QThread>

#include <chrono>

QDateTime SystemClock::Now() const {
    return QDateTime::currentDateTime();
}

qint64 SystemClock::Ticks() const {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

void SystemClock::Sleep(int milliseconds) {
    if (milliseconds > 0) {
        QThread::msleep(static_cast<unsigned long>(milliseconds));
    }
}
