#include "app/TestMachine.h"
#include "support/Environment.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <functional>
#include <memory>

#include <unistd.h>

namespace {

constexpr int Deadline = 60000;

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

/// A user's account with an office: home, settings, session and application folder of its own.
struct Account {
    QTemporaryDir Home;
    mutable TempOffice Office;

    [[nodiscard]] QProcessEnvironment Environment() const {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name :
             {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "LARKSPAN_HOME"}) {
            environment.insert(Q(name), Home.path());
        }
        environment.insert(Q("TEMP"), Home.path() + Q("/"));
        environment.insert(Q("QT_QPA_PLATFORM"), Q("offscreen"));
        environment.remove(Q("DBUS_SESSION_BUS_ADDRESS"));
        return environment;
    }
    [[nodiscard]] QString Log() const {
        QFile file(Home.filePath(Q("applog.txt")));
        return file.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(file.readAll()) : QString();
    }
};

/// Makes an output of the process a pipe that nobody reads any more; runs in the child, before the program.
void LoseReader(int output) {
    std::array<int, 2> pipe{};
    if (::pipe(pipe.data()) != 0 || dup2(pipe[1], output) < 0 || close(pipe[0]) != 0) {
        _exit(98);
    }
    close(pipe[1]);
}

/// One start of the real program.
class Program {
public:
    Program(const Account& account, const QStringList& arguments, const std::function<void()>& inChild = {})
        : Program(account, Q(LARKSPAN), arguments, inChild) {}
    Program(const Account& account, const QString& path, const QStringList& arguments,
            const std::function<void()>& inChild) {
        m_process.setProcessEnvironment(account.Environment());
        m_process.setChildProcessModifier(inChild);
        m_process.start(path, arguments);
    }
    ~Program() { Kill(); }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    bool WaitForEnd() {
        return m_process.state() == QProcess::NotRunning || m_process.waitForFinished(Deadline);
    }
    [[nodiscard]] bool IsRunning() const { return m_process.state() != QProcess::NotRunning; }
    [[nodiscard]] int ExitCode() const { return m_process.exitCode(); }
    QProcess& Process() { return m_process; }
    void Kill() {
        m_process.kill();
        m_process.waitForFinished(Deadline);
    }

private:
    QProcess m_process;
};

/// The program has come up when it has written its window's handle.
bool IsUp(const Account& account) {
    return QTest::qWaitFor([&] { return QFile::exists(account.Home.filePath(Q("hwnd.sms"))); }, Deadline);
}

/// Whether the process has a handler of its own for the signal.
bool IsCaught(qint64 process, int number) {
    QFile status(Q("/proc/%1/status").arg(process));
    if (!status.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QByteArray text = status.readAll();
    const QByteArray field = "SigCgt:";
    const qsizetype start = text.indexOf(field) + field.size();
    const quint64 caught =
        text.mid(start, text.indexOf('\n', start) - start).trimmed().toULongLong(nullptr, 16);
    return (caught >> (number - 1) & 1U) != 0;
}

/// It has a main window, and signals find it ready.
bool IsReadyFor(const Account& account, Program& program, int number) {
    return IsUp(account) &&
           QTest::qWaitFor([&] { return IsCaught(program.Process().processId(), number); }, Deadline);
}

void Signal(Program& program, int number) {
    ASSERT_EQ(kill(static_cast<pid_t>(program.Process().processId()), number), 0);
}

}  // namespace

TEST(Program, HelpAndVersionNeedNoWindowSystem) {
    const Account account;
    Program help(account, {Q("--help"), Q("-platform"), Q("none")});
    ASSERT_TRUE(help.WaitForEnd());
    EXPECT_EQ(help.ExitCode(), 0);
    EXPECT_TRUE(help.Process().readAllStandardOutput().startsWith("Usage: larkspan"));
    Program version(account, {Q("--version"), Q("-platform"), Q("none")});
    ASSERT_TRUE(version.WaitForEnd());
    EXPECT_TRUE(version.Process().readAllStandardOutput().startsWith("Larkspan Messenger "));
}

TEST(Program, AFolderThatIsNoOfficeIsRefusedBeforeAnythingIsChanged) {
    const Account account;
    Program program(account, {Q("--data"), account.Home.path()});
    ASSERT_TRUE(program.WaitForEnd());
    EXPECT_EQ(program.ExitCode(), 2);
    EXPECT_TRUE(program.Process().readAllStandardError().contains("larkspan-data create"));
}

TEST(Program, ASecondStartEndsAtOnceAndTheFirstLivesOn) {
    const Account account;
    const QStringList arguments = {Q("--data"), account.Office.DataFolder.path(), Q("/error")};
    Program first(account, arguments);
    ASSERT_TRUE(IsUp(account));
    Program second(account, arguments);
    ASSERT_TRUE(second.WaitForEnd());
    EXPECT_EQ(second.ExitCode(), 0);
    EXPECT_TRUE(first.IsRunning());
}

TEST(Program, AfterACrashTheNextStartComesUpAndIsTheOneThatASecondStartFinds) {
    const Account account;
    const QStringList arguments = {Q("--data"), account.Office.DataFolder.path()};
    {
        Program crashed(account, arguments);
        ASSERT_TRUE(IsUp(account));
        crashed.Kill();
    }
    // The crash leaves the handle behind, and its number may be somebody else's window by now.
    const QByteArray stale = "12345\r\n";
    ASSERT_TRUE(account.Office.Files.Replace(account.Home.filePath(Q("hwnd.sms")), stale));
    Program restarted(account, arguments);
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return account.Office.Files.Read(account.Home.filePath(Q("hwnd.sms"))) != stale; }, Deadline));
    Program second(account, arguments);
    ASSERT_TRUE(second.WaitForEnd());
    EXPECT_EQ(second.ExitCode(), 0);
    EXPECT_TRUE(restarted.IsRunning());
}

TEST(Program, OfTwoStartsAtTheSameMomentExactlyOneIsLeft) {
    const Account account;
    const QStringList arguments = {Q("--data"), account.Office.DataFolder.path()};
    Program one(account, arguments);
    Program other(account, arguments);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !one.IsRunning() || !other.IsRunning(); }, Deadline));
    ASSERT_TRUE(IsUp(account));
    EXPECT_NE(one.IsRunning(), other.IsRunning());
}

TEST(Program, AStartWhileTheFirstIsBusyDoesNotWaitForIt) {
    const Account account;
    const QStringList arguments = {Q("--data"), account.Office.DataFolder.path()};
    Program first(account, arguments);
    ASSERT_TRUE(IsUp(account));
    ASSERT_EQ(kill(static_cast<pid_t>(first.Process().processId()), SIGSTOP), 0);
    Program second(account, arguments);
    EXPECT_TRUE(second.WaitForEnd());
    ASSERT_EQ(kill(static_cast<pid_t>(first.Process().processId()), SIGCONT), 0);
    EXPECT_TRUE(first.IsRunning());
}

TEST(Program, ALogLineThatNobodyReadsAnyMoreDoesNotEndTheProgram) {
    const Account account;
    Program program(account, {Q("--data"), account.Office.DataFolder.path(), Q("/error")},
                    [] { LoseReader(STDERR_FILENO); });
    ASSERT_TRUE(IsUp(account));
    EXPECT_TRUE(program.IsRunning());
    EXPECT_TRUE(account.Log().contains(Q("Application started at "))) << "a line was written at least there";
}

TEST(Program, TheDataToolFinishesItsWorkAlthoughNobodyReadsWhatItSays) {
    const Account account;
    const QString folder = account.Home.filePath(Q("office"));
    Program tool(account, Q(LARKSPAN_DATA), {Q("create"), folder, Q("--sample"), Q("5")}, [] {
        LoseReader(STDOUT_FILENO);
        LoseReader(STDERR_FILENO);
    });
    ASSERT_TRUE(tool.WaitForEnd());
    EXPECT_EQ(tool.Process().exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(tool.ExitCode(), 0);
    Program check(account, Q(LARKSPAN_DATA), {Q("check"), folder}, {});
    ASSERT_TRUE(check.WaitForEnd());
    EXPECT_EQ(check.ExitCode(), 0);
}

TEST(Program, TheEndOfTheSessionClosesItByTheExitPathAndKeepsTheSettings) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        const Account account;
        Program program(account, {Q("--data"), account.Office.DataFolder.path(), Q("/error")});
        ASSERT_TRUE(IsReadyFor(account, program, number)) << number;
        QFile settings(account.Home.filePath(Q("Brenmoor/Larkspan Messenger.ini")));
        ASSERT_TRUE(settings.open(QIODevice::ReadOnly));
        ASSERT_FALSE(settings.readAll().contains("SortBy="));
        settings.close();
        Signal(program, number);
        ASSERT_TRUE(program.WaitForEnd());
        EXPECT_EQ(program.Process().exitStatus(), QProcess::NormalExit) << number;
        EXPECT_EQ(program.ExitCode(), 0) << number;
        ASSERT_TRUE(settings.open(QIODevice::ReadOnly));
        EXPECT_TRUE(settings.readAll().contains("SortBy=0")) << number;
        EXPECT_TRUE(account.Log().contains(Q("Application Terminated"))) << number;
    }
}

TEST(Program, TheEndOfTheSessionClosesItAlsoWhileADialogIsOpen) {
    const Account account;
    const QTemporaryDir plugins;
    ASSERT_TRUE(QDir(plugins.path()).mkdir(Q("generic")));
    ASSERT_TRUE(QFile::copy(Q(PROGRAM_HAND), plugins.filePath(Q("generic/libprogram_hand.so"))));
    const EnvironmentVariable path("QT_PLUGIN_PATH", plugins.path().toLocal8Bit());
    const EnvironmentVariable hand("QT_QPA_GENERIC_PLUGINS", "hand");
    const EnvironmentVariable task("HAND_TASK", "end over a dialog");
    Program program(account, {Q("--data"), account.Office.DataFolder.path(), Q("/error")});
    ASSERT_TRUE(program.WaitForEnd());
    EXPECT_EQ(program.Process().exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.ExitCode(), 0) << program.Process().readAllStandardError().constData();
    EXPECT_TRUE(account.Log().contains(Q("Application Terminated")));
}

TEST(Program, TheEndOfTheSessionTakesTheQuestionsOfTheStartAway) {
    const Account account;
    Program program(account, QStringList());  // nobody has said yet where the office is
    ASSERT_TRUE(QTest::qWaitFor([&] { return IsCaught(program.Process().processId(), SIGTERM); }, Deadline));
    Signal(program, SIGTERM);
    ASSERT_TRUE(program.WaitForEnd());
    EXPECT_EQ(program.Process().exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.ExitCode(), 1);
}

TEST(Program, ASecondSignalEndsItAtOnce) {
    const Account account;
    Program program(account, {Q("--data"), account.Office.DataFolder.path()});
    ASSERT_TRUE(IsReadyFor(account, program, SIGHUP));
    // Stopped in between, so that it finds both when it goes on.
    Signal(program, SIGSTOP);
    Signal(program, SIGTERM);
    Signal(program, SIGINT);
    Signal(program, SIGCONT);
    ASSERT_TRUE(program.WaitForEnd());
    EXPECT_EQ(program.Process().exitStatus(), QProcess::CrashExit);
}

TEST(Program, ASignalThatItsStarterIgnoresStaysIgnored) {
    const Account account;
    Program program(account, {Q("--data"), account.Office.DataFolder.path()},
                    [] { std::signal(SIGHUP, SIG_IGN); });
    ASSERT_TRUE(IsReadyFor(account, program, SIGTERM));
    EXPECT_FALSE(IsCaught(program.Process().processId(), SIGHUP));
}

TEST(Program, ASecondStartWithAnotherFolderSaysThatTheRunningCopyKeepsItsOwn) {
    const Account account;
    Program first(account, {Q("--data"), account.Office.DataFolder.path()});
    ASSERT_TRUE(IsUp(account));
    const Account other;
    Program second(account, {Q("--data"), other.Office.DataFolder.path()});
    ASSERT_TRUE(second.WaitForEnd());
    EXPECT_EQ(second.ExitCode(), 2);
    EXPECT_TRUE(second.Process().readAllStandardError().contains("keeps the folder"));
    EXPECT_TRUE(first.IsRunning());
}
