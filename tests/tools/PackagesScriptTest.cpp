#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// What install_missing did: its exit status, what it printed, and what was called in its name.
struct Installation {
    int Code = -1;
    QString Said;
    QStringList Calls;
};

/// A machine on which the package "there" is installed and no other, made of programs that write down how
/// they were called.
class PackagesScript : public ::testing::Test {
protected:
    PackagesScript() {
        // The shell finds nothing of the real machine but these.
        for (const char* name : {"bash", "env", "grep", "mkdir", "tail"}) {
            QFile::link(QStringLiteral("/usr/bin/") + QLatin1String(name), Path(name));
        }
        Stub("dpkg-query", "for name; do :; done; [ \"$name\" = there ] && echo installed");
        Stub("sleep", ":");
        Stub("apt-get", "echo \"apt-get $*\" >>\"$CALLS\"");
    }
    [[nodiscard]] QString Path(const char* name) const { return m_folder.filePath(QLatin1String(name)); }
    void Stub(const char* name, const char* body) {
        QFile program(Path(name));
        ASSERT_TRUE(program.open(QIODevice::WriteOnly));
        program.write(QByteArray("#!") + Path("bash").toUtf8() + "\n" + body + "\n");
        program.close();
        program.setPermissions(program.permissions() | QFile::ExeOwner | QFile::ExeUser);
    }
    void IsRoot() { Stub("id", "echo 0"); }
    void IsUser() { Stub("id", "echo 1000"); }
    void HasSudo() { Stub("sudo", "[ \"$1\" = -n ] && exit; echo \"sudo $1\" >>\"$CALLS\"; exec \"$@\""); }
    Installation Install(const QString& packages) {
        QProcess shell;
        QProcessEnvironment environment;
        environment.insert(QStringLiteral("PATH"), m_folder.path());
        environment.insert(QStringLiteral("CALLS"), Path("calls"));
        environment.insert(QStringLiteral("root"), m_folder.path());
        shell.setProcessEnvironment(environment);
        shell.setProcessChannelMode(QProcess::MergedChannels);
        shell.start(Path("bash"),
                    {QStringLiteral("-euc"),
                     QStringLiteral(". " SCRIPTS_FOLDER "/packages.sh; install_missing ") + packages});
        shell.closeWriteChannel();
        Installation result;
        if (shell.waitForFinished()) {
            result.Code = shell.exitCode();
            result.Said = QString::fromUtf8(shell.readAll());
        }
        QFile calls(Path("calls"));
        if (calls.open(QIODevice::ReadOnly)) {
            result.Calls = QString::fromUtf8(calls.readAll()).split(u'\n', Qt::SkipEmptyParts);
        }
        return result;
    }

private:
    QTemporaryDir m_folder;
};

const QString Update = QStringLiteral("apt-get update -qq");
const QString InstallOne = QStringLiteral("apt-get install -y --no-install-recommends one");

TEST_F(PackagesScript, RootInstallsWhatIsMissingAndNothingElse) {
    IsRoot();
    const Installation done = Install(QStringLiteral("one there"));
    EXPECT_EQ(done.Code, 0) << done.Said.toStdString();
    EXPECT_EQ(done.Calls, QStringList({Update, InstallOne}));
    EXPECT_TRUE(done.Said.contains(QStringLiteral("Installing 1 package(s): one")))
        << done.Said.toStdString();
}

TEST_F(PackagesScript, AUserInstallsThroughSudo) {
    IsUser();
    HasSudo();
    const Installation done = Install(QStringLiteral("one there"));
    EXPECT_EQ(done.Code, 0) << done.Said.toStdString();
    EXPECT_EQ(done.Calls,
              QStringList({QStringLiteral("sudo apt-get"), Update, QStringLiteral("sudo env"), InstallOne}));
}

TEST_F(PackagesScript, AUserWithoutSudoIsToldTheOneCommandAndNothingIsInstalled) {
    IsUser();
    const Installation done = Install(QStringLiteral("one there two"));
    EXPECT_EQ(done.Code, 1);
    EXPECT_TRUE(done.Calls.isEmpty());
    EXPECT_TRUE(done.Said.contains(
        QStringLiteral("\n  apt-get update && apt-get install -y --no-install-recommends one two\n")))
        << done.Said.toStdString();
}

TEST_F(PackagesScript, WhereNothingIsMissingNothingIsCalledOrSaid) {
    IsUser();
    const Installation done = Install(QStringLiteral("there"));
    EXPECT_EQ(done.Code, 0);
    EXPECT_TRUE(done.Calls.isEmpty());
    EXPECT_EQ(done.Said.toStdString(), "");
}

TEST_F(PackagesScript, AnInstallationThatFailsIsToldWithTheLog) {
    IsRoot();
    Stub("apt-get", "echo \"E: no room\"; exit 100");
    const Installation done = Install(QStringLiteral("one"));
    EXPECT_EQ(done.Code, 1);
    EXPECT_TRUE(done.Said.contains(QStringLiteral("E: no room"))) << done.Said.toStdString();
    EXPECT_TRUE(done.Said.contains(QStringLiteral("/build/apt.log")));
}

TEST_F(PackagesScript, ASystemWithoutItsKindOfPackagesIsRefused) {
    IsRoot();
    QFile::remove(Path("dpkg-query"));
    const Installation done = Install(QStringLiteral("one"));
    EXPECT_EQ(done.Code, 1);
    EXPECT_TRUE(done.Said.contains(QStringLiteral("Debian 12"))) << done.Said.toStdString();
}

}  // namespace
