#include "compose/MessageEdit.h"
#include "controls/ListView.h"
#include "controls/ReportControl.h"
#include "shell/MainWindow.h"
#include "shell/StatusPoll.h"
#include "support/PaintCount.h"
#include "support/RawDatabase.h"
#include "tracking/frmHistory.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QWindow>

#include <utility>

namespace {

/// The main window on an office with messages, and its button cmdHistory.
class HistoryOpeningTest : public ::testing::Test {
public:
    MainWindow Window;

    HistoryOpeningTest() { Window.Open(); }
    /// As the tray's entry does it.
    void EndTheProgram() { Window.Find<QAbstractButton>("cmdExit")->click(); }
    void ExpectItHasEnded() {
        EXPECT_TRUE(Window.Form->IsUnloaded());
        EXPECT_FALSE(Window.Form->isVisible());
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_TRUE(Window.Context.AppBusyState.IsIdle());
    }

    void AddOwn(const QString& text) {
        const qint32 id = Window.Machine.Office.AddMessageRow(
            {{QStringLiteral("msgRecipient"), QStringLiteral("Ann")},
             {QStringLiteral("msgText"), text},
             {QStringLiteral("msgSendTime"), Window.Machine.Office.Time.Time}});
        Window.Context.History.AddToHistory(id, QStringLiteral("Ann"), text, Window.Machine.Office.Time.Time);
    }
    void AddRecipient() {
        Window.Machine.Office.AddContact(QStringLiteral("Byrne"), QStringLiteral("Declan"),
                                         QStringLiteral("+353865550101"));
        Window.Form->ShowGroup();
        Window.Form->AddKeysToRecipients({Window.Find<ListView>("lvContacts")->Rows().At(0).Key});
        Window.Form->UpdateStateDisplay();
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
}

TEST_F(HistoryOpeningTest, WhenItHasClosedFourPassesRunAndOnlyThenIsTheProgramIdle) {
    QList<std::pair<int, qint32>> passes;  // how many, and the busy state
    ExpectHistory([&](frmHistory&) {
        passes.clear();
        Window.Machine.Office.Pump.OnProcess = [&](int count) {
            passes.append({count, Window.Context.AppBusyState.Value()});
        };
    });
    Press();
    EXPECT_EQ(passes, (QList<std::pair<int, qint32>>{{4, 6}}));
    EXPECT_TRUE(Window.Context.AppBusyState.IsIdle());
}

TEST_F(HistoryOpeningTest, TheMainWindowIsRepaintedBehindThePasswordAndBeforeTheHistory) {
    SetPublicPassword(QStringLiteral("lark"));
    Window.Machine.Office.Keys.Down = {KeyState::Key::Control};
    const PaintCount paints(*Window.Form);
    int atPassword = -1;
    Window.Machine.Door.ExpectDialog([&](QDialog& dialog) {
        dialog.findChild<QLineEdit*>(QStringLiteral("txtPassword"))->setText(QStringLiteral("lark"));
        QTest::keyClick(dialog.findChild<QLineEdit*>(QStringLiteral("txtPassword")), Qt::Key_Return);
        Window.Machine.Office.Pump.OnProcess = {};  // nothing else paints
        atPassword = paints.Count;
    });
    int atHistory = -1;
    ExpectHistory([&](frmHistory&) { atHistory = paints.Count; });
    Press();
    EXPECT_EQ(atHistory, atPassword + 1);
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
    AddRecipient();
    const int before = Window.Find<QLabel>("lblCharsRemaining")->text().toInt();
    ASSERT_FALSE(Window.Find<QAbstractButton>("cmdSendNow")->isEnabled());
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
    // What was shown of an empty message is shown of the one taken.
    EXPECT_EQ(Window.Find<QLabel>("lblCharsRemaining")->text().toInt(), before - 8);
    EXPECT_TRUE(Window.Find<QAbstractButton>("cmdSendNow")->isEnabled());
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

TEST_F(HistoryOpeningTest, TheProgramCanBeEndedWhileThePasswordIsAskedFor) {
    SetPublicPassword(QStringLiteral("lark"));
    Window.Machine.Office.Keys.Down = {KeyState::Key::Control};
    Window.Machine.Door.ExpectDialog([this](QDialog& prompt) {
        EndTheProgram();
        EXPECT_FALSE(prompt.isVisible());
    });
    Press();
    ExpectItHasEnded();
    EXPECT_EQ(Window.Machine.Door.Dialogs.size(), 1) << "no history opens over a window that is gone";
}

TEST_F(HistoryOpeningTest, TheProgramCanBeEndedWhileTheCorruptFileIsTold) {
    QFile file(Window.Machine.Office.Folders.ApplicationFolder() + QStringLiteral("history.sms"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(1070, 'x'));
    file.close();
    Window.Machine.Office.Boxes.OnShow = [this] { EndTheProgram(); };
    Window.Machine.Office.Boxes.Expect();
    Press();
    ExpectItHasEnded();
    EXPECT_TRUE(Window.Machine.Door.Dialogs.isEmpty());
}

TEST_F(HistoryOpeningTest, TheProgramCanBeEndedWhileTheHistoryIsOpen) {
    AddOwn(QStringLiteral("Hello"));
    ExpectHistory([this](frmHistory& history) {
        EndTheProgram();
        EXPECT_FALSE(history.isVisible());
    });
    Press();
    ExpectItHasEnded();
}

TEST_F(HistoryOpeningTest, TheProgramCanBeEndedWhileTheHistoryAsksWhetherToCancel) {
    AddOwn(QStringLiteral("Hello"));
    Window.Machine.Office.Boxes.OnShow = [this] { EndTheProgram(); };
    Window.Machine.Office.Boxes.Expect(BoxAnswer::No);
    ExpectHistory([](frmHistory& history) {
        history.findChild<QAbstractButton*>(QStringLiteral("cmdCancel"))->click();
        EXPECT_FALSE(history.isVisible());
    });
    Press();
    ExpectItHasEnded();
}

TEST_F(HistoryOpeningTest, TheProgramCanBeEndedWhileTheHistoryAsksWhetherToClear) {
    AddOwn(QStringLiteral("Hello"));
    Window.Machine.Office.Boxes.OnShow = [this] { EndTheProgram(); };
    Window.Machine.Office.Boxes.Expect(BoxAnswer::No);
    ExpectHistory([](frmHistory& history) {
        history.findChild<QAbstractButton*>(QStringLiteral("cmdClear"))->click();
        EXPECT_FALSE(history.isVisible());
    });
    Press();
    ExpectItHasEnded();
}

TEST_F(HistoryOpeningTest, TheProgramCanBeEndedWhileTheHistorysMenuIsOpen) {
    AddOwn(QStringLiteral("Hello"));
    Window.Machine.Door.OnMenu = [this] { EndTheProgram(); };
    Window.Machine.Door.ExpectMenu(QString());
    ExpectHistory([](frmHistory& history) {
        auto* grid = history.findChild<ReportControl*>();
        QTest::mouseClick(grid->viewport(), Qt::RightButton, {},
                          grid->visualRect(grid->model()->index(0, 1)).center());
        EXPECT_FALSE(history.isVisible());
    });
    Press();
    ExpectItHasEnded();
}

TEST_F(HistoryOpeningTest, TheProgramCanBeEndedWhileTheHistorysPagesAreLookedAt) {
    AddOwn(QStringLiteral("Hello"));
    ExpectHistory([this](frmHistory& history) {
        Window.Machine.Door.ExpectDialog([this](QDialog& preview) {
            EndTheProgram();
            EXPECT_FALSE(preview.isVisible());
        });
        history.findChild<QAbstractButton*>(QStringLiteral("cmdPrint"))->click();
        EXPECT_FALSE(history.isVisible());
    });
    Press();
    ExpectItHasEnded();
}

TEST_F(HistoryOpeningTest, InTheMiddleOfACancelNothingIsSentThoughTheHistoryWasClosed) {
    AddOwn(QStringLiteral("Hello"));
    AddRecipient();
    Message().SetText(QStringLiteral("Another"));
    Window.Form->UpdateStateDisplay();
    auto* send = Window.Find<QAbstractButton>("cmdSendNow");
    ASSERT_TRUE(send->isEnabled());
    // At the native window: the toolkit decides there what a dialog keeps away.
    const auto pressSend = [&] {
        QTest::mouseClick(Window.Form->windowHandle(), Qt::LeftButton, {},
                          send->mapTo(Window.Form.get(), send->rect().center()));
    };
    const auto sent = [&] { return Window.Machine.Office.MessageRows().size(); };
    RawDatabase gateway(Window.Machine.Office.OutboxPath());
    Window.Machine.Office.Boxes.Expect(BoxAnswer::Yes);
    ExpectHistory([&](frmHistory& history) {
        gateway.Execute(QStringLiteral("BEGIN EXCLUSIVE"));
        bool hasWaited = false;
        Window.Machine.Office.Pump.OnProcess = [&](int) {
            if (!std::exchange(hasWaited, true)) {
                QTest::keyClick(&history, Qt::Key_Escape);
                pressSend();
                gateway.Execute(QStringLiteral("COMMIT"));
            }
        };
        history.findChild<QAbstractButton*>(QStringLiteral("cmdCancel"))->click();
        EXPECT_TRUE(hasWaited);
        EXPECT_FALSE(history.isVisible());
        EXPECT_EQ(Window.Context.AppBusyState.Value(), Busy::HistoryOpen);
        Window.Machine.Office.Pump.OnProcess = {};
    });
    Press();
    EXPECT_EQ(Window.Machine.Door.Dialogs.size(), 1) << "it was canceled, and nothing else was said";
    ASSERT_EQ(sent(), 1);
    EXPECT_EQ(Window.Machine.Office.MessageRows().first().value(QStringLiteral("msgStatus")).toInt(), 2);
    pressSend();
    EXPECT_EQ(sent(), 2) << "the same press sends when the history is closed";
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
