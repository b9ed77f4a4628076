#include "common/ExitCode.h"
#include "larkspan-data/Commands.h"
#include "store/engine/Connection.h"
#include "tools/TestOffice.h"

#include <gtest/gtest.h>

namespace {

struct Answer {
    int Code = 0;
    QString Out;
    QString Error;
};

Answer RunLine(const QStringList& arguments, bool isTerminal = false,
               const std::function<bool()>& isStopped = {}) {
    Answer answer;
    QTextStream out(&answer.Out);
    QTextStream error(&answer.Error);
    engine::FileConnectionFactory engines;
    answer.Code = RunCommandLine(arguments, {engines, out, error, isTerminal, isStopped});
    return answer;
}

const QString Create = QStringLiteral("create");
const QString Check = QStringLiteral("check");

}  // namespace

TEST(DataCommands, HelpNamesEveryCommandAndEveryExitStatus) {
    const Answer answer = RunLine({QStringLiteral("--help")});
    EXPECT_EQ(answer.Code, ExitCode::Fine);
    for (const Command& command : AllCommands()) {
        EXPECT_TRUE(answer.Out.contains(command.Name + u' '));
        EXPECT_TRUE(answer.Out.contains(command.Summary));
    }
    EXPECT_TRUE(answer.Out.contains(QStringLiteral("4 stopped by a signal")));
}

TEST(DataCommands, EveryCommandHasAHelpOfItsOwn) {
    for (const Command& command : AllCommands()) {
        const Answer answer = RunLine({command.Name, QStringLiteral("--help")});
        EXPECT_EQ(answer.Code, ExitCode::Fine);
        EXPECT_TRUE(answer.Out.startsWith(QStringLiteral("usage: larkspan-data ") + command.Name));
    }
}

TEST(DataCommands, VersionIsPrinted) {
    EXPECT_EQ(RunLine({QStringLiteral("--version")}).Out,
              QStringLiteral("larkspan-data " LARKSPAN_VERSION "\n"));
}

TEST(DataCommands, WhatIsNotUnderstoodIsAUsageErrorAndDoesNothing) {
    const QTemporaryDir root;
    const QString folder = root.filePath(QStringLiteral("office"));
    const QList<QStringList> lines{{},
                                   {QStringLiteral("destroy"), folder},
                                   {Create},
                                   {Create, QString()},
                                   {Create, folder, folder},
                                   {Create, folder, QStringLiteral("--sample=lots")},
                                   {Create, folder, QStringLiteral("--sample=32768")},
                                   {Create, folder, QStringLiteral("--sample=-1")},
                                   {Create, folder, QStringLiteral("--loud")},
                                   {Check, folder, QStringLiteral("--json=yes")},
                                   {QStringLiteral("--verbose")}};
    for (const QStringList& line : lines) {
        const Answer answer = RunLine(line);
        EXPECT_EQ(answer.Code, ExitCode::Usage) << line.join(u' ').toStdString();
        EXPECT_TRUE(answer.Error.startsWith(QStringLiteral("larkspan-data: ")));
        EXPECT_TRUE(answer.Out.isEmpty());
    }
    EXPECT_FALSE(QFile::exists(folder));
}

TEST(DataCommands, TooManyContactsNameTheLimit) {
    const Answer answer =
        RunLine({Create, QStringLiteral("/nowhere/x"), QStringLiteral("--sample"), QStringLiteral("40000")});
    EXPECT_TRUE(answer.Error.contains(QStringLiteral("from 0 to 32767, not \"40000\"")))
        << answer.Error.toStdString();
}

TEST(DataCommands, CreateTellsWhatItMade) {
    const QTemporaryDir root;
    const QString folder = root.filePath(QStringLiteral("office"));
    const Answer answer = RunLine({Create, folder, QStringLiteral("--sample")});
    EXPECT_EQ(answer.Code, ExitCode::Fine);
    EXPECT_TRUE(answer.Out.contains(QStringLiteral("with 250 contacts, 8 groups and 3 message tails")))
        << answer.Out.toStdString();
    EXPECT_TRUE(answer.Error.isEmpty());
}

TEST(DataCommands, CreateIntoAnExistingOfficeIsRefused) {
    const TestOffice office;
    const Answer answer = RunLine({Create, office.Folder()});
    EXPECT_EQ(answer.Code, ExitCode::CannotOpen);
    EXPECT_TRUE(answer.Error.contains(QStringLiteral("is there already; nothing was changed")))
        << answer.Error.toStdString();
}

TEST(DataCommands, ProgressIsDrawnOnATerminalOnly) {
    const QTemporaryDir root;
    const QStringList line{Create, root.filePath(QStringLiteral("a")), QStringLiteral("--sample=300")};
    EXPECT_TRUE(RunLine(line, true).Error.contains(QStringLiteral("50% contacts")));
    const QStringList check{Check, root.filePath(QStringLiteral("a"))};
    EXPECT_TRUE(RunLine(check, true).Error.contains(QStringLiteral("smscontacts.mdb")));
    EXPECT_TRUE(RunLine(check, false).Error.isEmpty());
}

TEST(DataCommands, AStoppedCreateSaysSo) {
    const QTemporaryDir root;
    int left = 20;
    const Answer answer =
        RunLine({Create, root.filePath(QStringLiteral("a")), QStringLiteral("--sample=300")}, false,
                [&] { return --left < 0; });
    EXPECT_EQ(answer.Code, ExitCode::Stopped);
    EXPECT_EQ(answer.Error, QStringLiteral("larkspan-data: stopped; nothing was made\n"));
    EXPECT_FALSE(QFile::exists(root.filePath(QStringLiteral("a"))));
}

TEST(DataCommands, CheckOfAFineOfficeEndsWith0AndOfAnotherWith1) {
    const TestOffice office;
    EXPECT_EQ(RunLine({Check, office.Folder()}).Code, ExitCode::Fine);
    office.Execute(office.Phonebook(), QStringLiteral("DELETE FROM Config"));
    const Answer answer = RunLine({Check, office.Folder()});
    EXPECT_EQ(answer.Code, ExitCode::Problem);
    EXPECT_TRUE(answer.Out.contains(QStringLiteral("Config has no row")));
    EXPECT_EQ(RunLine({Check, office.Folder()}, false, [] { return true; }).Code, ExitCode::Stopped);
}

TEST(DataCommands, CheckOfAMissingFolderEndsWith3) {
    const Answer answer = RunLine({Check, QStringLiteral("/nowhere/at/all")});
    EXPECT_EQ(answer.Code, ExitCode::CannotOpen);
    EXPECT_EQ(answer.Error, QStringLiteral("larkspan-data: there is no folder /nowhere/at/all\n"));
}
