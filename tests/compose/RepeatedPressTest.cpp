#include "ComposeBench.h"

#include "support/RawDatabase.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QSignalSpy>

#include <algorithm>

namespace {

/// Presses on the send buttons again and again, with the mouse, a held key or a shortcut, while another
/// process holds the outbox's lock. Time is the test's own: what the user does falls into the pauses of the
/// send that waits, and stays queued until the send lets events through.
class RepeatedPressTest : public ComposeBench {
protected:
    static constexpr int Recipients = 3;

    void SetUp() override {
        ComposeBench::SetUp();
        Office.OutboxValues.OutboxDB = std::make_unique<DB>(
            DBServices{m_engine, Office.Time, Office.Pump, Office.Drives, Office.Folders});
        Office.OutboxDB().Filename = Office.OutboxPath();
        Office.Pump.OnProcess = [this](int passes) { m_realPump.Process(passes); };
        Office.Time.OnSleep = [this](int) { LetTimePass(); };
        for (QPushButton* button : {&cmdSendNow(), &cmdSendLater()}) {
            QObject::connect(button, &QPushButton::clicked, &Window, [this] { ++m_accepted; });
        }
        m_holder.start(QStringLiteral(LOCK_HOLDER), {Office.OutboxPath()});
        ASSERT_TRUE(m_holder.waitForStarted());
        ShowWindow();
    }
    void TearDown() override {
        m_holder.closeWriteChannel();
        EXPECT_TRUE(m_holder.waitForFinished());
    }

    static int Rounds() { return qEnvironmentVariableIsSet("LARKSPAN_TEST_LONG") ? 1000 : 50; }

    void Tell(const char* word) {
        m_holder.write(word);
        m_holder.write("\n");
        QByteArray answer;
        while (!answer.endsWith('\n') && m_holder.waitForReadyRead(10000)) {
            answer += m_holder.readAll();
        }
        ASSERT_EQ(answer.trimmed(), QByteArray(word));
    }

    void Compose(const QString& text) {
        for (qint16 id = 1; id <= Recipients; ++id) {
            AddRecipient(id, QStringLiteral("Surname%1").arg(id));
        }
        txtMessage().SetText(text);
        cmdSendNow().setFocus();
        ASSERT_TRUE(cmdSendNow().isEnabled());
    }

    /// The first half of the ways is with cmdSendNow, the second with cmdSendLater.
    static constexpr int WaysWithAButton = 5;
    static constexpr int Ways = 2 * WaysWithAButton;
    QPushButton& ButtonOf(int way) { return way < WaysWithAButton ? cmdSendNow() : cmdSendLater(); }

    /// What a user does with the button once.
    void Press(int way) {
        QPushButton& button = ButtonOf(way);
        switch (way % WaysWithAButton) {
            case 0:
                QTest::mouseClick(&button, Qt::LeftButton);
                break;
            case 1:
                QTest::mouseClick(&button, Qt::LeftButton);
                QTest::mouseDClick(&button, Qt::LeftButton);
                break;
            case 2:
                Key(button, QEvent::KeyPress, Qt::Key_Return, m_isEnterDown);
                m_isEnterDown = true;
                break;
            case 3:
                QTest::keyClick(&button, Qt::Key_Space);
                break;
            default:
                QTest::keyClick(&Window, &button == &cmdSendNow() ? Qt::Key_S : Qt::Key_L, Qt::AltModifier);
                break;
        }
    }
    static void Key(QPushButton& button, QEvent::Type type, Qt::Key key, bool isRepeat) {
        QKeyEvent event(type, key, Qt::NoModifier, QString(), isRepeat);
        QApplication::sendEvent(&button, &event);
    }

    /// Presses once with the lock held by the other process for `holdMs`, and `repeats` times more, 1 to 300
    /// ms apart.
    void RunRound(int way, int repeats, int holdMs) {
        m_isEnterDown = false;
        QTest::lastMouseTimestamp += QApplication::doubleClickInterval();  // the last round is over
        m_pressTimes.clear();
        qint64 time = Office.Time.Ticks();
        m_releaseTime = time + holdMs;
        for (int repeat = 0; repeat < repeats; ++repeat) {
            time += QRandomGenerator::global()->bounded(1, 301);
            m_pressTimes.append(std::min(time, m_releaseTime - 1));
        }
        m_way = way;
        Tell("hold");
        m_isHeld = true;
        if (way >= WaysWithAButton) {
            Door.ExpectDialog([](QDialog& dialog) {
                QTest::mouseClick(&FindIn<QPushButton>(dialog, "cmdOK"), Qt::LeftButton);
            });
        }
        Window.activateWindow();  // the dialog of the round before may have taken over
        ASSERT_TRUE(QTest::qWaitForWindowActive(&Window));
        ButtonOf(way).setFocus();
        Press(way);
        if (way % WaysWithAButton == WaysWithAButton - 1) {
            // A shortcut shows the button pressed for a moment before it clicks.
            ASSERT_TRUE(QTest::qWaitFor([this] { return !m_isHeld; }, 30000));
        }
        if (m_isEnterDown) {
            Key(ButtonOf(way), QEvent::KeyRelease, Qt::Key_Return, false);
        }
        ASSERT_FALSE(m_isHeld) << "the send did not wait for the lock";
        ASSERT_TRUE(m_pressTimes.isEmpty()) << "all presses fell into the send";
        Settle();
    }

    void Settle() { m_realPump.Process(3); }
    int Accepted() const { return m_accepted; }
    /// Rows in the file for each text and recipient, counted by a reader of its own.
    QList<int> RowsOf(const QString& text) {
        RawDatabase reader(Office.OutboxPath());
        QList<int> counts;
        for (int id = 1; id <= Recipients; ++id) {
            counts.append(
                reader
                    .Value(QStringLiteral("SELECT Count(*) FROM Message WHERE msgBodyTextSize = %1 AND "
                                          "substr(msgText, 1, %1) = '%2' AND msgRecipient = 'Ann Surname%3'")
                               .arg(text.size())
                               .arg(text)
                               .arg(id))
                    .toInt());
        }
        return counts;
    }
    int AllRows() {
        return RawDatabase(Office.OutboxPath()).Value(QStringLiteral("SELECT Count(*) FROM Message")).toInt();
    }

private:
    /// The user's presses go into the queue of events, where they wait until the send lets events through.
    void LetTimePass() {
        const qint64 now = Office.Time.Ticks();
        while (!m_pressTimes.isEmpty() && m_pressTimes.first() <= now) {
            m_pressTimes.removeFirst();
            QMetaObject::invokeMethod(
                &Window, [this] { Press(m_way); }, Qt::QueuedConnection);
        }
        if (m_isHeld && now >= m_releaseTime) {
            m_isHeld = false;
            Tell("release");
        }
    }

    engine::FileConnectionFactory m_engine{Office.Time};
    ApplicationEventPump m_realPump;
    QProcess m_holder;
    QList<qint64> m_pressTimes;
    qint64 m_releaseTime = 0;
    int m_way = 0;
    int m_accepted = 0;
    bool m_isHeld = false;
    bool m_isEnterDown = false;
};

TEST_F(RepeatedPressTest, EachAcceptedPressGivesOneRowForEachRecipient) {
    auto* const random = QRandomGenerator::global();
    for (int round = 0; round < Rounds(); ++round) {
        const QString text = QStringLiteral("Round %1").arg(round, 4, 10, QLatin1Char('0'));
        const bool isCtrlHeld = random->bounded(2) == 1;
        Office.Keys.Down = isCtrlHeld ? QList<KeyState::Key>{KeyState::Key::Control} : QList<KeyState::Key>{};
        // From shorter than one pause of the engine to longer than its patience, so that DB tries again.
        const int holdMs = round % 5 == 4 ? random->bounded(5200, 9000) : random->bounded(20, 1500);
        ASSERT_NO_FATAL_FAILURE(Compose(text));
        const int before = Accepted();
        ASSERT_NO_FATAL_FAILURE(RunRound(round % Ways, random->bounded(1, 12), holdMs));
        const bool isKept = isCtrlHeld && round % Ways < WaysWithAButton;
        const int accepted = Accepted() - before;
        EXPECT_EQ(accepted, 1) << "presses during a send are not taken, round " << round;
        EXPECT_EQ(RowsOf(text), QList<int>(Recipients, accepted)) << "round " << round;
        EXPECT_EQ(lvRecipients().Rows().Count(), isKept ? Recipients : 0);
        EXPECT_EQ(Busy.Value(), Busy::Idle);
        if (HasFailure()) {
            break;
        }
    }
    EXPECT_EQ(AllRows(), Accepted() * Recipients);
    EXPECT_EQ(History.ReadHistory().size(), std::min(250, AllRows()));
}

TEST_F(RepeatedPressTest, PressesOneAfterTheOtherWithCtrlHeldAreEachAccepted) {
    Office.Keys.Down = {KeyState::Key::Control};
    Compose(QStringLiteral("Again"));
    for (int press = 0; press < 4; ++press) {
        QTest::mouseClick(&cmdSendNow(), Qt::LeftButton);
        Settle();
    }
    EXPECT_EQ(Accepted(), 4);
    EXPECT_EQ(RowsOf(QStringLiteral("Again")), QList<int>(Recipients, 4));
}

TEST_F(RepeatedPressTest, AThousandRepeatsOfAHeldEnterKeySendOnce) {
    Office.Keys.Down = {KeyState::Key::Control};
    Compose(QStringLiteral("Held"));
    Key(cmdSendNow(), QEvent::KeyPress, Qt::Key_Return, false);
    for (int repeat = 0; repeat < 1000; ++repeat) {
        Key(cmdSendNow(), QEvent::KeyRelease, Qt::Key_Return, true);
        Key(cmdSendNow(), QEvent::KeyPress, Qt::Key_Return, true);
    }
    EXPECT_EQ(RowsOf(QStringLiteral("Held")), QList<int>(Recipients, 1));
}

TEST_F(RepeatedPressTest, NothingThatIsBeingSentChangesWhileTheSendWaits) {
    Compose(QStringLiteral("Steady"));
    Office.Keys.Down = {KeyState::Key::Control};
    bool isTried = false;
    Office.Pump.OnProcess = [&](int) {
        if (Busy.Value() == Busy::Idle || isTried) {
            return;
        }
        isTried = true;
        QTest::mouseClick(&Find<QPushButton>("cmdClearMessage"), Qt::LeftButton);
        QTest::mouseClick(&Find<QPushButton>("cmdClearRecipients"), Qt::LeftButton);
        lvRecipients().SelectAllRows();
        QTest::keyClick(&lvRecipients(), Qt::Key_Delete);
        QTest::keyClicks(&txtMessage(), QStringLiteral("more"));
        QTest::keyClicks(&txtEndWidth(), QStringLiteral("sig"));
        Find<QPushButton>("cmdClearMessage").click();
        Find<QPushButton>("cmdClearRecipients").click();
        cmdSendNow().click();
        cmdSendLater().click();
    };
    QTest::mouseClick(&cmdSendNow(), Qt::LeftButton);
    EXPECT_TRUE(isTried);
    EXPECT_EQ(txtMessage().Text(), QStringLiteral("Steady"));
    EXPECT_EQ(txtEndWidth().text(), QString());
    EXPECT_EQ(lvRecipients().Rows().Count(), Recipients);
    EXPECT_EQ(RowsOf(QStringLiteral("Steady")), QList<int>(Recipients, 1));
    EXPECT_EQ(AllRows(), Recipients);
}

}  // namespace
