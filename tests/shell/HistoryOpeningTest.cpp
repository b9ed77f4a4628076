#include "compose/MessageEdit.h"
#include "controls/ReportControl.h"
#include "shell/MainWindow.h"
#include "shell/StatusPoll.h"
#include "tracking/frmHistory.h"

#include <QCloseEvent>
#include <QLineEdit>

namespace {

/// The main window on an office with messages, and its button cmdHistory.
class HistoryOpeningTest : public ::testing::Test {
public:
    MainWindow Window;

    HistoryOpeningTest() { Window.Open(); }

    void AddOwn(const QString& text) {
        const qint32 id = Window.Machine.Office.AddMessageRow(
            {{QStringLiteral("msgRecipient"), QStringLiteral("Ann")},
             {QStringLiteral("msgText"), text},
             {QStringLiteral("msgSendTime"), Window.Machine.Office.Time.Time}});
        Window.Context.History.AddToHistory(id, QStringLiteral("Ann"), text, Window.Machine.Office.Time.Time);
    }
    void SetPublicPassword(const QString& password) {
        Window.Machine.Office.ExecuteOnPhonebook(
            QStringLiteral("UPDATE Config SET cfgPublicHistoryPassword = '%1'").arg(password));
    }
    void Press() { Window.Find<QAbstractButton>("cmdHistory")->click(); }
    [[nodiscard]] MessageEdit& Message() { return *Window.Find<MessageEdit>("txtMessage"); }
    void ExpectHistory(const std::function<void(frmHistory&)>& answer = {}) {
        Window.Machine.Door.ExpectDialog([answer](QDialog& dialog) {
            auto* history = qobject_cast<frmHistory*>(&dialog);
            ASSERT_NE(history, nullptr);
            if (answer) {
                answer(*history);
            }
            dialog.hide();
        });
    }
    void ExpectPassword(const QString& password) {
        Window.Machine.Door.ExpectDialog([password](QDialog& dialog) {
            auto* entry = dialog.findChild<QLineEdit*>(QStringLiteral("txtPassword"));
            ASSERT_NE(entry, nullptr);
            entry->setText(password);
            QTest::keyClick(entry, Qt::Key_Return);
        });
    }
    [[nodiscard]] QString LastTitle() const { return Window.Machine.Door.Dialogs.last(); }
    const QString OwnTitle = QStringLiteral("  Larkspan Messenger - Message History");
    const QString PublicTitle = QStringLiteral("  Larkspan Messenger - Public Message History");
};

TEST_F(HistoryOpeningTest, TheButtonOpensTheOwnHistoryOverTheWindow) {
    AddOwn(QStringLiteral("Hello"));
    qint32 busy = -1;
    int rows = 0;
    ExpectHistory([&](frmHistory& history) {
        busy = Window.Context.AppBusyState.Value();
        rows = history.findChild<ReportControl*>()->RowCount();
    });
    Press();
    EXPECT_EQ(LastTitle(), OwnTitle);
    EXPECT_EQ(Window.Machine.Door.Owner, Window.Form.get());
    EXPECT_EQ(busy, 6);
    EXPECT_EQ(rows, 1);
    EXPECT_TRUE(Window.Context.AppBusyState.IsIdle());
    EXPECT_EQ(Window.Machine.Office.Pump.Calls.last(), 4);
}

TEST_F(HistoryOpeningTest, WithControlHeldAndNoPasswordSetThePublicHistoryOpens) {
    Window.Machine.Office.Keys.Down = {KeyState::Key::Control};
    ExpectHistory();
    Press();
    EXPECT_EQ(LastTitle(), PublicTitle);
}

TEST_F(HistoryOpeningTest, TheRightPasswordOpensThePublicHistory) {
    SetPublicPassword(QStringLiteral("lark"));
    Window.Machine.Office.Keys.Down = {KeyState::Key::Control};
    ExpectPassword(QStringLiteral("lark"));
    ExpectHistory();
    Press();
    EXPECT_EQ(LastTitle(), PublicTitle);
}

TEST_F(HistoryOpeningTest, AWrongPasswordOpensTheOwnHistoryWithoutAWord) {
    SetPublicPassword(QStringLiteral("lark"));
    Window.Machine.Office.Keys.Down = {KeyState::Key::Control};
    ExpectPassword(QStringLiteral("wren"));
    ExpectHistory();
    Press();
    EXPECT_EQ(LastTitle(), OwnTitle);
    EXPECT_TRUE(Window.Machine.Office.Boxes.Shown.isEmpty());
}

TEST_F(HistoryOpeningTest, ATextTakenFromARowStandsInTheMessageWithTheCaretBehindIt) {
    AddOwn(QStringLiteral("Old text"));
    Message().SetText(QStringLiteral("Something else"));
    ExpectHistory([](frmHistory& history) {
        auto* grid = history.findChild<ReportControl*>();
        const QPoint row = grid->visualRect(grid->model()->index(0, 1)).center();
        QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, row);
    });
    Press();
    EXPECT_EQ(Message().Text(), QStringLiteral("Old text"));
    EXPECT_EQ(Message().textCursor().position(), 8);
    EXPECT_TRUE(Message().hasFocus());
    Message().undo();
    EXPECT_EQ(Message().Text(), QStringLiteral("Something else"));
}

TEST_F(HistoryOpeningTest, ATextTakenFromTheMenuDoesTheSameAndUpdatesTheDisplay) {
    AddOwn(QStringLiteral("Old text"));
    Window.Machine.Door.ExpectMenu(QStringLiteral("New Message with 'Old text...'"));
    ExpectHistory([](frmHistory& history) {
        auto* grid = history.findChild<ReportControl*>();
        const QPoint row = grid->visualRect(grid->model()->index(0, 1)).center();
        QTest::mouseClick(grid->viewport(), Qt::RightButton, {}, row);
    });
    Press();
    EXPECT_EQ(Message().Text(), QStringLiteral("Old text"));
    EXPECT_EQ(Message().textCursor().position(), 8);
    EXPECT_TRUE(Message().hasFocus());
}

TEST_F(HistoryOpeningTest, WithNothingTakenTheFocusStaysWhereItWas) {
    Message().SetText(QStringLiteral("Draft"));
    auto* contacts = Window.Find<QWidget>("lvContacts");
    contacts->setFocus();
    ExpectHistory();
    Press();
    EXPECT_TRUE(contacts->hasFocus());
    EXPECT_EQ(Message().Text(), QStringLiteral("Draft"));
}

TEST_F(HistoryOpeningTest, APressInTheMiddleOfItsFirstPassOpensNoSecondOne) {
    AddOwn(QStringLiteral("Hello"));
    int passes = 0;
    Window.Machine.Office.Pump.OnProcess = [&](int) {
        if (++passes == 1) {
            Press();
        }
    };
    ExpectHistory();
    Press();
    EXPECT_EQ(Window.Machine.Door.Dialogs.size(), 1);
}

TEST_F(HistoryOpeningTest, WhileASendRunsItDoesNotOpen) {
    const BusyScope sending(Window.Context.AppBusyState, Busy::Sending);
    Press();
    EXPECT_TRUE(Window.Machine.Door.Dialogs.isEmpty());
    EXPECT_EQ(Window.Context.AppBusyState.Value(), Busy::Sending);
}

TEST_F(HistoryOpeningTest, ThePollWaitsWhileTheHistoryIsOpen) {
    AddOwn(QStringLiteral("Hello"));
    Window.Context.MessageTracker.Track(1, QStringLiteral("Ann"), QStringLiteral("+353"),
                                        QStringLiteral("Hello"));
    ExpectHistory([&](frmHistory&) { Window.Form->findChild<StatusPoll*>()->Check(); });
    Press();
    EXPECT_FALSE(Window.Context.MessageTracker.NextCheck().isValid());
    Window.Form->findChild<StatusPoll*>()->Check();
    EXPECT_TRUE(Window.Context.MessageTracker.NextCheck().isValid());
}

TEST_F(HistoryOpeningTest, AWindowThatWasClosedMeanwhileOpensNoHistory) {
    AddOwn(QStringLiteral("Hello"));
    bool isClosed = false;
    Window.Machine.Office.Pump.OnProcess = [&](int) {
        if (!isClosed) {
            isClosed = true;
            QCloseEvent close;  // past the gate, as the exit path of the program goes
            static_cast<QObject*>(Window.Form.get())->event(&close);
        }
    };
    Press();
    EXPECT_TRUE(isClosed);
    EXPECT_TRUE(Window.Form->IsUnloaded());
    EXPECT_TRUE(Window.Machine.Door.Dialogs.isEmpty());
}

TEST_F(HistoryOpeningTest, ACanceledPasswordOpensTheOwnHistory) {
    SetPublicPassword(QStringLiteral("lark"));
    Window.Machine.Office.Keys.Down = {KeyState::Key::Control};
    Window.Machine.Door.ExpectDialog([](QDialog& dialog) {
        QTest::keyClick(dialog.findChild<QLineEdit*>(QStringLiteral("txtPassword")), Qt::Key_Escape);
    });
    ExpectHistory();
    Press();
    EXPECT_EQ(LastTitle(), OwnTitle);
}

}  // namespace
