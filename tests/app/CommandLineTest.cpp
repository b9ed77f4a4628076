#include "app/CommandLine.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

/// A folder that looks like an office's.
struct Office {
    QTemporaryDir Folder;
    Office() {
        QFile file(Folder.filePath(Q("smsmessages.mdb")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    }
};

}  // namespace

TEST(CommandLine, SwitchesAreFoundAnywhereAndInAnyCase) {
    EXPECT_TRUE(CommandLine({Q("x/ERRor.log")}).IsErrorLog());
    EXPECT_TRUE(CommandLine({Q("first"), Q("/TipOfTheDay")}).IsTipOfTheDay());
    EXPECT_TRUE(CommandLine({Q("/Wizard")}).IsSetupWizard());
    const CommandLine nothing({Q("error"), Q("wizard")});
    EXPECT_FALSE(nothing.IsErrorLog());
    EXPECT_FALSE(nothing.IsSetupWizard());
    EXPECT_FALSE(nothing.IsTipOfTheDay());
}

TEST(CommandLine, ThePhonebookWizardWantsTheExactLowerCase) {
    EXPECT_TRUE(CommandLine({Q("/wizard")}).IsPhonebookWizard());
    EXPECT_FALSE(CommandLine({Q("/WIZARD")}).IsPhonebookWizard());
    EXPECT_FALSE(CommandLine({Q("/Wizard")}).IsPhonebookWizard());
}

TEST(CommandLine, AFolderWithTheNameOfASwitchIsNoSwitch) {
    const QTemporaryDir root;
    const QString folder = root.filePath(Q("error"));
    ASSERT_TRUE(QDir().mkpath(folder));
    QFile file(folder + Q("/smsmessages.mdb"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const CommandLine line({Q("--data"), folder});
    EXPECT_FALSE(line.IsErrorLog());
    EXPECT_EQ(line.DataFolder, folder);
}

TEST(CommandLine, TheDataFolderIsTakenInBothFormsAndMadeAbsolute) {
    const Office office;
    EXPECT_EQ(CommandLine({Q("--data"), office.Folder.path()}).DataFolder, office.Folder.path());
    EXPECT_EQ(CommandLine({Q("--data=") + office.Folder.path()}).DataFolder, office.Folder.path());
    const QString relative = QDir::current().relativeFilePath(office.Folder.path());
    EXPECT_EQ(CommandLine({Q("--data"), relative}).DataFolder, office.Folder.path());
    QString turned = relative;
    turned.replace(u'/', u'\\');
    EXPECT_EQ(CommandLine({Q("--data"), turned}).DataFolder, office.Folder.path()) << "with backslashes";
}

TEST(CommandLine, AFolderWithoutAnOutboxIsRefusedWithTheWayToMakeOne) {
    const QTemporaryDir empty;
    const CommandLine line({Q("--data"), empty.path()});
    EXPECT_TRUE(line.DataFolder.isEmpty());
    EXPECT_TRUE(line.Problem.contains(Q("larkspan-data create"))) << line.Problem.toStdString();
    EXPECT_FALSE(CommandLine({Q("--data")}).Problem.isEmpty());
}

TEST(CommandLine, ThePaletteIsLightOrDarkAndNothingElse) {
    EXPECT_EQ(CommandLine({Q("--palette"), Q("dark")}).Palette, Q("dark"));
    EXPECT_EQ(CommandLine({Q("--palette=light")}).Palette, Q("light"));
    EXPECT_FALSE(CommandLine({Q("--palette"), Q("pink")}).Problem.isEmpty());
    EXPECT_TRUE(CommandLine(QStringList{}).Palette.isEmpty());
}

TEST(CommandLine, HelpNamesEveryOptionAndSwitch) {
    EXPECT_TRUE(CommandLine({Q("--help")}).IsHelp);
    EXPECT_TRUE(CommandLine({Q("--version")}).IsVersion);
    for (const char* word :
         {"--data", "--palette", "--help", "--version", "/error", "/wizard", "/tipoftheday"}) {
        EXPECT_TRUE(CommandLine::HelpText().contains(Q(word))) << word;
    }
}

TEST(CommandLine, WhatItDoesNotKnowIsPassedOver) {
    const CommandLine line({Q("-platform"), Q("offscreen"), Q("file.txt")});
    EXPECT_TRUE(line.Problem.isEmpty());
    EXPECT_EQ(line.Text, Q("-platform offscreen file.txt"));
}

TEST(CommandLine, ADataFolderInOtherLettersIsMadeAbsoluteUnderItsTrueName) {
    const QTemporaryDir root;
    ASSERT_TRUE(QDir().mkpath(root.filePath(Q("Office"))));
    QFile file(root.filePath(Q("Office/smsmessages.mdb")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(root.path()));
    EXPECT_EQ(CommandLine({Q("--data"), Q("OFFICE")}).DataFolder,
              QDir::current().absoluteFilePath(Q("Office")));
    ASSERT_TRUE(QDir::setCurrent(before));
}
