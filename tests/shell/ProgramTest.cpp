#include "app/TestMachine.h"

#include <QFile>
#include <QProcess>
#include <QTest>

#include <gtest/gtest.h>

#include <csignal>
#include <memory>

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
        return environment;
    }
    [[nodiscard]] QString Log() const {
        QFile file(Home.filePath(Q("applog.txt")));
        return file.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(file.readAll()) : QString();
    }
};

/// One start of the real program.
class Program {
public:
    Program(const Account& account, const QStringList& arguments) {
        m_process.setProcessEnvironment(account.Environment());
        m_process.start(Q(LARKSPAN), arguments);
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
