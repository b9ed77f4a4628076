#include "hammer/ThirdReader.h"
#include "store/engine/Connection.h"
#include "store/engine/sqlite/OfficeFiles.h"
#include "support/MemoryFolder.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <memory>
#include <vector>

namespace {

constexpr int Clients = 4;

bool IsLong() {
    return qEnvironmentVariableIsSet("LARKSPAN_TEST_LONG");
}

/// Writers of messages with a data folder of their own.
class Hammer : public ::testing::Test {
protected:
    QTemporaryDir m_folder{MemoryFolder(QStringLiteral("larkspan-hammer"))};
    std::vector<std::unique_ptr<QProcess>> m_clients;
    QStringList m_ackFiles;
    QStringList m_historyFiles;

    void SetUp() override { OfficeFiles::CreateOutboxFile(Outbox()); }

    [[nodiscard]] QString Path(const QString& name) const { return m_folder.filePath(name); }
    [[nodiscard]] QString Outbox() const { return Path(QStringLiteral("smsmessages.mdb")); }
    [[nodiscard]] QString Journal() const { return Path(QStringLiteral("gateway.journal")); }

    /// Starts a client whose local files lie in a home named after `tag`.
    QProcess& StartClient(const QString& tag, const QString& home, int seconds, int recipients) {
        QDir().mkpath(Path(home));
        const QString ack = Path(QStringLiteral("ack-") + tag);
        m_ackFiles.append(ack);
        const QString history = Path(home) + QStringLiteral("/history.sms");
        if (!m_historyFiles.contains(history)) {
            m_historyFiles.append(history);
        }
        auto client = std::make_unique<QProcess>();
        client->setProcessChannelMode(QProcess::SeparateChannels);
        client->start(QStringLiteral(HAMMER_CLIENT), {Outbox(), Path(home), tag, QString::number(seconds),
                                                      QString::number(recipients), ack});
        EXPECT_TRUE(client->waitForStarted());
        m_clients.push_back(std::move(client));
        return *m_clients.back();
    }

    void StartGateway(QProcess& gateway) const {
        gateway.setStandardOutputFile(QProcess::nullDevice());
        gateway.start(QStringLiteral(GATEWAY),
                      {m_folder.path(), QStringLiteral("--quiet"), QStringLiteral("--delay"),
                       QStringLiteral("0"), QStringLiteral("--journal"), Journal()});
        ASSERT_TRUE(gateway.waitForStarted());
    }

    static void StopGateway(QProcess& gateway) {
        gateway.terminate();
        EXPECT_TRUE(gateway.waitForFinished(20000)) << "the gateway hung";
        EXPECT_EQ(gateway.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(gateway.exitCode(), 0) << gateway.readAllStandardError().toStdString();
    }
};

struct LoadTotals {
    int Rounds = 0;
    int Rows = 0;
    int Reports = 0;  // of processes that came to their end
    int Boxes = 0;
    int Transient = 0;
    int WorstTransientInARow = 0;
    int Canceled = 0;
    int Holds = 0;           // of the outbox by the backup
    qint64 LongestHold = 0;  // ms
    double Seconds = 0;
    QList<qint64> Inserts;  // microseconds of one row each
    QList<qint64> Presses;  // microseconds of whole sends
};

void AddReport(const QByteArray& report, const ThirdReader& reader, ThirdReader::Findings& findings,
               LoadTotals& totals) {
    const QList<QByteArray> lines = report.split('\n');
    for (const QByteArray& line : lines) {
        const QString text = QString::fromUtf8(line);
        const QString word = text.section(u' ', 0, 0);
        const QString value = text.section(u' ', 1, 1);
        if (word == u"boxes") {
            totals.Boxes += value.toInt();
        } else if (word == u"transient") {
            totals.Transient += value.toInt();
        } else if (word == u"transientInARow") {
            totals.WorstTransientInARow = std::max(totals.WorstTransientInARow, value.toInt());
        } else if (word == u"otherFailures") {
            EXPECT_EQ(value.toInt(), 0) << "failures that are no locks";
            ++totals.Reports;
        } else if (word == u"insert") {
            totals.Inserts.append(value.toLongLong());
        } else if (word == u"press") {
            totals.Presses.append(value.toLongLong());
        } else if (word == u"tracked") {
            reader.CountTracked(value.toInt(), text.section(u' ', 2, 2), findings);
        }
    }
}

void PrintTimes(const char* what, QList<qint64> microseconds, double seconds) {
    std::sort(microseconds.begin(), microseconds.end());
    const auto at = [&microseconds](double part) {
        const auto last = static_cast<double>(microseconds.size() - 1);
        return microseconds.isEmpty()
                   ? 0.0
                   : static_cast<double>(microseconds[static_cast<qsizetype>(part * last)]) / 1000.0;
    };
    std::printf("    %-7s %7lld, %6.1f a second; p50 %.1f ms, p99 %.1f ms, worst %.1f ms\n", what,
                static_cast<long long>(microseconds.size()),
                static_cast<double>(microseconds.size()) / seconds, at(0.5), at(0.99), at(1.0));
}

void Print(const LoadTotals& totals, const ThirdReader::Findings& findings) {
    std::printf("    %d round(s), %d rows in %.1f s by %d clients with 1 to %d recipients a send\n",
                totals.Rounds, totals.Rows, totals.Seconds, Clients, Clients);
    PrintTimes("sends", totals.Presses, totals.Seconds);
    PrintTimes("inserts", totals.Inserts, totals.Seconds);
    std::printf(
        "    lost %d, doubled %d, wrong status %d, canceled and sent %d; canceled %d; lock conflicts that "
        "outlasted the engine's wait: %d; held by a backup %d times, at most %lld ms\n",
        findings.Lost, findings.Doubled, findings.WrongStatus, findings.CanceledAndSent, totals.Canceled,
        totals.Transient, totals.Holds, static_cast<long long>(totals.LongestHold));
}

class LoadRun : public Hammer {
protected:
    bool m_hasBackup = false;

    /// Rounds for at least this long, and what must hold after them.
    LoadTotals RunAll(int seconds) {
        LoadTotals totals;
        ThirdReader::Findings findings;
        int round = 0;
        while (totals.Seconds < seconds && !HasFailure()) {
            RunRound(++round, std::max(3, seconds - static_cast<int>(totals.Seconds)), totals, findings);
        }
        Print(totals, findings);
        const std::string examples = findings.Examples.join(u'\n').toStdString();
        EXPECT_GT(totals.Rows, 50);
        EXPECT_GT(totals.Canceled, 0) << "nobody canceled anything";
        EXPECT_EQ(findings.Lost, 0) << examples;
        EXPECT_EQ(findings.Doubled, 0) << examples;
        EXPECT_EQ(findings.WrongStatus, 0) << examples;
        EXPECT_EQ(findings.CanceledAndSent, 0) << examples;
        EXPECT_LT(totals.WorstTransientInARow, 3) << "retries ran out";
        EXPECT_EQ(totals.Boxes, 0);
        EXPECT_EQ(totals.Reports, totals.Rounds * (Clients + 1)) << "a client or the canceller told nothing";
        return totals;
    }

private:
    /// The clients, the gateway, a canceller and, if asked for, a backup on a fresh outbox until the clients
    /// end by themselves.
    void RunRound(int round, int seconds, LoadTotals& totals, ThirdReader::Findings& findings) {
        QFile::remove(Outbox());
        QFile::remove(Journal());
        QFile::remove(Outbox() + QStringLiteral("-journal"));
        OfficeFiles::CreateOutboxFile(Outbox());
        m_clients.clear();
        m_ackFiles.clear();
        m_historyFiles.clear();

        QProcess gateway;
        StartGateway(gateway);
        QProcess backup;
        if (m_hasBackup) {
            backup.start(QStringLiteral(HAMMER_READER),
                         {Outbox(), QStringLiteral("900"), QStringLiteral("600")});
        }
        QElapsedTimer timer;
        timer.start();
        for (int client = 1; client <= Clients; ++client) {
            const QString tag = QStringLiteral("r%1c%2").arg(round).arg(client);
            StartClient(tag, QStringLiteral("home-") + tag, seconds, client);
        }
        QProcess canceller;
        canceller.start(QStringLiteral(HAMMER_CANCELLER),
                        {Outbox(), m_folder.path(), QString::number(std::max(1, seconds - 1))});
        for (const auto& client : m_clients) {
            EXPECT_TRUE(client->waitForFinished((seconds + 60) * 1000)) << "a client hung";
            EXPECT_EQ(client->exitCode(), 0) << client->readAllStandardError().toStdString();
        }
        totals.Seconds += static_cast<double>(timer.elapsed()) / 1000.0;
        StopCanceller(canceller);
        if (m_hasBackup) {
            backup.terminate();
            EXPECT_TRUE(backup.waitForFinished(20000)) << "the backup hung";
            CountHolds(backup.readAllStandardOutput(), totals);
        }
        StopGateway(gateway);
        EXPECT_GT(QFile(Journal()).size(), 0) << "the gateway took nothing";
        Count(canceller.readAllStandardOutput(), totals, findings);
    }
    /// Clients end before their time when the numbers run out; the canceller is asked to.
    static void StopCanceller(QProcess& canceller) {
        if (!canceller.waitForFinished(3000)) {
            canceller.terminate();
            EXPECT_TRUE(canceller.waitForFinished(20000)) << "the canceller hung";
        }
        EXPECT_EQ(canceller.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(canceller.exitCode(), 0);
    }

    static void CountHolds(const QByteArray& report, LoadTotals& totals) {
        for (const QByteArray& line : report.split('\n')) {
            const qint64 held = line.startsWith("held ") ? line.mid(5).toLongLong() : -1;
            totals.Holds += held >= 0 ? 1 : 0;
            totals.LongestHold = std::max(totals.LongestHold, held);
        }
    }
    /// `cancellations` is the report of the canceller.
    void Count(const QByteArray& cancellations, LoadTotals& totals, ThirdReader::Findings& findings) {
        const ThirdReader reader(Outbox());
        EXPECT_TRUE(reader.IsWhole());
        reader.CountAcknowledged(m_ackFiles, findings);
        reader.CountDoubled(findings);
        reader.CountHandedOver(Journal(), findings);
        reader.CountHistory(m_historyFiles, findings);
        for (qsizetype client = 0; client < m_ackFiles.size(); ++client) {
            ThirdReader::CountKept({m_ackFiles[client]}, m_historyFiles[client], findings);
        }
        QStringList canceled;
        for (const QByteArray& line : cancellations.split('\n')) {
            if (line.startsWith("canceled ")) {
                canceled.append(QString::fromLatin1(line.mid(9)));
            }
        }
        reader.CountCanceled(canceled, Journal(), findings);
        AddReport(cancellations, reader, findings, totals);
        for (const auto& client : m_clients) {
            AddReport(client->readAllStandardOutput(), reader, findings, totals);
        }
        totals.Canceled += static_cast<int>(canceled.size());
        totals.Rows += static_cast<int>(reader.Rows().size());
        ++totals.Rounds;
    }
};

}  // namespace

TEST_F(LoadRun, FourClientsTheGatewayAndACancellerLoseAndDoubleNothing) {
    RunAll(IsLong() ? 600 : 10);
}

TEST_F(LoadRun, ABackupThatHoldsTheOutboxNowAndThenMakesThemWaitAndLosesAndDoublesNothing) {
    m_hasBackup = true;
    const LoadTotals totals = RunAll(IsLong() ? 120 : 8);
    EXPECT_GE(totals.Holds, 3);
    EXPECT_GE(totals.LongestHold, 300);
    EXPECT_GT(*std::max_element(totals.Inserts.begin(), totals.Inserts.end()), 200 * 1000)
        << "no insert had to wait for the backup";
}

TEST_F(Hammer, ASenderKilledAtRandomMomentsLeavesEveryAcknowledgedRowOnce) {
    const int kills = IsLong() ? 500 : 10;
    QRandomGenerator random(4711);
    qint64 worstOpen = 0;
    for (int kill = 1; kill <= kills; ++kill) {
        QProcess& client = StartClient(QStringLiteral("k%1").arg(kill), QStringLiteral("home"), 60, 3);
        const QString ack = m_ackFiles.last();
        QElapsedTimer patience;
        patience.start();
        while (QFile(ack).size() == 0 && patience.elapsed() < 20000) {
            QThread::usleep(200);
        }
        ASSERT_GT(QFile(ack).size(), 0) << "the client never sent";
        QThread::usleep(random.bounded(1, 60000));
        client.kill();
        ASSERT_TRUE(client.waitForFinished(20000));
        EXPECT_EQ(client.exitStatus(), QProcess::CrashExit);

        QElapsedTimer timer;
        timer.start();
        engine::FileConnectionFactory factory;
        const auto connection = factory.NewConnection();
        connection->Mode = engine::Mode::ReadWriteShared;
        ASSERT_NO_THROW(connection->Open(Outbox()));
        ASSERT_NO_THROW((void)connection->Execute(
            QStringLiteral("UPDATE Message SET msgComplete = FALSE WHERE msgID = 0"), nullptr));
        connection->Close();
        worstOpen = std::max(worstOpen, timer.elapsed());
        // Now, and not at the end: the next client would mend what this one left.
        const ThirdReader reader(Outbox());
        EXPECT_TRUE(reader.IsWhole()) << "kill " << kill;
        ThirdReader::Findings afterKill;
        reader.CountHistory({m_historyFiles.first()}, afterKill);
        EXPECT_EQ(afterKill.WrongStatus, 0) << afterKill.Examples.join(u'\n').toStdString();
    }

    const ThirdReader reader(Outbox());
    EXPECT_TRUE(reader.IsWhole());
    ThirdReader::Findings findings;
    reader.CountAcknowledged(m_ackFiles, findings);
    reader.CountDoubled(findings);
    reader.CountHistory(m_historyFiles, findings);
    ThirdReader::CountKept(m_ackFiles, m_historyFiles.first(), findings);
    std::printf("    %d kills, %d rows; lost %d, doubled %d, wrong %d; the outbox opened within %lld ms\n",
                kills, findings.Rows, findings.Lost, findings.Doubled, findings.WrongStatus,
                static_cast<long long>(worstOpen));
    EXPECT_EQ(findings.Lost, 0) << findings.Examples.join(u'\n').toStdString();
    EXPECT_EQ(findings.Doubled, 0) << findings.Examples.join(u'\n').toStdString();
    EXPECT_EQ(findings.WrongStatus, 0) << findings.Examples.join(u'\n').toStdString();
    EXPECT_LT(worstOpen, 30000) << "a lock of the dead sender stayed behind";
}
