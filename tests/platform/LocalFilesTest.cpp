#include "platform/LocalFiles.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <functional>
#include <optional>
#include <tuple>
#include <vector>

#include <grp.h>
#include <sys/wait.h>

#include "support/BrokenDisk.h"
#include "support/Printing.h"

using namespace Qt::StringLiterals;

namespace {

const QByteArray Old(5000, 'o');
const QByteArray New(267250, 'n');

mode_t ModeOf(const QString& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.toLocal8Bit().constData(), &status), 0);
    return status.st_mode & 07777U;
}

/// Acts with the rights of the administrator, which an OrdinaryUser has laid down.
int AsAdministrator(const std::function<int()>& action) {
    const uid_t user = geteuid();
    if (getuid() != 0) {
        return action();  // an ordinary account has nothing to go back to
    }
    EXPECT_EQ(seteuid(0), 0);
    const int result = action();
    EXPECT_EQ(seteuid(user), 0);
    return result;
}

int GiveAway(const QByteArray& path, uid_t owner, gid_t group, mode_t mode) {
    return AsAdministrator(
        [&] { return chown(path.constData(), owner, group) | chmod(path.constData(), mode); });
}

/// This process as a member of one group more, for the lifetime of the object.
class GroupMember {
public:
    explicit GroupMember(gid_t group) : m_before(static_cast<std::size_t>(getgroups(0, nullptr))) {
        EXPECT_GE(getgroups(static_cast<int>(m_before.size()), m_before.data()), 0);
        std::vector<gid_t> groups = m_before;
        groups.push_back(group);
        Set(groups);
    }
    ~GroupMember() { Set(m_before); }
    GroupMember(const GroupMember&) = delete;
    GroupMember& operator=(const GroupMember&) = delete;

private:
    static void Set(const std::vector<gid_t>& groups) {
        EXPECT_EQ(AsAdministrator([&] { return setgroups(groups.size(), groups.data()); }), 0);
    }

    std::vector<gid_t> m_before;
};

/// A group that this account is in beside its own; its own where there is no other.
gid_t AnotherGroupOfMine() {
    std::vector<gid_t> groups(static_cast<std::size_t>(getgroups(0, nullptr)));
    EXPECT_GE(getgroups(static_cast<int>(groups.size()), groups.data()), 0);
    for (const gid_t group : groups) {
        if (group != getegid()) {
            return group;
        }
    }
    return getegid();
}

class LocalFilesTest : public testing::Test {
protected:
    [[nodiscard]] QString In(const QString& name) const { return m_folder.filePath(name); }
    [[nodiscard]] QByteArray TextOf(const QString& name) const {
        return m_files.Read(In(name)).value_or(QByteArray("no file"));
    }
    /// All names in the folder, hidden ones too: nothing may be left behind.
    [[nodiscard]] QStringList Names() const {
        return QDir(m_folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    /// Modes of a file that Replace makes and of one that Append makes in the folder once it has this mode.
    QList<mode_t> ModesOfNewFilesIn(mode_t folder, mode_t mask) {
        EXPECT_EQ(chmod(m_folder.path().toLocal8Bit().constData(), folder), 0);
        const mode_t maskBefore = umask(mask);
        EXPECT_TRUE(m_files.Replace(In(u"replaced"_s), New));
        EXPECT_TRUE(m_files.Append(In(u"appended"_s), New));
        umask(maskBefore);
        QList<mode_t> modes = {ModeOf(In(u"replaced"_s)), ModeOf(In(u"appended"_s))};
        EXPECT_TRUE(m_files.Remove(In(u"replaced"_s)) && m_files.Remove(In(u"appended"_s)));
        return modes;
    }

    OrdinaryUser m_user;
    QTemporaryDir m_folder;
    DiskFiles m_files;
};

}  // namespace

TEST_F(LocalFilesTest, AMissingFileHasNoSizeAndNoBytes) {
    EXPECT_FALSE(m_files.Exists(In(u"a"_s)));
    EXPECT_EQ(m_files.Size(In(u"a"_s)), -1);
    EXPECT_FALSE(m_files.Read(In(u"a"_s)).has_value());
    EXPECT_FALSE(m_files.Remove(In(u"a"_s)));
    EXPECT_FALSE(m_files.Sync(In(u"a"_s)));
    EXPECT_FALSE(m_files.Link(In(u"a"_s), In(u"b"_s)));
    EXPECT_FALSE(m_files.Rename(In(u"a"_s), In(u"b"_s)));
    EXPECT_EQ(Names(), QStringList());
}

TEST_F(LocalFilesTest, AFolderIsNoFile) {
    EXPECT_FALSE(m_files.Exists(m_folder.path()));
    EXPECT_EQ(m_files.Size(m_folder.path()), -1);
    EXPECT_FALSE(m_files.Read(m_folder.path()).has_value());
    EXPECT_FALSE(m_files.Replace(m_folder.path(), "x"));
    EXPECT_FALSE(m_files.Append(m_folder.path(), "x"));
    EXPECT_FALSE(m_files.Remove(m_folder.path()));
}

TEST_F(LocalFilesTest, TheEmptyPathIsNoFile) {
    EXPECT_FALSE(m_files.Exists(QString()));
    EXPECT_FALSE(m_files.Read(QString()).has_value());
    EXPECT_FALSE(m_files.Replace(QString(), "x"));
    EXPECT_FALSE(m_files.Append(QString(), "x"));
}

TEST_F(LocalFilesTest, ReplaceMakesAFileForTheUserAlone) {
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), QByteArray("\0new\r\n", 6)));
    EXPECT_EQ(TextOf(u"a"_s), QByteArray("\0new\r\n", 6));
    EXPECT_EQ(m_files.Size(In(u"a"_s)), 6);
    EXPECT_EQ(ModeOf(In(u"a"_s)), 0600U);
    EXPECT_EQ(Names(), QStringList{u"a"_s});
}

TEST_F(LocalFilesTest, ReplaceTakesThePlaceOfALongerFile) {
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), New));
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), Old));
    EXPECT_EQ(TextOf(u"a"_s), Old);
    EXPECT_EQ(Names(), QStringList{u"a"_s});
}

TEST_F(LocalFilesTest, ReplaceWithNoBytesLeavesAnEmptyFile) {
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), Old));
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), QByteArray()));
    EXPECT_TRUE(m_files.Exists(In(u"a"_s)));
    EXPECT_EQ(m_files.Size(In(u"a"_s)), 0);
}

TEST_F(LocalFilesTest, ReplaceKeepsTheModeOfTheOldFile) {
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), Old));
    ASSERT_EQ(chmod(In(u"a"_s).toLocal8Bit().constData(), 0664), 0);
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), New));
    EXPECT_EQ(ModeOf(In(u"a"_s)), 0664U);
}

TEST_F(LocalFilesTest, ReplaceKeepsTheGroupOfAFileThatAColleagueMade) {
    // Only the administrator can give a file away; anybody can give one to another group of their own.
    const bool isAdministrator = getuid() == 0;
    const uid_t colleague = isAdministrator ? 12345 : getuid();
    const gid_t office = isAdministrator ? 12346 : AnotherGroupOfMine();
    const QByteArray path = In(u"a"_s).toLocal8Bit();
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), Old));
    {
        std::optional<GroupMember> member;
        if (isAdministrator) {
            member.emplace(office);
        }
        ASSERT_EQ(GiveAway(path, colleague, office, 0666), 0);
        ASSERT_TRUE(m_files.Replace(In(u"a"_s), New));
    }
    struct stat status {};
    ASSERT_EQ(stat(path.constData(), &status), 0);
    EXPECT_EQ(status.st_uid, geteuid());
    EXPECT_EQ(status.st_gid, office);
    EXPECT_EQ(ModeOf(In(u"a"_s)), 0666U);
}

TEST_F(LocalFilesTest, WhatIsMadeInASharedFolderIsSharedLikeTheFolder) {
    for (const auto& [folder, file] :
         {std::pair(02775U, 0664U), std::pair(02770U, 0660U), std::pair(0777U, 0666U)}) {
        for (const mode_t mask : {0022U, 0002U, 0077U}) {
            EXPECT_EQ(ModesOfNewFilesIn(folder, mask), (QList<mode_t>{file, file})) << folder << ' ' << mask;
        }
    }
}

TEST_F(LocalFilesTest, WhatIsMadeInAPrivateOrTemporaryFolderIsTheUsersOwn) {
    for (const mode_t folder : {0700U, 0755U, 01777U, 03775U}) {
        for (const mode_t mask : {0022U, 0000U}) {
            EXPECT_EQ(ModesOfNewFilesIn(folder, mask), (QList<mode_t>{0600U, 0600U}))
                << folder << ' ' << mask;
        }
    }
}

TEST_F(LocalFilesTest, AReaderThatHasTheOldFileOpenKeepsTheOldBytes) {
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), Old));
    QFile reader(In(u"a"_s));
    ASSERT_TRUE(reader.open(QIODevice::ReadOnly));
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), New));
    EXPECT_EQ(reader.readAll(), Old);
}

TEST_F(LocalFilesTest, ReplaceGoesToTheFileBehindALink) {
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(u"real"_s));
    ASSERT_TRUE(m_files.Replace(In(u"real/a"_s), Old));
    ASSERT_TRUE(QFile::link(u"real/a"_s, In(u"relative"_s)));
    ASSERT_TRUE(QFile::link(In(u"relative"_s), In(u"absolute"_s)));
    ASSERT_TRUE(m_files.Replace(In(u"absolute"_s), New));
    EXPECT_EQ(TextOf(u"real/a"_s), New);
    EXPECT_TRUE(QFileInfo(In(u"relative"_s)).isSymLink());
    EXPECT_TRUE(QFileInfo(In(u"absolute"_s)).isSymLink());
}

TEST_F(LocalFilesTest, ReplaceMakesTheFileThatALinkLeadsTo) {
    ASSERT_TRUE(QFile::link(u"target"_s, In(u"link"_s)));
    ASSERT_TRUE(m_files.Replace(In(u"link"_s), New));
    EXPECT_EQ(TextOf(u"target"_s), New);
    EXPECT_TRUE(QFileInfo(In(u"link"_s)).isSymLink());
}

TEST_F(LocalFilesTest, NothingIsWrittenBehindALinkThatAnotherAccountPlantedInTheTemporaryFolder) {
    constexpr uid_t Administrator = 0;
    constexpr uid_t Colleague = 12345;
    const uid_t own = geteuid();
    const uid_t foldersOwner = getuid() == Administrator ? 12346 : own;
    QList<std::tuple<uid_t, int, bool>> links = {{own, 01777, true}, {foldersOwner, 01777, true}};
    if (getuid() == Administrator) {  // nobody else can make links for others
        links += {{Colleague, 01777, false}, {Administrator, 01777, true}, {Colleague, 0777, true}};
    }
    const gid_t group = getegid();
    const QTemporaryDir home;
    const QString mine = home.filePath(u"mine"_s);
    const QByteArray folder = m_folder.path().toLocal8Bit();
    const QByteArray link = In(u"hwnd.sms"_s).toLocal8Bit();
    ASSERT_TRUE(QFile::link(mine, In(u"hwnd.sms"_s)));
    const auto giveLink = [&](uid_t owner) {
        return AsAdministrator([&] { return lchown(link.constData(), owner, group); });
    };
    for (const auto& [owner, mode, isFollowed] : links) {
        ASSERT_TRUE(m_files.Replace(mine, Old));
        ASSERT_EQ(GiveAway(folder, foldersOwner, group, static_cast<mode_t>(mode)), 0);
        ASSERT_EQ(giveLink(owner), 0);
        EXPECT_EQ(m_files.Replace(In(u"hwnd.sms"_s), New), isFollowed) << owner;
        EXPECT_EQ(m_files.Read(mine), isFollowed ? New : Old) << owner;
        EXPECT_EQ(m_files.Append(In(u"hwnd.sms"_s), "more"), isFollowed) << owner;
        EXPECT_EQ(m_files.Read(mine), isFollowed ? New + "more" : Old) << owner;
        EXPECT_TRUE(QFileInfo(In(u"hwnd.sms"_s)).isSymLink()) << owner;
    }
    ASSERT_EQ(GiveAway(folder, own, group, 0700), 0);
}

TEST_F(LocalFilesTest, InHasteAFileIsReplacedAsAtLeisure) {
    ASSERT_TRUE(m_files.ReplaceInHaste(In(u"a"_s), {QByteArrayView(New)}));
    EXPECT_EQ(ModeOf(In(u"a"_s)), 0600U);
    ASSERT_EQ(chmod(In(u"a"_s).toLocal8Bit().constData(), 0664), 0);
    ASSERT_TRUE(m_files.ReplaceInHaste(In(u"a"_s), {QByteArrayView("one"), QByteArrayView("two")}));
    EXPECT_EQ(TextOf(u"a"_s), QByteArray("onetwo"));
    EXPECT_EQ(ModeOf(In(u"a"_s)), 0664U);
    ASSERT_TRUE(m_files.ReplaceInHaste(In(u"a"_s), {}));
    EXPECT_EQ(m_files.Size(In(u"a"_s)), 0);
    ASSERT_TRUE(QFile::link(u"a"_s, In(u"link"_s)));
    EXPECT_TRUE(m_files.ReplaceInHaste(In(u"link"_s), {QByteArrayView(New)}));
    EXPECT_EQ(TextOf(u"a"_s), New);
    EXPECT_TRUE(m_files.Sync(In(u"link"_s)));
    EXPECT_FALSE(m_files.ReplaceInHaste(m_folder.path(), {QByteArrayView(New)}));
    EXPECT_EQ(Names(), (QStringList{u"a"_s, u"link"_s}));
}

TEST_F(LocalFilesTest, UnderASecondNameAFileStaysWhenTheFirstIsReplaced) {
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), Old));
    ASSERT_TRUE(m_files.Link(In(u"a"_s), In(u"b"_s)));
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), New));
    EXPECT_EQ(TextOf(u"b"_s), Old);
    EXPECT_FALSE(m_files.Link(In(u"a"_s), In(u"b"_s))) << "there is one of that name";
    EXPECT_EQ(TextOf(u"b"_s), Old);
    EXPECT_FALSE(m_files.Link(m_folder.path(), In(u"c"_s)));
    EXPECT_EQ(Names(), (QStringList{u"a"_s, u"b"_s}));
}

TEST_F(LocalFilesTest, ASecondNameIsGivenToTheFileBehindALink) {
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(u"real"_s));
    ASSERT_TRUE(m_files.Replace(In(u"real/a"_s), Old));
    ASSERT_TRUE(QFile::link(u"real/a"_s, In(u"link"_s)));
    ASSERT_TRUE(m_files.Link(In(u"link"_s), In(u"b"_s)));
    EXPECT_FALSE(QFileInfo(In(u"b"_s)).isSymLink());
    ASSERT_TRUE(m_files.Replace(In(u"link"_s), New));
    EXPECT_EQ(TextOf(u"b"_s), Old);
    ASSERT_TRUE(m_files.Rename(In(u"b"_s), In(u"link"_s)));
    EXPECT_EQ(TextOf(u"real/a"_s), Old);
    EXPECT_TRUE(QFileInfo(In(u"link"_s)).isSymLink());
}

TEST_F(LocalFilesTest, ARenamedFileTakesThePlaceOfAnother) {
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), Old));
    ASSERT_TRUE(m_files.Replace(In(u"b"_s), New));
    EXPECT_TRUE(m_files.Rename(In(u"a"_s), In(u"b"_s)));
    EXPECT_EQ(TextOf(u"b"_s), Old);
    EXPECT_EQ(Names(), QStringList{u"b"_s});
}

TEST_F(LocalFilesTest, LinksThatGoRoundAreNoFile) {
    ASSERT_TRUE(QFile::link(u"b"_s, In(u"a"_s)));
    ASSERT_TRUE(QFile::link(u"a"_s, In(u"b"_s)));
    EXPECT_FALSE(m_files.Replace(In(u"a"_s), New));
    EXPECT_FALSE(m_files.Exists(In(u"a"_s)));
}

TEST_F(LocalFilesTest, AppendAddsToTheEnd) {
    ASSERT_TRUE(m_files.Append(In(u"log"_s), "one\r\n"));
    ASSERT_TRUE(m_files.Append(In(u"log"_s), "two\r\n"));
    EXPECT_EQ(TextOf(u"log"_s), QByteArray("one\r\ntwo\r\n"));
    EXPECT_EQ(ModeOf(In(u"log"_s)), 0600U);
}

TEST_F(LocalFilesTest, AppendOfNoBytesMakesTheFile) {
    ASSERT_TRUE(m_files.Append(In(u"log"_s), QByteArray()));
    EXPECT_EQ(m_files.Size(In(u"log"_s)), 0);
}

TEST_F(LocalFilesTest, RemoveTakesTheFileAway) {
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), Old));
    EXPECT_TRUE(m_files.Remove(In(u"a"_s)));
    EXPECT_EQ(Names(), QStringList());
}

TEST_F(LocalFilesTest, SyncPutsAFileOnTheDisk) {
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), Old));
    EXPECT_TRUE(m_files.Sync(In(u"a"_s)));
}

TEST_F(LocalFilesTest, PathsAreTakenWithBackslashesAndInAnyCase) {
    ASSERT_TRUE(m_files.Replace(In(u"History.SMS"_s), Old));
    const QString path = m_folder.path() + u"\\history.sms"_s;
    EXPECT_EQ(m_files.Size(path), Old.size());
    EXPECT_TRUE(m_files.Replace(path, "x"));
    EXPECT_TRUE(m_files.Append(path, "y"));
    EXPECT_EQ(m_files.Read(path).value_or(QByteArray()), QByteArray("xy"));
    EXPECT_EQ(Names(), QStringList{u"History.SMS"_s});
    EXPECT_TRUE(m_files.Sync(path));
    EXPECT_TRUE(m_files.Remove(path));
}

TEST_F(LocalFilesTest, OnAFullDiskReplaceKeepsTheOldFileWhole) {
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), Old));
    for (const qint64 room :
         {qint64{0}, qint64{1}, qint64{4095}, qint64{4096}, qint64{100000}, New.size() - 1}) {
        const FullDisk disk(room);
        EXPECT_FALSE(m_files.Replace(In(u"a"_s), New)) << room;
        EXPECT_FALSE(m_files.ReplaceInHaste(In(u"a"_s), {QByteArrayView(New)})) << room;
        EXPECT_EQ(TextOf(u"a"_s), Old) << room;
        EXPECT_EQ(Names(), QStringList{u"a"_s}) << room;
    }
    const FullDisk disk(New.size());
    EXPECT_TRUE(m_files.Replace(In(u"a"_s), New));
    EXPECT_EQ(TextOf(u"a"_s), New);
}

TEST_F(LocalFilesTest, OnAFullDiskReplaceMakesNoPartOfAFile) {
    const FullDisk disk(100);
    EXPECT_FALSE(m_files.Replace(In(u"a"_s), New));
    EXPECT_EQ(Names(), QStringList());
}

TEST_F(LocalFilesTest, OnAFullDiskAppendLeavesTheOldLines) {
    ASSERT_TRUE(m_files.Append(In(u"log"_s), Old));
    for (const qint64 room : {qint64{0}, Old.size(), Old.size() + 1, Old.size() + 9}) {
        const FullDisk disk(room);
        EXPECT_FALSE(m_files.Append(In(u"log"_s), "0123456789")) << room;
        EXPECT_EQ(TextOf(u"log"_s), Old) << room;
    }
    const FullDisk disk(Old.size() + 10);
    EXPECT_TRUE(m_files.Append(In(u"log"_s), "0123456789"));
    EXPECT_EQ(TextOf(u"log"_s), Old + "0123456789");
}

TEST_F(LocalFilesTest, OnAFullDiskAppendMakesNoPartOfAFile) {
    const FullDisk disk(4);
    EXPECT_FALSE(m_files.Append(In(u"log"_s), "0123456789"));
    EXPECT_EQ(Names(), QStringList());
}

TEST_F(LocalFilesTest, InAReadOnlyFolderNothingChanges) {
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), Old));
    const ReadOnlyFolder folder(m_folder.path());
    EXPECT_FALSE(m_files.Replace(In(u"a"_s), New));
    EXPECT_FALSE(m_files.Replace(In(u"b"_s), New));
    EXPECT_FALSE(m_files.ReplaceInHaste(In(u"a"_s), {QByteArrayView(New)}));
    EXPECT_FALSE(m_files.Link(In(u"a"_s), In(u"b"_s)));
    EXPECT_FALSE(m_files.Rename(In(u"a"_s), In(u"b"_s)));
    EXPECT_FALSE(m_files.Append(In(u"b"_s), New));
    EXPECT_FALSE(m_files.Remove(In(u"a"_s)));
    EXPECT_EQ(TextOf(u"a"_s), Old);
    EXPECT_EQ(Names(), QStringList{u"a"_s});
}

TEST_F(LocalFilesTest, AReadOnlyFileStaysAsItIs) {
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), Old));
    ASSERT_EQ(chmod(In(u"a"_s).toLocal8Bit().constData(), 0400), 0);
    EXPECT_FALSE(m_files.Replace(In(u"a"_s), New));
    EXPECT_FALSE(m_files.Append(In(u"a"_s), New));
    EXPECT_EQ(TextOf(u"a"_s), Old);
}

TEST_F(LocalFilesTest, InAMissingFolderNothingIsMade) {
    EXPECT_FALSE(m_files.Replace(In(u"missing/a"_s), New));
    EXPECT_FALSE(m_files.Append(In(u"missing/a"_s), New));
    EXPECT_EQ(Names(), QStringList());
}

TEST_F(LocalFilesTest, AProgramThatIsKilledWhileItReplacesLeavesTheOldFileOrTheNewOne) {
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), Old));
    for (int kill = 0; kill < 20; ++kill) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (;;) {
                static_cast<void>(m_files.Replace(In(u"a"_s), New));
                static_cast<void>(m_files.ReplaceInHaste(In(u"a"_s), {QByteArrayView(Old)}));
            }
        }
        int changes = 0;
        QByteArray last = Old;
        while (changes < 1 + kill % 3) {
            const QByteArray bytes = TextOf(u"a"_s);
            EXPECT_TRUE(bytes == Old || bytes == New) << bytes.size();
            changes += bytes != last ? 1 : 0;
            last = bytes;
        }
        ::kill(child, SIGKILL);
        ASSERT_EQ(waitpid(child, nullptr, 0), child);
        EXPECT_TRUE(TextOf(u"a"_s) == Old || TextOf(u"a"_s) == New);
    }
}

TEST_F(LocalFilesTest, AProgramThatIsKilledInTheMiddleOfAWriteLeavesTheOldFileAndNothingElse) {
    ASSERT_TRUE(m_files.Replace(In(u"a"_s), Old));
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // The system kills a program that writes beyond its limit, here after 100000 bytes.
        const rlimit noCore{0, 0};
        const rlimit small{100000, 100000};
        if (setrlimit(RLIMIT_CORE, &noCore) == 0 && setrlimit(RLIMIT_FSIZE, &small) == 0) {
            std::signal(SIGXFSZ, SIG_DFL);
            static_cast<void>(m_files.Replace(In(u"a"_s), New));
        }
        _exit(1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGXFSZ);
    EXPECT_EQ(TextOf(u"a"_s), Old);
    // File systems without nameless files (network ones) keep the unfinished one under its hidden name.
    const int nameless =
        open(m_folder.path().toLocal8Bit().constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
    EXPECT_EQ(Names().size(), nameless >= 0 ? 1 : 2);
    close(nameless);
}

TEST_F(LocalFilesTest, TwoProgramsThatAppendAtOnceLoseNoLine) {
    constexpr int Lines = 500;
    const auto write = [&](char letter) {
        bool isWritten = true;
        for (int line = 0; line < Lines; ++line) {
            isWritten = m_files.Append(In(u"log"_s), QByteArray(99, letter) + '\n') && isWritten;
        }
        return isWritten;
    };
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        _exit(write('c') ? 0 : 1);
    }
    EXPECT_TRUE(write('p'));
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    QList<QByteArray> lines = TextOf(u"log"_s).split('\n');
    EXPECT_EQ(lines.takeLast(), QByteArray());
    EXPECT_EQ(lines.count(QByteArray(99, 'c')), Lines);
    EXPECT_EQ(lines.count(QByteArray(99, 'p')), Lines);
    EXPECT_EQ(lines.size(), 2 * Lines);
}
