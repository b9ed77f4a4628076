#pragma once

#include "e2e/RealProgram.h"
#include "e2e/Trayer.h"

#include <QProcessEnvironment>
#include <QThread>

#include <csignal>

/// The program as a process of its own.
class Started {
public:
    /// `bus` is the address of its session bus; empty: that of the test.
    explicit Started(const RealOffice& office, const QString& bus = {}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        if (!bus.isEmpty()) {
            environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus);
        }
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral(LARKSPAN), {QStringLiteral("--data"), office.Folder(),
                                                   QStringLiteral("--palette"), QStringLiteral("light")});
        EXPECT_TRUE(m_process.waitForStarted());
    }
    ~Started() {
        m_process.kill();
        m_process.waitForFinished();
    }
    Started(const Started&) = delete;
    Started& operator=(const Started&) = delete;

    /// The main window's number while it shows, or empty.
    [[nodiscard]] QString Window() const {
        return Visible({QStringLiteral("--name"), QStringLiteral("^Larkspan Messenger$")}).value(0);
    }
    /// The numbers of all its windows that show.
    [[nodiscard]] QStringList Windows() const { return Visible({}); }
    void WaitForWindow() const {
        // Looked for anew each time: the splash, which comes first, has the same title.
        Driver::WaitFor(QStringLiteral("the window in front"), [this] {
            const QString window = Window();
            // The window manager may name a window that is gone, whose number the next one has again.
            return !window.isEmpty() && RealInput::Output({QStringLiteral("getactivewindow")}) == window &&
                   RealInput::Output({QStringLiteral("getwindowfocus"), QStringLiteral("-f")}) == window;
        });
    }
    /// The number of its window in the tray, or empty: the small one.
    [[nodiscard]] QString TrayIcon() const {
        constexpr int LargestIcon = 32;
        const QStringList windows = Windows();
        for (const QString& window : windows) {
            // WINDOW=, X=, Y=, WIDTH=, HEIGHT=, SCREEN=
            const QStringList place =
                RealInput::Output({QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), window})
                    .split(u'\n');
            const int width = place.value(3).section(u'=', 1).toInt();
            if (width > 1 && width <= LargestIcon) {
                return window;
            }
        }
        return {};
    }
    [[nodiscard]] bool HasEnded() const { return m_process.state() == QProcess::NotRunning; }
    QProcess& Process() { return m_process; }

private:
    [[nodiscard]] QStringList Visible(const QStringList& condition) const {
        return RealInput::Output(QStringList{QStringLiteral("search"), QStringLiteral("--all"),
                                             QStringLiteral("--onlyvisible"), QStringLiteral("--pid"),
                                             QString::number(m_process.processId())} +
                                 condition)
            .split(u'\n', Qt::SkipEmptyParts);
    }

    QProcess m_process;
};

/// A helper of the desktop that runs until it is stopped.
class DesktopProcess {
public:
    DesktopProcess(const QString& program, const QStringList& arguments, const QString& bus = {}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        if (!bus.isEmpty()) {
            environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus);
        }
        m_process.setProcessEnvironment(environment);
        m_process.setStandardErrorFile(QProcess::nullDevice());  // what a bus says in a container is no news
        m_process.start(program, arguments);
        EXPECT_TRUE(m_process.waitForStarted()) << program.toStdString();
    }
    ~DesktopProcess() { Stop(); }
    DesktopProcess(const DesktopProcess&) = delete;
    DesktopProcess& operator=(const DesktopProcess&) = delete;

    void Freeze() { ::kill(static_cast<pid_t>(m_process.processId()), SIGSTOP); }
    void Stop() {
        m_process.kill();
        m_process.waitForFinished();
    }
    /// Throws DriverError if no line comes.
    [[nodiscard]] QString ReadLine() {
        constexpr int Patience = 60000;  // ms
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(Patience)) {
                throw DriverError(m_process.program() + QStringLiteral(" says nothing"));
            }
        }
        return QString::fromUtf8(m_process.readLine()).trimmed();
    }
    void Write(const QString& line) { m_process.write(line.toUtf8() + '\n'); }

private:
    QProcess m_process;
};

/// An old tray, in which programs embed a window.
class EmbeddingTray {
public:
    EmbeddingTray() : m_process(QStringLiteral("trayer"), TrayerArguments()) {}
    void Die() { m_process.Stop(); }

private:
    DesktopProcess m_process;
};

/// A session bus of one test's own.
class SessionBus {
public:
    SessionBus()
        : m_process(QStringLiteral("dbus-daemon"),
                    {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                     QStringLiteral("--print-address=1")}),
          Address(m_process.ReadLine()) {
        EXPECT_TRUE(Address.startsWith(QStringLiteral("unix:"))) << Address.toStdString();
    }
    void Die() { m_process.Stop(); }

private:
    DesktopProcess m_process;

public:
    QString Address;
};

/// A panel that draws the items itself.
class HostTray {
public:
    explicit HostTray(const SessionBus& bus) : m_process(QStringLiteral(STATUS_HOST), {}, bus.Address) {
        EXPECT_EQ(m_process.ReadLine(), QStringLiteral("ready"));
    }
    [[nodiscard]] QString Ask(const QString& word) {
        m_process.Write(word);
        return m_process.ReadLine();
    }
    /// It is there, and answers nobody any more.
    void Freeze() { m_process.Freeze(); }
    void Die() { m_process.Stop(); }

private:
    DesktopProcess m_process;
};
