#include "core/SupportRoutines.h"

#include <gtest/gtest.h>

#include "support/FakeMachine.h"
#include "support/Printing.h"

using namespace Qt::StringLiterals;

namespace {

struct Search {
    FakeDrives Drives;
    FakeFolders Folders;
    QString Run() { return FirstNetworkDrive(Drives, Folders); }
};

}  // namespace

TEST(FirstNetworkDrive, IsTheFirstLetterFromCWithAConnection) {
    Search search;
    search.Drives.Connections = {{u"H:"_s, u"\\\\server\\home"_s}, {u"P:"_s, u"\\\\server\\sms"_s}};
    EXPECT_EQ(search.Run(), u"H:\\"_s);
    EXPECT_EQ(search.Drives.Asked.constFirst(), u"C:"_s);
    EXPECT_EQ(search.Drives.Asked.constLast(), u"H:"_s);
}

TEST(FirstNetworkDrive, DoesNotAskForTheLettersBeforeC) {
    Search search;
    search.Drives.Connections = {{u"A:"_s, u"\\\\server\\a"_s}, {u"B:"_s, u"\\\\server\\b"_s}};
    search.Folders.Current = u"C:\\office"_s;
    EXPECT_EQ(search.Run(), u"C:\\"_s);
}

TEST(FirstNetworkDrive, TriesALastLetterThatIsNoDriveLetter) {
    Search search;
    EXPECT_EQ(search.Run(), u"/"_s);
    EXPECT_EQ(search.Drives.Asked.size(), 25);
    EXPECT_EQ(search.Drives.Asked.at(23), u"Z:"_s);
    EXPECT_EQ(search.Drives.Asked.constLast(), u"[:"_s);
}

TEST(FirstNetworkDrive, IsTheDriveOfTheCurrentFolderIfNoLetterHasAConnection) {
    Search search;
    search.Folders.Current = u"D:\\office\\sms\\"_s;
    EXPECT_EQ(search.Run(), u"D:\\"_s);
}

TEST(FirstNetworkDrive, IsTheWholeCurrentFolderIfThatHasNoDrive) {
    Search search;
    search.Folders.Current = u"/srv/office/"_s;
    EXPECT_EQ(search.Run(), u"/srv/office/"_s);
    search.Folders.Current = u"\\\\server\\share\\"_s;
    EXPECT_EQ(search.Run(), u"\\\\server\\share\\"_s);
}
