#include "tools/TestOffice.h"
#include "tools/ToolProcess.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <pty.h>
#include <unistd.h>
#include <csignal>

namespace {

QStringList EverythingIn(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                  QDir::Name);
}

const QString Create = QStringLiteral("create");
const QString Check = QStringLiteral("check");

}  // namespace

TEST(DataProgram, MakesAnOfficeThatItsOwnCheckFindsFine) {
    const QTemporaryDir root;
    const QString folder = root.filePath(QStringLiteral("office"));
    const ToolResult made = RunData({Create, folder, QStringLiteral("--sample"), QStringLiteral("250")});
    EXPECT_EQ(made.Code, 0) << made.Error.toStdString();
    EXPECT_EQ(EverythingIn(folder),
              (QStringList{QStringLiteral("smscontacts.mdb"), QStringLiteral("smsmessages.mdb")}));
    const ToolResult checked = RunData({Check, folder});
    EXPECT_EQ(checked.Code, 0) << checked.Out.toStdString();
    EXPECT_TRUE(checked.Out.endsWith(QStringLiteral("No problem found.\n")));
    const auto json =
        QJsonDocument::fromJson(RunData({Check, folder, QStringLiteral("--json")}).Out.toUtf8()).object();
    EXPECT_TRUE(json[QStringLiteral("fine")].toBool());
    EXPECT_EQ(json[QStringLiteral("rows")][QStringLiteral("Contact")].toInt(), 250);
}

TEST(DataProgram, ExitStatusesAreAsTheManualSays) {
    const TestOffice office;
    EXPECT_EQ(RunData({QStringLiteral("--help")}).Code, 0);
    EXPECT_EQ(RunData({QStringLiteral("--version")}).Code, 0);
    EXPECT_EQ(RunData({}).Code, 2);
    EXPECT_EQ(RunData({Create, office.PathOf(QStringLiteral("x")), QStringLiteral("--sample=x")}).Code, 2);
    EXPECT_EQ(RunData({Create, office.Folder()}).Code, 3);
    EXPECT_EQ(RunData({Check, QStringLiteral("/nowhere")}).Code, 3);
    office.Execute(office.Outbox(), QStringLiteral("DELETE FROM System"));
    EXPECT_EQ(RunData({Check, office.Folder()}).Code, 1);
}

TEST(DataProgram, AFolderThatMayNotBeWrittenIsAClearErrorAndStaysEmpty) {
    const QTemporaryDir root;
    ASSERT_TRUE(QDir().mkdir(root.filePath(QStringLiteral("office"))));
    QFile::setPermissions(root.path(), QFile::Permissions(0x5555));  // readable for all, writable for none
    QFile::setPermissions(root.filePath(QStringLiteral("office")), QFile::Permissions(0x5555));
    const ToolResult existing = RunData({Create, root.filePath(QStringLiteral("office"))}, BecomeNobody);
    EXPECT_EQ(existing.Code, 3);
    EXPECT_TRUE(existing.Error.contains(QStringLiteral("cannot be written; nothing was changed")))
        << existing.Error.toStdString();
    const ToolResult missing = RunData({Create, root.filePath(QStringLiteral("new"))}, BecomeNobody);
    EXPECT_EQ(missing.Code, 3);
    EXPECT_TRUE(missing.Error.contains(QStringLiteral("cannot be made; nothing was changed")))
        << missing.Error.toStdString();
    QFile::setPermissions(root.path(), QFile::Permissions(0x7755));
    EXPECT_EQ(EverythingIn(root.path()), QStringList{QStringLiteral("office")});
    EXPECT_TRUE(EverythingIn(root.filePath(QStringLiteral("office"))).isEmpty());
}

TEST(DataProgram, AFullDiskIsAClearErrorAndLeavesNothingBehind) {
    for (const qint64 room : {0, 1000, 20000, 50000, 100000}) {
        const QTemporaryDir root;
        const ToolResult result =
            RunData({Create, root.filePath(QStringLiteral("office")), QStringLiteral("--sample=1000")},
                    WithFilesUpTo(room));
        EXPECT_EQ(result.Code, 3) << room;
        EXPECT_TRUE(result.Error.startsWith(QStringLiteral("larkspan-data: ")) &&
                    result.Error.endsWith(QStringLiteral("; nothing was changed\n")))
            << result.Error.toStdString();
        EXPECT_TRUE(EverythingIn(root.path()).isEmpty()) << room;
    }
}

namespace {

/// Sends the signal as soon as there is something in the folder. A program that was faster than the signal is
/// started again, with an empty folder.
ToolResult Interrupt(const QStringList& line, const QString& folder, int number) {
    ToolResult result;
    for (int attempt = 1; attempt <= 5; ++attempt) {
        ToolProcess process(QStringLiteral(LARKSPAN_DATA_PROGRAM), line);
        EXPECT_TRUE(WaitFor([&] { return !EverythingIn(folder).isEmpty(); }));
        process.Signal(number);
        result = process.Finish();
        if (result.Code != 0) {
            break;
        }
        QDir(folder).removeRecursively();
        QDir().mkpath(folder);
    }
    return result;
}

}  // namespace

TEST(DataProgram, ASignalInTheMiddleLeavesNothingBehind) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        const QTemporaryDir root;
        const ToolResult result =
            Interrupt({Create, root.filePath(QStringLiteral("office")), QStringLiteral("--sample=32767")},
                      root.path(), number);
        EXPECT_EQ(result.Code, 4) << number;
        EXPECT_EQ(result.Error, QStringLiteral("larkspan-data: stopped; nothing was made\n"));
        EXPECT_TRUE(EverythingIn(root.path()).isEmpty());
    }
}

TEST(DataProgram, AKillInTheMiddleLeavesNoHalfOffice) {
    const QTemporaryDir root;
    const QString folder = root.filePath(QStringLiteral("office"));
    EXPECT_EQ(Interrupt({Create, folder, QStringLiteral("--sample=32767")}, folder, SIGKILL).Code, -1);
    EXPECT_FALSE(QFile::exists(folder + QStringLiteral("/smsmessages.mdb")));
    EXPECT_FALSE(QFile::exists(folder + QStringLiteral("/smscontacts.mdb")));
    EXPECT_EQ(RunData({Create, folder}).Code, 0);  // and the next try is not in its way
}

TEST(DataProgram, OfTwoAtOnceOneMakesTheOfficeAndItIsWhole) {
    const QTemporaryDir root;
    const QString folder = root.filePath(QStringLiteral("office"));
    const QStringList line{Create, folder, QStringLiteral("--sample=400")};
    ASSERT_TRUE(QDir().mkdir(folder));
    ToolProcess first(QStringLiteral(LARKSPAN_DATA_PROGRAM), line);
    ToolProcess second(QStringLiteral(LARKSPAN_DATA_PROGRAM), line);
    QList<int> codes{first.Finish().Code, second.Finish().Code};
    std::sort(codes.begin(), codes.end());
    EXPECT_EQ(codes, (QList<int>{0, 3}));
    EXPECT_EQ(EverythingIn(folder),
              (QStringList{QStringLiteral("smscontacts.mdb"), QStringLiteral("smsmessages.mdb")}));
    EXPECT_EQ(RunData({Check, folder}).Code, 0);
}

TEST(DataProgram, DrawsItsProgressOnATerminalAndNowhereElse) {
    const QTemporaryDir root;
    int master = -1;
    int slave = -1;
    ASSERT_EQ(openpty(&master, &slave, nullptr, nullptr, nullptr), 0);
    ToolProcess process(QStringLiteral(LARKSPAN_DATA_PROGRAM),
                        {Create, root.filePath(QStringLiteral("a")), QStringLiteral("--sample=200")},
                        [slave] { dup2(slave, STDERR_FILENO); });
    close(slave);
    QByteArray drawn;
    char buffer[4096];
    for (ssize_t count = 0; (count = read(master, buffer, sizeof buffer)) > 0;) {
        drawn.append(buffer, count);
    }
    close(master);
    EXPECT_EQ(process.Finish().Code, 0);
    EXPECT_TRUE(drawn.contains("100% contacts")) << drawn.constData();
    EXPECT_TRUE(RunData({Create, root.filePath(QStringLiteral("b")), QStringLiteral("--sample=200")})
                    .Error.isEmpty());
}

TEST(DataProgram, AReadOnlyOfficeCanBeChecked) {
    const TestOffice office(SampleOffice::Plan{60, 1});
    for (const QString& path : {office.Outbox(), office.Phonebook()}) {
        QFile::setPermissions(path, QFile::Permissions(0x4444));
    }
    QFile::setPermissions(office.PathOf(QString()), QFile::Permissions(0x7755));
    const ToolResult result = RunData({Check, office.Folder()}, BecomeNobody);
    EXPECT_EQ(result.Code, 0) << result.Out.toStdString() << result.Error.toStdString();
}
