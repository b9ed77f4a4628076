#include "platform/Folders.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <pwd.h>

#include "support/BrokenDisk.h"
#include "support/Environment.h"
#include "support/Printing.h"

using namespace Qt::StringLiterals;

namespace {

mode_t ModeOf(const QString& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.toLocal8Bit().constData(), &status), 0);
    return status.st_mode & 0777U;
}

/// Without any of the variables that say where folders are.
class FoldersTest : public testing::Test {
protected:
    [[nodiscard]] QString In(const QString& name) const { return m_root.filePath(name); }
    [[nodiscard]] QByteArray Local(const QString& name) const { return In(name).toLocal8Bit(); }

    OrdinaryUser m_user;
    QTemporaryDir m_root;
    EnvironmentVariable m_home{"LARKSPAN_HOME"};
    EnvironmentVariable m_dataHome{"XDG_DATA_HOME"};
    EnvironmentVariable m_dataDirs{"XDG_DATA_DIRS"};
    EnvironmentVariable m_temp{"TEMP"};
};

}  // namespace

TEST_F(FoldersTest, TheApplicationFolderIsLarkspanHomeIfThatIsSet) {
    const EnvironmentVariable home("LARKSPAN_HOME", m_root.path().toLocal8Bit());
    EXPECT_EQ(SystemFolders(m_root.path()).ApplicationFolder(), m_root.path() + u'/');
}

TEST_F(FoldersTest, TheApplicationFolderEndsInOneSeparator) {
    const EnvironmentVariable home("LARKSPAN_HOME", m_root.path().toLocal8Bit() + '/');
    EXPECT_EQ(SystemFolders(m_root.path()).ApplicationFolder(), m_root.path() + u'/');
}

TEST_F(FoldersTest, AMissingLarkspanHomeIsMadeForTheUserAlone) {
    const EnvironmentVariable home("LARKSPAN_HOME", Local(u"a/b/"_s));
    EXPECT_EQ(SystemFolders(m_root.path()).ApplicationFolder(), In(u"a/b/"_s));
    EXPECT_EQ(ModeOf(In(u"a/b"_s)), 0700U);
}

TEST_F(FoldersTest, TheApplicationFolderIsThatOfTheProgramIfItCanBeWritten) {
    EXPECT_EQ(SystemFolders(m_root.path()).ApplicationFolder(), m_root.path() + u'/');
}

TEST_F(FoldersTest, TheApplicationFolderOfAReadOnlyProgramIsTheUsersDataFolder) {
    ASSERT_TRUE(QDir(m_root.path()).mkdir(u"program"_s));
    const ReadOnlyFolder program(In(u"program"_s));
    const EnvironmentVariable dataHome("XDG_DATA_HOME", Local(u"share"_s));
    EXPECT_EQ(SystemFolders(In(u"program"_s)).ApplicationFolder(), In(u"share/larkspan-messenger/"_s));
    EXPECT_EQ(ModeOf(In(u"share/larkspan-messenger"_s)), 0700U);
}

TEST_F(FoldersTest, TheApplicationFolderOfAnInstalledPackageIsTheUsersDataFolderAlsoForTheAdministrator) {
    ASSERT_TRUE(QDir(m_root.path()).mkpath(u"usr/bin"_s));
    ASSERT_TRUE(QDir(m_root.path()).mkpath(u"usr/share/larkspan-messenger"_s));
    const EnvironmentVariable dataHome("XDG_DATA_HOME", Local(u"share"_s));
    EXPECT_EQ(SystemFolders(In(u"usr/bin"_s)).ApplicationFolder(), In(u"share/larkspan-messenger/"_s));
}

TEST_F(FoldersTest, TheUsersDataFolderLiesInTheHomeFolderIfNoOtherIsNamed) {
    ASSERT_TRUE(QDir(m_root.path()).mkdir(u"program"_s));
    const ReadOnlyFolder program(In(u"program"_s));
    const EnvironmentVariable home("HOME", m_root.path().toLocal8Bit());
    const QString expected = In(u".local/share/larkspan-messenger/"_s);
    EXPECT_EQ(SystemFolders(In(u"program"_s)).ApplicationFolder(), expected);
    const EnvironmentVariable relative("XDG_DATA_HOME", "relative/folder");
    EXPECT_EQ(SystemFolders(In(u"program"_s)).ApplicationFolder(), expected);
}

TEST_F(FoldersTest, TheProgramsFolderIsFoundOut) {
    EXPECT_EQ(SystemFolders().ShareFolder().isEmpty(), false);
    const EnvironmentVariable home("LARKSPAN_HOME", m_root.path().toLocal8Bit());
    EXPECT_EQ(SystemFolders().ApplicationFolder(), m_root.path() + u'/');
}

TEST_F(FoldersTest, TheShareFolderLiesBesideTheProgram) {
    ASSERT_TRUE(QDir(m_root.path()).mkpath(u"usr/bin"_s));
    ASSERT_TRUE(QDir(m_root.path()).mkpath(u"usr/share/larkspan-messenger"_s));
    EXPECT_EQ(SystemFolders(In(u"usr/bin"_s)).ShareFolder(), In(u"usr/share/larkspan-messenger/"_s));
}

TEST_F(FoldersTest, TheShareFolderIsLookedForAmongTheSystemsDataFolders) {
    ASSERT_TRUE(QDir(m_root.path()).mkpath(u"second/larkspan-messenger"_s));
    const EnvironmentVariable dataDirs("XDG_DATA_DIRS", Local(u"first"_s) + ':' + Local(u"second/"_s));
    EXPECT_EQ(SystemFolders(In(u"bin"_s)).ShareFolder(), In(u"second/larkspan-messenger/"_s));
}

TEST_F(FoldersTest, AMissingShareFolderIsTheOneThatWouldLieBesideTheProgram) {
    const EnvironmentVariable dataDirs("XDG_DATA_DIRS", Local(u"first"_s));
    EXPECT_EQ(SystemFolders(In(u"bin"_s)).ShareFolder(), In(u"share/larkspan-messenger/"_s));
}

TEST_F(FoldersTest, TheTempFolderIsTheVariableTempWithASeparator) {
    const EnvironmentVariable temp("TEMP", "/var/tmp");
    EXPECT_EQ(SystemFolders(m_root.path()).TempFolder(), u"/var/tmp/"_s);
    const EnvironmentVariable windows("TEMP", "C:\\Temp\\");
    EXPECT_EQ(SystemFolders(m_root.path()).TempFolder(), u"C:\\Temp\\"_s);
}

TEST_F(FoldersTest, WithoutTempTheTempFolderIsTheApplicationFolder) {
    EXPECT_EQ(SystemFolders(m_root.path()).TempFolder(), m_root.path() + u'/');
    const EnvironmentVariable temp("TEMP", "");
    EXPECT_EQ(SystemFolders(m_root.path()).TempFolder(), m_root.path() + u'/');
}

TEST_F(FoldersTest, TheCurrentFolderEndsInASeparator) {
    EXPECT_EQ(SystemFolders(m_root.path()).CurrentFolder(), QDir::currentPath() + u'/');
}

TEST_F(FoldersTest, MissingNamesOfComputerAndUserAreFilledIn) {
    const EnvironmentVariable computer("COMPUTERNAME");
    const EnvironmentVariable user("USERNAME", "");
    CompleteEnvironment();
    EXPECT_EQ(qEnvironmentVariable("COMPUTERNAME"), QSysInfo::machineHostName().toUpper());
    EXPECT_FALSE(qEnvironmentVariableIsEmpty("COMPUTERNAME"));
    EXPECT_EQ(qgetenv("USERNAME"), QByteArray(getpwuid(geteuid())->pw_name));
}

TEST_F(FoldersTest, NamesThatTheSessionSetStay) {
    const EnvironmentVariable computer("COMPUTERNAME", "FRONTDESK");
    const EnvironmentVariable user("USERNAME", "mary");
    CompleteEnvironment();
    EXPECT_EQ(qgetenv("COMPUTERNAME"), QByteArray("FRONTDESK"));
    EXPECT_EQ(qgetenv("USERNAME"), QByteArray("mary"));
}
