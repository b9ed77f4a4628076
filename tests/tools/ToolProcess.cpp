#include "tools/ToolProcess.h"

#include <QElapsedTimer>

#include <grp.h>
#include <poll.h>
#include <sys/resource.h>
#include <unistd.h>
#include <csignal>

namespace {
constexpr int LongestRun = 60000;   // ms
constexpr int LongestWait = 30000;  // ms
constexpr int AskEvery = 2;         // ms
constexpr uid_t Nobody = 65534;
}  // namespace

ToolProcess::ToolProcess(const QString& program, const QStringList& arguments,
                         const std::function<void()>& prepare) {
    m_process.setChildProcessModifier(prepare);
    m_process.start(program, arguments);
    m_process.waitForStarted(LongestRun);
}

ToolProcess::~ToolProcess() {
    if (IsRunning()) {
        m_process.kill();
        m_process.waitForFinished(LongestRun);
    }
}

void ToolProcess::Signal(int number) const {
    kill(static_cast<pid_t>(m_process.processId()), number);
}

ToolResult ToolProcess::Finish() {
    ToolResult result;
    const bool hasEnded = m_process.state() == QProcess::NotRunning || m_process.waitForFinished(LongestRun);
    if (hasEnded && m_process.exitStatus() == QProcess::NormalExit &&
        m_process.error() != QProcess::FailedToStart) {
        result.Code = m_process.exitCode();
    }
    result.Out = QString::fromUtf8(m_process.readAllStandardOutput());
    result.Error = QString::fromUtf8(m_process.readAllStandardError());
    return result;
}

ToolResult RunData(const QStringList& arguments, const std::function<void()>& prepare) {
    return ToolProcess(QStringLiteral(LARKSPAN_DATA_PROGRAM), arguments, prepare).Finish();
}

ToolResult RunGateway(const QStringList& arguments, const std::function<void()>& prepare) {
    return ToolProcess(QStringLiteral(LARKSPAN_GATEWAY_PROGRAM), arguments, prepare).Finish();
}

bool WaitFor(const std::function<bool()>& condition) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > LongestWait) {
            return false;
        }
        poll(nullptr, 0, AskEvery);
    }
    return true;
}

void BecomeNobody() {
    if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(Nobody) != 0 || setuid(Nobody) != 0)) {
        _exit(99);
    }
}

std::function<void()> WithFilesUpTo(qint64 bytes) {
    return [bytes] {
        const auto size = static_cast<rlim_t>(bytes);
        const rlimit limit{size, size};
        setrlimit(RLIMIT_FSIZE, &limit);
        std::signal(SIGXFSZ, SIG_IGN);
    };
}
