#include "e2e/Desktop.h"
#include "support/RawDatabase.h"

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

QString TitleInFront() {
    return RealInput::Output({Q("getactivewindow"), Q("getwindowname")});
}

/// The program with its message history open, one message in it, and a panel whose menu closes the program.
class HistoryOnTheScreen : public ::testing::Test {
protected:
    const SessionBus m_bus;
    HostTray m_host{m_bus};
    RealOffice m_office;
    std::unique_ptr<Started> m_program;

    HistoryOnTheScreen() {
        RawDatabase outbox(m_office.Folder() + Q("/smsmessages.mdb"));
        outbox.Execute(
            Q("INSERT INTO Message (msgRecipient, msgAddress, msgText, msgSendTime, msgStatus) "
              "VALUES ('Ann', '+353860000000', 'Hello', '2030-01-01 00:00:00', 0)"));
        Note(outbox.Value(Q("SELECT max(msgID) FROM Message")).toUInt());
        m_program = std::make_unique<Started>(m_office, m_bus.Address);
        Driver::WaitFor(Q("the item at the host"), [this] { return m_host.Ask(Q("items")) == Q("1"); });
        m_program->WaitForWindow();
        RealInput::Do({Q("key"), Q("alt+h")});
        Driver::WaitFor(Q("the history"), [] { return TitleInFront().endsWith(Q("Message History")); });
        m_windows = m_program->Windows().size();
    }
    [[nodiscard]] static QString HistoryPath() {
        return qEnvironmentVariable("LARKSPAN_HOME") + Q("/history.sms");
    }
    /// The message of this number stands in the history of this client.
    void Note(quint32 id) {
        QByteArray record;
        for (int byte = 0; byte < 4; ++byte) {
            record.append(static_cast<char>((id >> (8 * byte)) & 0xFF));
        }
        record += QByteArray(3, '\0') + QByteArray("Ann").leftJustified(30, ' ') +
                  QByteArray("Hello").leftJustified(1024, ' ') + QByteArray::fromHex("000000002081e640");
        QFile file(HistoryPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(record);
    }
    void Press(const char* keys) {
        RealInput::Do({Q("key"), Q(keys)});
        Driver::WaitFor(Q("one window more"), [this] { return m_program->Windows().size() > m_windows; });
    }
    void CloseFromTheTray() {
        Driver::WaitFor(Q("the entry"),
                        [this] { return m_host.Ask(Q("choose Close Larkspan Messenger")) == Q("done"); });
        Driver::WaitFor(Q("the end of the program"), [this] { return m_program->HasEnded(); });
        EXPECT_EQ(m_program->Process().exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(m_program->Process().exitCode(), 0);
    }

private:
    qsizetype m_windows = 0;
};

}  // namespace

TEST_F(HistoryOnTheScreen, TheTraysCloseEndsTheProgram) {
    CloseFromTheTray();
}

TEST_F(HistoryOnTheScreen, TheTraysCloseEndsTheProgramWhileAQuestionStands) {
    Press("alt+l");
    Driver::WaitFor(Q("the question"), [] { return TitleInFront() == Q("Larkspan Messenger"); });
    CloseFromTheTray();
    EXPECT_EQ(QFile(HistoryPath()).size(), 1069) << "nobody has said Yes to clearing it";
}

TEST_F(HistoryOnTheScreen, TheTraysCloseEndsTheProgramWhileAMenuIsOpen) {
    Press("Menu");
    CloseFromTheTray();
}

TEST_F(HistoryOnTheScreen, TheTraysCloseEndsTheProgramWhileThePagesAreLookedAt) {
    Press("alt+p");
    CloseFromTheTray();
}

TEST_F(HistoryOnTheScreen, TheCloseButtonOfItsFrameClosesItAlone) {
    RealInput::Do({Q("key"), Q("alt+F4")});
    m_program->WaitForWindow();
    EXPECT_FALSE(m_program->HasEnded());
}
