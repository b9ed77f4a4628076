#pragma once

#include "e2e/Driver.h"

#include <QPoint>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <functional>

/// The mouse and the keyboard of the virtual screen.
namespace RealInput {

/// Runs xdotool while this process goes on handling events. Throws DriverError if it fails.
inline void Do(const QStringList& arguments) {
    QProcess tool;
    tool.start(QStringLiteral("xdotool"), arguments);
    Driver::WaitFor(QStringLiteral("xdotool"), [&tool] { return tool.state() == QProcess::NotRunning; });
    if (tool.exitCode() != 0) {
        throw DriverError(QStringLiteral("xdotool ") + arguments.join(u' '));
    }
}

/// What a tool of the screen prints; empty if it fails, for example at a window that is gone. Throws
/// DriverError if it does not end.
inline QString Print(const QString& program, const QStringList& arguments, QByteArray& errors) {
    constexpr int Patience = 60000;  // ms
    QProcess tool;
    tool.start(program, arguments);
    if (!tool.waitForFinished(Patience)) {
        throw DriverError(program + QStringLiteral(" does not end"));
    }
    errors = tool.readAllStandardError();
    return QString::fromLatin1(tool.readAllStandardOutput()).trimmed();
}

inline QString Output(const QStringList& arguments) {
    constexpr int Searches = 50;
    QByteArray errors;
    // A search finds nothing at all if any window of the screen goes while it looks round.
    for (int search = 0; search < Searches; ++search) {
        const QString printed = Print(QStringLiteral("xdotool"), arguments, errors);
        if (arguments.value(0) != u"search" || !errors.contains("X Error")) {
            return printed;
        }
    }
    throw DriverError(QStringLiteral("xdotool search: ") + QString::fromLatin1(errors));
}

/// A gesture that has to be quick, which a machine that is busy elsewhere may tear apart: a person would do
/// it again. Throws DriverError if `isDone` does not come true after some times either.
inline void Repeat(const QString& what, const std::function<void()>& gesture,
                   const std::function<bool()>& isDone) {
    constexpr int Times = 3;
    constexpr int Patience = 7;  // s
    for (int time = 1; time < Times; ++time) {
        gesture();
        try {
            Driver::WaitFor(what, isDone, Patience);
            return;
        } catch (const DriverError&) {
        }
    }
    gesture();
    Driver::WaitFor(what, isDone);
}

inline void Drag(const QPoint& from, const QPoint& to) {
    const auto go = [](const QPoint& point) {
        return QStringList{QStringLiteral("mousemove"), QString::number(point.x()),
                           QString::number(point.y()), QStringLiteral("sleep"), QStringLiteral("0.15")};
    };
    const QStringList arguments = go(from) + QStringList{QStringLiteral("mousedown"), QStringLiteral("1")} +
                                  go(from + QPoint(12, 6)) + go(from + QPoint(24, 12)) + go((from + to) / 2) +
                                  go(to) + go(to + QPoint(2, 1)) +
                                  QStringList{QStringLiteral("mouseup"), QStringLiteral("1")};
    Do(arguments);
}

}  // namespace RealInput
