#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

/// What a program left when it ended.
struct ToolResult {
    int Code = -1;  // -1: it did not end by itself
    QString Out;
    QString Error;
};

/// One run of a built program.
class ToolProcess {
public:
    /// `prepare` runs in the new process before the program.
    ToolProcess(const QString& program, const QStringList& arguments,
                const std::function<void()>& prepare = {});
    /// A program that still runs is killed.
    ~ToolProcess();

    [[nodiscard]] qint64 Id() const { return m_process.processId(); }
    [[nodiscard]] bool IsRunning() const { return m_process.state() != QProcess::NotRunning; }
    void Signal(int number) const;
    /// Waits at most a minute for the end.
    [[nodiscard]] ToolResult Finish();

private:
    QProcess m_process;
};

[[nodiscard]] ToolResult RunData(const QStringList& arguments, const std::function<void()>& prepare = {});
[[nodiscard]] ToolResult RunGateway(const QStringList& arguments, const std::function<void()>& prepare = {});

/// Asks until the answer is yes, for at most half a minute. False if it never was.
[[nodiscard]] bool WaitFor(const std::function<bool()>& condition);

/// For `prepare`: an ordinary account in place of root, to which permissions mean something. The programs are
/// reachable for it.
void BecomeNobody();
/// For `prepare`: no file of the program can grow beyond this, as on a disk that is full.
[[nodiscard]] std::function<void()> WithFilesUpTo(qint64 bytes);
