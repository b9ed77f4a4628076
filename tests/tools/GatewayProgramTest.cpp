#include "larkspan-gateway/MessageStatus.h"
#include "tools/TestOffice.h"
#include "tools/ToolProcess.h"

#include <QFile>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>
#include <csignal>

using namespace MessageStatus;

namespace {

class GatewayProgram : public ::testing::Test {
protected:
    [[nodiscard]] QString Journal() const { return Office.PathOf(QStringLiteral("journal")); }
    [[nodiscard]] QStringList Line(const QString& options) const {
        return QStringList{Office.Folder(), QStringLiteral("--journal"), Journal()} +
               options.split(u' ', Qt::SkipEmptyParts);
    }
    [[nodiscard]] int JournalLines() const {
        return QFile::exists(Journal()) ? static_cast<int>(ReadJournal(Journal()).size()) : 0;
    }
    [[nodiscard]] static QDateTime JustNow() { return QDateTime::currentDateTime().addSecs(-5); }

    /// Every row was either handed over once or canceled and never handed over.
    void ExpectNothingTwiceAndNothingCanceledSent(const QList<qint32>& ids) const {
        const QMap<qint32, int> sent = ReadJournal(Journal());
        for (const qint32 id : ids) {
            EXPECT_EQ(sent.value(id), Office.Status(id) == Canceled ? 0 : 1)
                << id << " at " << Office.Status(id);
        }
        EXPECT_EQ(sent.size() + Office.Statuses().value(Canceled), ids.size());
    }

    TestOffice Office;
};

}  // namespace

TEST_F(GatewayProgram, DeliversWhatIsDueAndEndsWhenNothingIsLeft) {
    const auto ids = Office.AddMessages(30, JustNow());
    const qint32 later = Office.AddMessage(QDateTime::currentDateTime().addSecs(3600));
    const ToolResult result = RunGateway(Line(QStringLiteral("--until-idle --delay 5 --poll 5")));
    EXPECT_EQ(result.Code, 0) << result.Error.toStdString();
    EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Waiting, 1}, {Delivered, 30}}));
    EXPECT_EQ(Office.Status(later), Waiting);
    EXPECT_EQ(ReadJournal(Journal()).size(), 30);
    EXPECT_EQ(result.Out.count(QStringLiteral(" delivered, 1 part\n")), 30);
    EXPECT_TRUE(result.Out.endsWith(
        QStringLiteral("30 handed over, 0 taken on from an earlier run, 30 ended, 0 on their way\n")));
}

TEST_F(GatewayProgram, PrintsNoNumberNoNameAndNoText) {
    Office.AddMessage(JustNow(), QStringLiteral("+353209155555"), QStringLiteral("a private word"));
    Office.AddMessage(JustNow(), QStringLiteral("+353209155004"), QStringLiteral("another one"));
    const ToolResult result = RunGateway(Line(QStringLiteral("--once --delay 0")));
    EXPECT_TRUE(result.Out.contains(QStringLiteral("message 2 not sent")));
    QFile journal(Journal());
    ASSERT_TRUE(journal.open(QIODevice::ReadOnly));
    const QString all = result.Out + result.Error + QString::fromUtf8(journal.readAll());
    for (const QString& secret :
         {QStringLiteral("353"), QStringLiteral("55555"), QStringLiteral("private"),
          QStringLiteral("another"), QStringLiteral("Neill"), QStringLiteral("DESK1")}) {
        EXPECT_FALSE(all.contains(secret)) << secret.toStdString();
    }
}

TEST_F(GatewayProgram, QuietPrintsNothing) {
    Office.AddMessages(3, JustNow());
    const ToolResult result = RunGateway(Line(QStringLiteral("--once --delay 0 --quiet")));
    EXPECT_EQ(result.Code, 0);
    EXPECT_EQ(result.Out + result.Error, QString());
}

TEST_F(GatewayProgram, ExitStatusesAreAsTheManualSays) {
    EXPECT_EQ(RunGateway({QStringLiteral("--help")}).Code, 0);
    EXPECT_EQ(RunGateway({}).Code, 2);
    EXPECT_EQ(RunGateway({Office.Folder(), QStringLiteral("--rate=x")}).Code, 2);
    EXPECT_EQ(RunGateway({QStringLiteral("/nowhere")}).Code, 3);
}

TEST_F(GatewayProgram, ASignalEndsItAtOnceAndTheNextRunGoesOnWithoutSendingAgain) {
    const auto ids = Office.AddMessages(400, JustNow());
    for (const int number : {SIGTERM, SIGINT}) {
        ToolProcess process(QStringLiteral(LARKSPAN_GATEWAY_PROGRAM),
                            Line(QStringLiteral("--delay 60000 --rate 200 --poll 5")));
        const int before = JournalLines();
        ASSERT_TRUE(WaitFor([&] { return JournalLines() > before + 10; }));
        process.Signal(number);
        const ToolResult result = process.Finish();
        EXPECT_EQ(result.Code, 0) << result.Error.toStdString();
        const auto statuses = Office.Statuses();
        EXPECT_EQ(statuses.value(Handing), 0);  // the operator's answer stands in the row
        EXPECT_EQ(statuses.value(EnRoute), JournalLines());
    }
    EXPECT_EQ(RunGateway(Line(QStringLiteral("--until-idle --delay 5 --poll 5"))).Code, 0);
    EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Delivered, 400}}));
    ExpectNothingTwiceAndNothingCanceledSent(ids);
}

TEST_F(GatewayProgram, AKillAtRandomMomentsNeverSendsARowTwice) {
    const auto ids = Office.AddMessages(600, JustNow());
    QRandomGenerator random(7);
    for (int round = 0; round < 5; ++round) {
        ToolProcess process(QStringLiteral(LARKSPAN_GATEWAY_PROGRAM),
                            Line(QStringLiteral("--delay 20 --rate 200 --poll 5")));
        const int enough = JournalLines() + 1 + static_cast<int>(random.bounded(20));
        ASSERT_TRUE(WaitFor([&] { return JournalLines() >= enough; }));
        process.Signal(SIGKILL);
        EXPECT_EQ(process.Finish().Code, -1);
    }
    EXPECT_EQ(RunGateway(Line(QStringLiteral("--until-idle --delay 5 --poll 5"))).Code, 0);
    const auto statuses = Office.Statuses();
    EXPECT_EQ(statuses.value(Delivered) + statuses.value(Unconfirmed), 600);
    EXPECT_GT(statuses.value(Delivered), 0);
    const QMap<qint32, int> sent = ReadJournal(Journal());
    for (const qint32 id : ids) {
        EXPECT_LE(sent.value(id), 1) << id;
        if (Office.Status(id) == Delivered) {
            EXPECT_EQ(sent.value(id), 1) << id;
        }
    }
}

TEST_F(GatewayProgram, TwoAtOnceNeverSendARowTwiceAndLeaveNoneBehind) {
    constexpr int Rows = 400;
    QList<qint32> ids;
    bool hadBothToDo = false;
    // One of them may come so late that the other has done everything.
    for (int round = 1; round <= 5 && !hadBothToDo && !HasFailure(); ++round) {
        ids += Office.AddMessages(Rows, JustNow());
        const QStringList line = Line(QStringLiteral("--until-idle --delay 10 --poll 5 --rate 400"));
        ToolProcess first(QStringLiteral(LARKSPAN_GATEWAY_PROGRAM), line);
        ToolProcess second(QStringLiteral(LARKSPAN_GATEWAY_PROGRAM), line);
        const ToolResult one = first.Finish();
        const ToolResult two = second.Finish();
        EXPECT_EQ(one.Code, 0) << one.Error.toStdString();
        EXPECT_EQ(two.Code, 0) << two.Error.toStdString();
        EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Delivered, round * Rows}}));
        ExpectNothingTwiceAndNothingCanceledSent(ids);
        hadBothToDo =
            one.Out.contains(QStringLiteral(" delivered")) && two.Out.contains(QStringLiteral(" delivered"));
    }
    EXPECT_TRUE(hadBothToDo);
}

TEST_F(GatewayProgram, ARaceWithSomebodyWhoCancelsLeavesEachRowEitherSentOrCanceled) {
    const auto ids = Office.AddMessages(300, JustNow());
    ToolProcess process(QStringLiteral(LARKSPAN_GATEWAY_PROGRAM),
                        Line(QStringLiteral("--until-idle --delay 5 --poll 5 --rate 400")));
    int canceled = Office.Cancel(ids.last()) ? 1 : 0;  // one at least, whoever is faster
    ASSERT_TRUE(WaitFor([&] { return JournalLines() > 0; }));
    QRandomGenerator random(11);
    while (process.IsRunning() && Office.Statuses().value(Waiting) > 0) {
        // The rows that the gateway takes next, where the race is.
        const auto waiting = Office.Column(
            Office.Outbox(),
            QStringLiteral(
                "SELECT TOP 5 msgID FROM Message WHERE msgStatus = 0 ORDER BY msgSendTime, msgID"));
        for (const QVariant& id : waiting) {
            canceled += random.bounded(3) == 0 && Office.Cancel(id.toInt()) ? 1 : 0;
        }
    }
    EXPECT_EQ(process.Finish().Code, 0);
    const auto statuses = Office.Statuses();
    EXPECT_EQ(statuses.value(Canceled), canceled);
    EXPECT_EQ(statuses.value(Canceled) + statuses.value(Delivered), 300);
    EXPECT_GT(canceled, 0);
    EXPECT_GT(statuses.value(Delivered), 0);
    ExpectNothingTwiceAndNothingCanceledSent(ids);
}

TEST_F(GatewayProgram, AReaderThatGoesAwayDoesNotEndIt) {
    Office.AddMessages(60, JustNow());
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    close(ends[0]);  // nobody reads
    const int output = ends[1];
    ToolProcess process(QStringLiteral(LARKSPAN_GATEWAY_PROGRAM),
                        Line(QStringLiteral("--until-idle --delay 5 --poll 5")),
                        [output] { dup2(output, STDOUT_FILENO); });
    close(output);
    EXPECT_EQ(process.Finish().Code, 0);
    EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Delivered, 60}}));
}

TEST_F(GatewayProgram, AnOutboxThatMayNotBeWrittenIsAClearErrorAndNothingIsSent) {
    Office.AddMessages(3, JustNow());
    QFile::setPermissions(Office.PathOf(QString()), QFile::Permissions(0x7755));
    QFile::setPermissions(Office.Folder(), QFile::Permissions(0x7777));
    QFile::setPermissions(Office.Outbox(), QFile::Permissions(0x4444));
    const ToolResult result = RunGateway({Office.Folder(), QStringLiteral("--once")}, BecomeNobody);
    EXPECT_EQ(result.Code, 3);
    EXPECT_TRUE(result.Error.startsWith(QStringLiteral("larkspan-gateway: the outbox cannot be ")))
        << result.Error.toStdString();
    EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Waiting, 3}}));
}

TEST_F(GatewayProgram, AFolderThatMayNotBeWrittenIsAClearErrorAndNothingIsSent) {
    Office.AddMessages(3, JustNow());
    QFile::setPermissions(Office.PathOf(QString()), QFile::Permissions(0x7755));
    QFile::setPermissions(Office.Folder(), QFile::Permissions(0x5555));
    const ToolResult result = RunGateway({Office.Folder(), QStringLiteral("--once")}, BecomeNobody);
    QFile::setPermissions(Office.Folder(), QFile::Permissions(0x7755));
    EXPECT_EQ(result.Code, 3);
    EXPECT_TRUE(result.Error.contains(QStringLiteral("smsgateway.lock cannot be locked: Permission denied")))
        << result.Error.toStdString();
    EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Waiting, 3}}));
}

TEST_F(GatewayProgram, AJournalOnAFullDiskSendsNothingTwiceAndSaysSoInTheRows) {
    const qint32 id = Office.AddMessage(JustNow());
    const ToolResult result =
        RunGateway({Office.Folder(), QStringLiteral("--once"), QStringLiteral("--delay=0"),
                    QStringLiteral("--journal=/dev/full")});
    EXPECT_EQ(result.Code, 0);
    EXPECT_EQ(Office.Status(id), NotSent);
}

TEST_F(GatewayProgram, AFullDiskEndsTheRunWithAClearErrorAndEveryRowStaysWhole) {
    const auto ids = Office.AddMessages(200, JustNow(), QStringLiteral("+353209112345"), QString(400, u'x'));
    // Room for the file as it is, but not for what the statements add to its journal.
    const ToolResult result =
        RunGateway(Line(QStringLiteral("--until-idle --delay 0 --poll 5")), WithFilesUpTo(1024));
    EXPECT_TRUE(result.Code == 1 || result.Code == 3) << result.Code;
    EXPECT_TRUE(result.Error.contains(QStringLiteral("the outbox cannot be"))) << result.Error.toStdString();
    EXPECT_EQ(RunGateway(Line(QStringLiteral("--until-idle --delay 0 --poll 5"))).Code, 0);
    const auto statuses = Office.Statuses();
    EXPECT_EQ(statuses.value(Delivered) + statuses.value(Unconfirmed), 200);
    for (const int times : ReadJournal(Journal())) {
        EXPECT_EQ(times, 1);
    }
}
