#include "platform_ui/NotificationServer.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

constexpr int Patience = 10000;  // ms

/// A process that runs until it is stopped, and says something.
class SpeakingProcess {
public:
    SpeakingProcess(const QString& program, const QStringList& arguments, const QString& bus = {}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus);
        m_process.setProcessEnvironment(environment);
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.start(program, arguments);
        EXPECT_TRUE(m_process.waitForStarted()) << program.toStdString();
    }
    ~SpeakingProcess() {
        m_process.kill();
        m_process.waitForFinished();
    }
    SpeakingProcess(const SpeakingProcess&) = delete;
    SpeakingProcess& operator=(const SpeakingProcess&) = delete;

    void Write(const QString& line) { m_process.write(line.toUtf8() + '\n'); }
    /// The next line; empty if none came in time. Events run meanwhile.
    [[nodiscard]] QString ReadLine() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return m_process.canReadLine(); }, Patience));
        return QString::fromUtf8(m_process.readLine()).trimmed();
    }

private:
    QProcess m_process;
};

/// The program's notices in a process of their own, on a bus of the test's.
class NoticesOnABus : public ::testing::Test {
protected:
    SpeakingProcess m_daemon{QStringLiteral("dbus-daemon"),
                             {QStringLiteral("--session"), QStringLiteral("--nofork"),
                              QStringLiteral("--nopidfile"), QStringLiteral("--print-address=1")}};
    const QString m_bus = m_daemon.ReadLine();
    QTemporaryDir m_folder;
    SpeakingProcess m_notices{QStringLiteral(NOTICES_PROBE), {LogPath()}, m_bus};

    [[nodiscard]] QString LogPath() const { return m_folder.filePath(QStringLiteral("log")); }
    [[nodiscard]] qsizetype LogLines() const {
        QFile file(LogPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll().count('\n') : 0;
    }
    /// `line` as the probe takes it; waits until the call has returned.
    void Show(const QString& line) {
        m_notices.Write(line);
        EXPECT_EQ(m_notices.ReadLine(), QStringLiteral("done"));
    }
    static void WaitForShown(const NotificationServer& server, int count) {
        ASSERT_TRUE(server.IsThere);
        EXPECT_TRUE(QTest::qWaitFor([&] { return server.Shown.size() >= count; }, Patience));
        ASSERT_EQ(server.Shown.size(), count);
    }
};

}  // namespace

TEST_F(NoticesOnABus, WhereMarkupIsUnderstoodATextIsEscapedAndATitleIsNot) {
    const NotificationServer server(m_bus, {QStringLiteral("body"), QStringLiteral("body-markup")});
    Show(QStringLiteral("1|A <b>&|<i>Ann</i> & Co"));
    WaitForShown(server, 1);
    EXPECT_EQ(server.Shown[0].Title, QStringLiteral("A <b>&"));
    EXPECT_EQ(server.Shown[0].Text, QStringLiteral("&lt;i&gt;Ann&lt;/i&gt; &amp; Co"));
    EXPECT_EQ(server.Shown[0].Application, QStringLiteral("Larkspan Messenger"));
    EXPECT_EQ(server.Shown[0].Icon, QStringLiteral("larkspan"));
    EXPECT_EQ(server.Shown[0].Hints.value(QStringLiteral("desktop-entry")).toString(),
              QStringLiteral("larkspan"));
    EXPECT_EQ(server.Shown[0].Time, -1);
    EXPECT_EQ(LogLines(), 0);
}

TEST_F(NoticesOnABus, WhereItIsNotATextStandsAsItIs) {
    const NotificationServer server(m_bus, {QStringLiteral("body")});
    Show(QStringLiteral("1|Title|<i>Ann</i> & Co"));
    WaitForShown(server, 1);
    EXPECT_EQ(server.Shown[0].Text, QStringLiteral("<i>Ann</i> & Co"));
}

TEST_F(NoticesOnABus, OnlyAnErrorIsUrgent) {
    const NotificationServer server(m_bus, {});
    for (const char* line : {"1|Information|", "2|Warning|", "3|Error|"}) {
        Show(QString::fromLatin1(line));
    }
    WaitForShown(server, 3);
    const QList<uchar> urgencies = {1, 1, 2};
    for (int i = 0; i < 3; ++i) {
        const QVariant urgency = server.Shown[i].Hints.value(QStringLiteral("urgency"));
        EXPECT_EQ(urgency.userType(), QMetaType::UChar) << "the interface wants a byte";
        EXPECT_EQ(urgency.value<uchar>(), urgencies[i]) << i;
    }
}

TEST_F(NoticesOnABus, NoticesWaitForTheAnswerToOneQuestionAndComeInTheirOrder) {
    NotificationServer server(m_bus, {QStringLiteral("body-markup")}, true);
    Show(QStringLiteral("1|first|<"));
    Show(QStringLiteral("1|second|"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return server.Questions > 0; }, Patience));
    EXPECT_TRUE(server.Shown.isEmpty());
    server.Answer();
    WaitForShown(server, 2);
    EXPECT_EQ(server.Shown[0].Title, QStringLiteral("first"));
    EXPECT_EQ(server.Shown[0].Text, QStringLiteral("&lt;"));
    EXPECT_EQ(server.Shown[1].Title, QStringLiteral("second"));
    Show(QStringLiteral("1|third|"));
    WaitForShown(server, 3);
    EXPECT_EQ(server.Questions, 1);
}

TEST_F(NoticesOnABus, WithNobodyOnItThereIsOneLineInTheLogAndWhoComesLaterIsAsked) {
    Show(QStringLiteral("1|lost|"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return LogLines() == 1; }, Patience));
    const NotificationServer server(m_bus, {});
    Show(QStringLiteral("1|kept|"));
    WaitForShown(server, 1);
    EXPECT_EQ(server.Shown[0].Title, QStringLiteral("kept"));
    EXPECT_EQ(LogLines(), 1);
}

TEST_F(NoticesOnABus, WhoNeverAnswersHoldsNothingUp) {
    const NotificationServer server(m_bus, {}, true);
    QElapsedTimer time;
    time.start();
    for (int i = 0; i < 20; ++i) {
        Show(QStringLiteral("3|Title|Text"));
    }
    EXPECT_LT(time.elapsed(), 20000);  // one call alone is given up after 25 s
    EXPECT_TRUE(server.Shown.isEmpty());
    EXPECT_EQ(LogLines(), 0);
}
