#pragma once

#include <QDateTime>

/// Time as the program sees it. Everything that asks for the time or waits goes through this seam, so that
/// a test moves the time on by itself and never sleeps.
class Clock {
public:
    virtual ~Clock() = default;
    /// Local date and time, whole milliseconds.
    [[nodiscard]] virtual QDateTime Now() const = 0;
    /// Milliseconds since some fixed moment; never goes back.
    [[nodiscard]] virtual qint64 Ticks() const = 0;
    /// Blocks the calling thread for this many milliseconds; 0 or less returns at once.
    virtual void Sleep(int milliseconds) = 0;
};

/// The machine's own clock.
class SystemClock final : public Clock {
public:
    [[nodiscard]] QDateTime Now() const override;
    [[nodiscard]] qint64 Ticks() const override;
    void Sleep(int milliseconds) override;
};
