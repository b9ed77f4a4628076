#include "platform/DriveTable.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "support/Printing.h"

using namespace Qt::StringLiterals;

namespace {

/// A temporary folder with folders and files in it, and a table made of mounts and lines of drives.ini.
class DriveTableTest : public testing::Test {
protected:
    [[nodiscard]] QString Root() const { return m_root.path(); }
    [[nodiscard]] QString In(const QString& name) const { return m_root.filePath(name); }

    void MakeFile(const QString& name) const {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(In(name)).path()));
        QFile file(In(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    [[nodiscard]] DriveTable Table() const { return DriveTable(m_mounts, In(u"drives.ini"_s), m_fstab); }
    void Mount(const QString& source, const QString& folder, const QString& type) {
        m_mounts += (source + u' ' + folder + u' ' + type + u" rw,relatime 0 0\n"_s).toUtf8();
    }
    void WriteDrivesIni(const QString& text) const {
        QFile file(In(u"drives.ini"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.toUtf8());
    }

    QTemporaryDir m_root;
    QByteArray m_fstab;
    QByteArray m_mounts = "proc /proc proc rw 0 0\n/dev/sda1 / ext4 rw 0 0\n";
};

}  // namespace

TEST_F(DriveTableTest, TheEmptyPathStaysEmpty) {
    EXPECT_EQ(Table().NativePath(QString()), u""_s);
}

TEST_F(DriveTableTest, BackslashesBecomeSlashes) {
    MakeFile(u"data/history.sms"_s);
    EXPECT_EQ(Table().NativePath(Root() + u"\\data\\history.sms"_s), In(u"data/history.sms"_s));
    EXPECT_EQ(Table().NativePath(Root() + u"/data\\history.sms"_s), In(u"data/history.sms"_s));
    EXPECT_EQ(Table().NativePath(u"data\\missing.sms"_s), u"data/missing.sms"_s);
}

TEST_F(DriveTableTest, ANameThatExistsIsTakenAsWritten) {
    MakeFile(u"a.mdb"_s);
    MakeFile(u"A.MDB"_s);
    EXPECT_EQ(Table().NativePath(In(u"a.mdb"_s)), In(u"a.mdb"_s));
    EXPECT_EQ(Table().NativePath(In(u"A.MDB"_s)), In(u"A.MDB"_s));
}

TEST_F(DriveTableTest, ANameThatIsMissingIsMatchedWithoutRegardToCase) {
    MakeFile(u"Data/Office/SMSMessages.MDB"_s);
    EXPECT_EQ(Table().NativePath(In(u"data/OFFICE/smsmessages.mdb"_s)), In(u"Data/Office/SMSMessages.MDB"_s));
    EXPECT_EQ(Table().NativePath(In(u"Data/Office/smsmessages.mdb"_s)), In(u"Data/Office/SMSMessages.MDB"_s));
    EXPECT_EQ(Table().NativePath(In(u"DATA/Office/SMSMessages.MDB"_s)), In(u"Data/Office/SMSMessages.MDB"_s));
}

TEST_F(DriveTableTest, AmongNamesThatDifferInCaseAloneTheFirstIsTaken) {
    MakeFile(u"a.MDB"_s);
    MakeFile(u"A.mdb"_s);
    EXPECT_EQ(Table().NativePath(In(u"a.mdb"_s)), In(u"A.mdb"_s));
}

TEST_F(DriveTableTest, AFileThatIsYetToBeMadeComesIntoTheFolderOfThatName) {
    MakeFile(u"Data/x"_s);
    EXPECT_EQ(Table().NativePath(In(u"DATA/new.sms"_s)), In(u"Data/new.sms"_s));
    EXPECT_EQ(Table().NativePath(In(u"DATA/sub/new.sms"_s)), In(u"Data/sub/new.sms"_s));
    EXPECT_EQ(Table().NativePath(In(u"none/new.sms"_s)), In(u"none/new.sms"_s));
}

TEST_F(DriveTableTest, ALinkThatLeadsNowhereIsTakenAsWritten) {
    MakeFile(u"LINK"_s);
    ASSERT_TRUE(QFile::link(In(u"missing"_s), In(u"link"_s)));
    EXPECT_EQ(Table().NativePath(In(u"link"_s)), In(u"link"_s));
}

TEST_F(DriveTableTest, AFolderKeepsItsEndSeparator) {
    MakeFile(u"Data/x"_s);
    EXPECT_EQ(Table().NativePath(Root() + u"\\data\\"_s), In(u"Data/"_s));
}

TEST_F(DriveTableTest, ALetterOfDrivesIniIsItsFolder) {
    MakeFile(u"office/Data/a.mdb"_s);
    WriteDrivesIni(u"[Drives]\nX:="_s + In(u"office"_s) + u"\n"_s);
    EXPECT_EQ(Table().NativePath(u"X:\\Data\\a.mdb"_s), In(u"office/Data/a.mdb"_s));
    EXPECT_EQ(Table().NativePath(u"x:\\data\\A.MDB"_s), In(u"office/Data/a.mdb"_s));
    EXPECT_EQ(Table().NativePath(u"X:/Data/a.mdb"_s), In(u"office/Data/a.mdb"_s));
    EXPECT_EQ(Table().NativePath(u"X:Data\\a.mdb"_s), In(u"office/Data/a.mdb"_s));
    EXPECT_EQ(Table().NativePath(u"X:"_s), In(u"office"_s));
    EXPECT_EQ(Table().NativePath(u"X:\\"_s), In(u"office/"_s));
}

TEST_F(DriveTableTest, ALetterThatStandsForNothingKeepsItsPath) {
    EXPECT_EQ(Table().NativePath(u"Q:\\data\\a.mdb"_s), u"Q:/data/a.mdb"_s);
}

TEST_F(DriveTableTest, ALetterIsTheNetworkMountOfThatName) {
    MakeFile(u"mnt/p/sms/a.mdb"_s);
    Mount(u"//server/office"_s, In(u"mnt/p"_s), u"cifs"_s);
    EXPECT_EQ(Table().NativePath(u"P:\\sms\\a.mdb"_s), In(u"mnt/p/sms/a.mdb"_s));
    EXPECT_EQ(Table().RemoteName(u"P:"_s), u"\\\\server\\office"_s);
}

TEST_F(DriveTableTest, ALetterIsTheNetworkMountOfThatNameWithAColon) {
    Mount(u"server:/export/office"_s, In(u"R:"_s), u"nfs4"_s);
    EXPECT_EQ(Table().NativePath(u"r:\\a.mdb"_s), In(u"R:/a.mdb"_s));
    EXPECT_EQ(Table().RemoteName(u"r:"_s), u"\\\\server\\export\\office"_s);
}

TEST_F(DriveTableTest, ALocalDiskMountedUnderALetterIsNoNetworkDrive) {
    Mount(u"/dev/sdb1"_s, u"/mnt/p"_s, u"ext4"_s);
    EXPECT_EQ(Table().RemoteName(u"P:"_s), u""_s);
    EXPECT_EQ(Table().NativePath(u"P:\\x"_s), u"P:/x"_s);
}

TEST_F(DriveTableTest, DrivesIniGoesBeforeTheMounts) {
    MakeFile(u"own/a.mdb"_s);
    Mount(u"//server/office"_s, In(u"mnt/p"_s), u"cifs"_s);
    WriteDrivesIni(u"[Drives]\nP:="_s + In(u"own"_s) + u"\n"_s);
    EXPECT_EQ(Table().NativePath(u"P:\\a.mdb"_s), In(u"own/a.mdb"_s));
}

TEST_F(DriveTableTest, AShareIsLookedUpAmongTheMounts) {
    MakeFile(u"mnt/office/Data/a.mdb"_s);
    Mount(u"//Server/Office"_s, In(u"mnt/office"_s), u"smb3"_s);
    EXPECT_EQ(Table().NativePath(u"\\\\SERVER\\office\\data\\a.mdb"_s), In(u"mnt/office/Data/a.mdb"_s));
    EXPECT_EQ(Table().NativePath(u"//server/office/Data/a.mdb"_s), In(u"mnt/office/Data/a.mdb"_s));
    EXPECT_EQ(Table().NativePath(u"\\\\server\\office"_s), In(u"mnt/office"_s));
}

TEST_F(DriveTableTest, AShareWhoseNameOnlyBeginsAlikeIsAnotherOne) {
    Mount(u"//server/office"_s, In(u"mnt/office"_s), u"cifs"_s);
    EXPECT_EQ(Table().NativePath(u"\\\\server\\office2\\a.mdb"_s), u"//server/office2/a.mdb"_s);
}

TEST_F(DriveTableTest, OfTwoMountsOfAShareTheNarrowerIsTaken) {
    MakeFile(u"deep/a.mdb"_s);
    Mount(u"//server/office"_s, In(u"wide"_s), u"cifs"_s);
    Mount(u"//server/office/sms"_s, In(u"deep"_s), u"cifs"_s);
    EXPECT_EQ(Table().NativePath(u"\\\\server\\office\\sms\\a.mdb"_s), In(u"deep/a.mdb"_s));
}

TEST_F(DriveTableTest, AShareOfDrivesIniIsItsFolder) {
    MakeFile(u"office/a.mdb"_s);
    WriteDrivesIni(u"; the office\n[Drives]\n\\\\server\\share = "_s + In(u"office"_s) + u"\r\n"_s);
    EXPECT_EQ(Table().NativePath(u"\\\\Server\\Share\\a.mdb"_s), In(u"office/a.mdb"_s));
}

TEST_F(DriveTableTest, ALetterOfDrivesIniMayStandForAShare) {
    MakeFile(u"mnt/sms/a.mdb"_s);
    Mount(u"//server/office"_s, In(u"mnt"_s), u"cifs"_s);
    WriteDrivesIni(u"[Drives]\nY:=\\\\server\\office\\sms\n"_s);
    EXPECT_EQ(Table().NativePath(u"Y:\\a.mdb"_s), In(u"mnt/sms/a.mdb"_s));
    EXPECT_EQ(Table().RemoteName(u"Y:"_s), u"\\\\server\\office\\sms"_s);
}

TEST_F(DriveTableTest, OtherSectionsAndLinesOfDrivesIniMeanNothing) {
    WriteDrivesIni(u"X:=/a\n[Other]\nX:=/b\n[drives]\n;X:=/c\n#X:=/d\nX:\n=\nX:=\nXY:=/e\n12=/f\n"_s);
    EXPECT_EQ(Table().NativePath(u"X:\\q"_s), u"X:/q"_s);
    EXPECT_EQ(Table().RemoteName(u"X:"_s), u""_s);
}

TEST_F(DriveTableTest, TheRemoteNameOfALetterIsTheShareThatHoldsItsFolder) {
    Mount(u"//server/office"_s, u"/mnt/office"_s, u"cifs"_s);
    WriteDrivesIni(u"[Drives]\nX:=/mnt/office/sms\n"_s);
    EXPECT_EQ(Table().RemoteName(u"X:"_s), u"\\\\server\\office\\sms"_s);
    EXPECT_EQ(Table().RemoteName(u"x:"_s), u"\\\\server\\office\\sms"_s);
}

TEST_F(DriveTableTest, TheRemoteNameOfALetterForALocalFolderIsTheFolder) {
    WriteDrivesIni(u"[Drives]\nX:=/srv/office/\n"_s);
    EXPECT_EQ(Table().RemoteName(u"X:"_s), u"/srv/office"_s);
}

TEST_F(DriveTableTest, OnlyLettersHaveARemoteName) {
    Mount(u"//server/office"_s, u"/mnt/["_s, u"cifs"_s);
    for (const QString& drive : {u""_s, u"["_s, u"[:"_s, u"X"_s, u"XX:"_s, u"X:\\"_s, u"1:"_s}) {
        EXPECT_EQ(Table().RemoteName(drive), u""_s) << drive.toStdString();
    }
}

TEST_F(DriveTableTest, BlanksInTheMountTableAreRead) {
    Mount(u"//server/the\\040office"_s, u"/mnt/the\\040office"_s, u"cifs"_s);
    EXPECT_EQ(Table().NativePath(u"\\\\server\\the office\\a"_s), u"/mnt/the office/a"_s);
    EXPECT_TRUE(Table().IsMounted(u"/mnt/the office"_s));
    EXPECT_FALSE(Table().IsMounted(u"/mnt"_s));
}

TEST_F(DriveTableTest, ADamagedMountTableIsPassedOver) {
    m_mounts =
        "\n x\n//server/office /mnt/office\n\\04 \\4 cifs\n//s/\\777 /m cifs rw\n//server/office /mnt/office "
        "cifs";
    EXPECT_EQ(Table().NativePath(u"\\\\server\\office\\a"_s), u"/mnt/office/a"_s);
}

TEST_F(DriveTableTest, AFileSystemAtTheRootJoinsWithOneSlash) {
    WriteDrivesIni(u"[Drives]\nX:=/\n"_s);
    EXPECT_EQ(Table().NativePath(u"X:\\missing"_s), u"/missing"_s);
    EXPECT_EQ(Table().NativePath(u"X:missing"_s), u"/missing"_s);
}

TEST_F(DriveTableTest, ALineOfFstabGivesALetterItsFolderWhereNothingElseDoes) {
    m_fstab =
        "# //server/old /mnt/q cifs defaults 0 0\n"
        "\n"
        "UUID=1234 /mnt/r ext4 defaults 0 2\n"
        "//server/office\t/mnt/v\tcifs\tnoauto,user\t0\t0\n"
        "server:/export/all /net/Y: nfs4 defaults\n"
        "//server/two /srv/z cifs defaults 0 0\n";
    Mount(u"//server/mounted"_s, u"/media/z"_s, u"cifs"_s);
    const DriveTable table = Table();
    EXPECT_EQ(table.FolderOf(u"V:"_s), u"/mnt/v"_s);
    EXPECT_EQ(table.RemoteName(u"v:"_s), u"\\\\server\\office"_s);
    EXPECT_EQ(table.FolderOf(u"Y:"_s), u"/net/Y:"_s);
    EXPECT_EQ(table.NativePath(u"V:\\sms\\a.mdb"_s), u"/mnt/v/sms/a.mdb"_s);
    EXPECT_FALSE(table.IsMounted(u"/mnt/v"_s));
    EXPECT_EQ(table.FolderOf(u"Z:"_s), u"/media/z"_s) << "what is mounted goes before";
    EXPECT_EQ(table.FolderOf(u"Q:"_s), QString()) << "a comment";
    EXPECT_EQ(table.FolderOf(u"R:"_s), QString()) << "no network";
    WriteDrivesIni(u"[Drives]\nV:=/srv/office\n"_s);
    EXPECT_EQ(Table().FolderOf(u"V:"_s), u"/srv/office"_s) << "the user's own table goes before";
}
