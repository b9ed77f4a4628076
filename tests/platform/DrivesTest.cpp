#include "platform/Drives.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/Environment.h"
#include "support/Printing.h"

using namespace Qt::StringLiterals;

namespace {

/// The machine's own drives, with a drives.ini beside the test's settings.
class DrivesTest : public testing::Test {
protected:
    DrivesTest() {
        const QSettings settings(QSettings::IniFormat, QSettings::UserScope, u"Brenmoor"_s,
                                 u"Larkspan Messenger"_s);
        m_drivesIni = QFileInfo(settings.fileName()).path() + u"/drives.ini"_s;
        QDir().mkpath(QFileInfo(m_drivesIni).path());
        MakeFile(m_drivesIni, "[Drives]\nX:=" + m_root.path().toUtf8() + "\n");
    }
    ~DrivesTest() override { QFile::remove(m_drivesIni); }

    static void MakeFile(const QString& path, const QByteArray& text) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    QTemporaryDir m_root;
    QString m_drivesIni;
};

/// A program "mount" of the test's own, which tells its arguments.
class FakeMount {
public:
    FakeMount() : m_path("PATH", m_folder.path().toLocal8Bit() + ':' + qgetenv("PATH")) {
        const QByteArray pipe = m_folder.filePath(u"pipe"_s).toLocal8Bit();
        EXPECT_EQ(mkfifo(pipe.constData(), 0600), 0);
        // For reading and writing, so that neither side waits for the other to open it.
        m_pipe = open(pipe.constData(), O_RDWR | O_CLOEXEC);
        QFile program(m_folder.filePath(u"mount"_s));
        EXPECT_TRUE(program.open(QIODevice::WriteOnly));
        program.write("#!/bin/sh\necho \"$@\" > " + pipe + "\n");
        program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    ~FakeMount() { close(m_pipe); }
    FakeMount(const FakeMount&) = delete;
    FakeMount& operator=(const FakeMount&) = delete;

    /// What the next call was given; waits for it, at most `milliseconds`.
    [[nodiscard]] QByteArray NextCall(int milliseconds) const {
        pollfd wait{m_pipe, POLLIN, 0};
        if (poll(&wait, 1, milliseconds) <= 0) {
            return "no call";
        }
        QByteArray text(4096, '\0');
        text.truncate(std::max<ssize_t>(0, read(m_pipe, text.data(), 4096)));
        return text.trimmed();
    }

private:
    QTemporaryDir m_folder;
    EnvironmentVariable m_path;
    int m_pipe = -1;
};

}  // namespace

TEST_F(DrivesTest, TheTableLiesBesideTheSettings) {
    MakeFile(m_root.filePath(u"a.mdb"_s), "");
    EXPECT_EQ(NativePath(u"X:\\A.mdb"_s), m_root.filePath(u"a.mdb"_s));
    EXPECT_EQ(SystemDrives().GetNetworkConnection(u"X:"_s), m_root.path());
}

TEST_F(DrivesTest, ALetterThatStandsForNothingHasNoConnection) {
    EXPECT_EQ(SystemDrives().GetNetworkConnection(u"Q:"_s), u""_s);
    EXPECT_EQ(SystemDrives().GetNetworkConnection(u"[:"_s), u""_s);
}

TEST_F(DrivesTest, APathOfThisMachineStaysAsItIs) {
    MakeFile(m_root.filePath(u"a.mdb"_s), "");
    for (const QString& path :
         {m_root.filePath(u"a.mdb"_s), m_root.path(), u"/"_s, m_root.filePath(u"missing"_s)}) {
        EXPECT_EQ(NativePath(path), path);
    }
    EXPECT_EQ(NativePath(QString()), u""_s);
}

TEST_F(DrivesTest, APathOfThisMachineIsMatchedWithoutRegardToCase) {
    MakeFile(m_root.filePath(u"History.SMS"_s), "");
    EXPECT_EQ(NativePath(m_root.path() + u"\\history.sms"_s), m_root.filePath(u"History.SMS"_s));
    EXPECT_EQ(NativePath(m_root.path() + u"/history.sms"_s), m_root.filePath(u"History.SMS"_s));
}

TEST_F(DrivesTest, AShareThatIsNotMountedComesBackWithItsSeparatorsTurned) {
    EXPECT_EQ(NativePath(u"\\\\no-such-server\\share\\a.mdb"_s), u"//no-such-server/share/a.mdb"_s);
    EXPECT_EQ(NativePath(u"Q:\\a.mdb"_s), u"Q:/a.mdb"_s);
}

TEST_F(DrivesTest, RestoringADriveMountsItsFolder) {
    const FakeMount mount;
    EXPECT_FALSE(SystemDrives().RestoreNetworkDrive(0, u"X:"_s)) << "the outcome is not known";
    EXPECT_EQ(mount.NextCall(10000), m_root.path().toLocal8Bit());
}

TEST_F(DrivesTest, RestoringWhatIsMountedOrUnknownDoesNothing) {
    MakeFile(m_drivesIni, "[Drives]\nX:=" + m_root.path().toUtf8() + "\nY:=/proc\n");
    const FakeMount mount;
    SystemDrives().RestoreNetworkDrive(0, u"Y:"_s);
    SystemDrives().RestoreNetworkDrive(0, u"Q:"_s);
    SystemDrives().RestoreNetworkDrive(0, QString());
    SystemDrives().RestoreNetworkDrive(0, u"X:"_s);
    EXPECT_EQ(mount.NextCall(10000), m_root.path().toLocal8Bit());  // the only call
}

TEST(NativePath, ABackslashBehindASlashIsOneSeparator) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"hwnd.sms"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const QString native = NativePath(folder.path() + u"/\\HWND.sms"_s);
    EXPECT_TRUE(QFileInfo(native).isFile()) << native.toStdString();
    EXPECT_EQ(QDir::cleanPath(native), folder.filePath(u"hwnd.sms"_s));
    EXPECT_EQ(QDir::cleanPath(NativePath(u"/\\TMP"_s)), u"/tmp"_s) << "the root folder is no share";
}
