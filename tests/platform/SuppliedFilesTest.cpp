#include "platform/SuppliedFiles.h"

#include "platform/LocalFiles.h"
#include "support/FakeMachine.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

class SuppliedFilesTest : public ::testing::Test {
protected:
    QString Write(const QString& path) {
        EXPECT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        EXPECT_TRUE(Files.Replace(path, "content"));
        return path;
    }
    [[nodiscard]] QString Find() const {
        return FindSuppliedFile(Folders, Files, QStringLiteral("tips.txt"));
    }
    FakeFolders Folders;
    DiskFiles Files;
};

TEST_F(SuppliedFilesTest, AFileThatIsNowhereHasNoPath) {
    EXPECT_EQ(Find(), QString());
}

TEST_F(SuppliedFilesTest, AnInstalledFileIsFoundInTheShareFolder) {
    const QString installed = Write(Folders.ShareFolder() + QStringLiteral("tips.txt"));
    EXPECT_EQ(Find(), installed);
}

TEST_F(SuppliedFilesTest, TheOfficesOwnFileInTheApplicationFolderComesFirst) {
    Write(Folders.ShareFolder() + QStringLiteral("tips.txt"));
    const QString own = Write(Folders.ApplicationFolder() + QStringLiteral("tips.txt"));
    EXPECT_EQ(Find(), own);
}

TEST_F(SuppliedFilesTest, AFileInOtherLettersHasThePathThatCanBeOpened) {
    const QString own = Write(QDir(Folders.ApplicationFolder()).filePath(QStringLiteral("Tips.TXT")));
    const QString found = Find();
    EXPECT_EQ(QDir::cleanPath(found), QDir::cleanPath(own));
    EXPECT_TRUE(QFile::exists(found)) << found.toStdString();
}

TEST_F(SuppliedFilesTest, AFileBehindABackslashHasThePathThatCanBeOpened) {
    const QString own =
        Write(QDir(Folders.ApplicationFolder()).filePath(QStringLiteral("Icons/larkspantray.ico")));
    const QString found = FindSuppliedFile(Folders, Files, QStringLiteral("Icons\\LARKSPANtray.ico"));
    EXPECT_EQ(QDir::cleanPath(found), QDir::cleanPath(own));
    EXPECT_TRUE(QFile::exists(found)) << found.toStdString();
}

}  // namespace
