#include "platform/Drives.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

#include "support/Environment.h"
#include "support/FakeMount.h"
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
    EXPECT_FALSE(SystemDrives().RestoreNetworkDrive(0, u"X:"_s)) << "the outcome is not told";
    EXPECT_EQ(mount.Calls(), QList<QByteArray>{m_root.path().toLocal8Bit()});
}

TEST_F(DrivesTest, RestoringADriveWaitsUntilItIsThere) {
    const QString file = m_root.filePath(u"a.mdb"_s);
    const FakeMount mount("sleep 0.2; touch '" + file.toLocal8Bit() + "'");
    SystemDrives().RestoreNetworkDrive(0, u"X:"_s);
    EXPECT_TRUE(QFileInfo::exists(file));
}

TEST_F(DrivesTest, ALetterThatOnlyFstabKnowsIsRestored) {
    ASSERT_TRUE(QDir().mkpath(m_root.filePath(u"mnt/v"_s)));
    const QString fstab = m_root.filePath(u"fstab"_s);
    MakeFile(fstab, "//server/office " + m_root.filePath(u"mnt/v"_s).toUtf8() + " cifs noauto,user 0 0\n");
    const FakeMount mount;
    SystemDrives drives(fstab);
    drives.RestoreNetworkDrive(0, u"V:"_s);
    EXPECT_EQ(mount.Calls(), QList<QByteArray>{m_root.filePath(u"mnt/v"_s).toLocal8Bit()});
    EXPECT_EQ(drives.GetNetworkConnection(u"V:"_s), u"\\\\server\\office"_s);
}

TEST_F(DrivesTest, WithoutAProgramThatMountsNothingHappens) {
    const EnvironmentVariable path("PATH", m_root.path().toLocal8Bit());
    EXPECT_FALSE(SystemDrives().RestoreNetworkDrive(0, u"X:"_s));
}

TEST_F(DrivesTest, RestoringWhatIsMountedOrUnknownDoesNothing) {
    MakeFile(m_drivesIni, "[Drives]\nX:=" + m_root.path().toUtf8() + "\nY:=/proc\n");
    const FakeMount mount;
    SystemDrives().RestoreNetworkDrive(0, u"Y:"_s);
    SystemDrives().RestoreNetworkDrive(0, u"Q:"_s);
    SystemDrives().RestoreNetworkDrive(0, QString());
    EXPECT_EQ(mount.Calls(), QList<QByteArray>());
    SystemDrives().RestoreNetworkDrive(0, u"X:"_s);
    EXPECT_EQ(mount.Calls(), QList<QByteArray>{m_root.path().toLocal8Bit()});
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
