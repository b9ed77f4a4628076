#include "controls/ListView.h"
#include "e2e/Desktop.h"

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <csignal>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

ListView& List(const char* name) {
    return Driver::Find<ListView>(Q(name));
}

QString FirstGroup(AppContext& context) {
    return mdlPhonebook::GetGroups(context)->Value(u"grpName").toString();
}

int Rows(engine::Recordset* rows) {
    int count = 0;
    for (; rows != nullptr && !rows->EndOfFile(); rows->MoveNext()) {
        ++count;
    }
    return count;
}

/// A layout of the screen's keyboard, for as long as it lives.
class KeyboardLayout {
public:
    explicit KeyboardLayout(const QString& name) { Set(name); }
    ~KeyboardLayout() { Set(Q("us")); }
    KeyboardLayout(const KeyboardLayout&) = delete;
    KeyboardLayout& operator=(const KeyboardLayout&) = delete;

private:
    static void Set(const QString& name) { EXPECT_EQ(QProcess::execute(Q("setxkbmap"), {name}), 0); }
};

}  // namespace

TEST(OnTheScreen, ContactsAreDraggedOntoTheRecipientsWithTheMouse) {
    RealOffice office;
    RealProgram program(office);
    const QString first = List("lvContacts").Rows().At(2).Text;
    const QString second = List("lvContacts").Rows().At(4).Text;
    Driver::ClickRow(Q("lvContacts"), first);
    Driver::ClickRow(Q("lvContacts"), second, Qt::ControlModifier);
    ListView& recipients = List("lvRecipients");
    RealInput::Drag(Driver::RowPosition(Q("lvContacts"), second),
                    recipients.viewport()->mapToGlobal(recipients.viewport()->rect().center()));
    Driver::WaitFor(Q("two recipients"), [&] { return recipients.Rows().Count() == 2; });
    EXPECT_EQ(recipients.Rows().At(0).Text, first);
    EXPECT_EQ(recipients.Rows().At(1).Text, second);

    const QSignalSpy dropped(&recipients, &ListView::TextDropped);
    RealInput::Drag(Driver::RowPosition(Q("lvContacts"), second),
                    recipients.viewport()->mapToGlobal(recipients.viewport()->rect().center()));
    Driver::WaitFor(Q("the second drop"), [&] { return dropped.count() == 1; });
    EXPECT_EQ(recipients.Rows().Count(), 2) << "the same contact twice";
}

TEST(OnTheScreen, AContactDraggedOntoAGroupsTabJoinsTheGroup) {
    RealOffice office;
    RealProgram program(office);
    const QString group = FirstGroup(program.Context);
    const qint32 id = mdlPhonebook::GetGroups(program.Context)->Value(u"grpID").toInt();
    const auto membersNow = [&] { return Rows(mdlPhonebook::GetGroupMembers(program.Context, id).get()); };
    const int before = membersNow();
    // Somebody who is not in the group yet.
    QString outsider;
    for (const Contact& contact : program.Context.AddressContacts.list()) {
        bool isMember = false;
        const auto members = mdlPhonebook::GetGroupMembers(program.Context, id);
        for (; !members->EndOfFile(); members->MoveNext()) {
            isMember = isMember || members->Value(u"cntID").toInt() == contact.ID();
        }
        if (!isMember && outsider.isEmpty()) {
            outsider = contact.DisplayName(program.Context.SortBy);
        }
    }
    Driver::ClickRow(Q("lvContacts"), outsider);
    RealInput::Drag(Driver::RowPosition(Q("lvContacts"), outsider),
                    Driver::TabPosition(Q("tabGroup"), group));
    Driver::WaitFor(Q("one member more"), [&] { return membersNow() == before + 1; });
}

namespace {

/// One recipient and a text, by keyboard alone; the send button is on.
QAbstractButton& ComposeForOne(RealProgram& program) {
    Driver::ClickTab(Q("tabGroup"), Q("*"));
    program.Window().ContactListFocus(true);
    while (program.Context.AddressContacts.ContactByKey(List("lvContacts").CurrentKey())->IsConfirmSend) {
        RealInput::Do({Q("key"), Q("Down")});
        Driver::Settle();
    }
    RealInput::Do({Q("key"), Q("Return")});
    Driver::WaitFor(Q("a recipient"), [] { return List("lvRecipients").Rows().Count() == 1; });
    RealInput::Do({Q("key"), Q("alt+m")});
    RealInput::Do({Q("type"), Q("Lunch at noon")});
    auto& send = Driver::Find<QAbstractButton>(Q("cmdSendNow"));
    Driver::WaitFor(Q("the send button"), [&] { return send.isEnabled(); });
    return send;
}

}  // namespace

TEST(OnTheScreen, AMessageIsSentWithTheKeyboardAlone) {
    RealOffice office;
    RealProgram program(office);
    const QAbstractButton& send = ComposeForOne(program);
    for (int tabs = 0; tabs < 20 && !send.hasFocus(); ++tabs) {
        RealInput::Do({Q("key"), Q("Tab")});
        Driver::Settle();
    }
    ASSERT_TRUE(send.hasFocus()) << "Tab never reaches the send button";
    RealInput::Do({Q("key"), Q("space")});
    Driver::WaitFor(Q("an empty composition"), [] { return List("lvRecipients").Rows().Count() == 0; });
    EXPECT_EQ(program.Context.MessageTracker.SlotAt(0).text, Q("Lunch at noon"));
}

namespace {

/// From now on the numbers of messages are too large for the client: rows are written, and the composition
/// stays on screen as after a failure, ready to be sent again.
void LeaveSixteenBits(RealProgram& program) {
    DB& outbox = *program.Context.OutboxDB;
    ASSERT_TRUE(outbox.OpenDatabase(engine::Mode::ReadWriteShared));
    ASSERT_TRUE(outbox.Execute(Q("INSERT INTO Message (msgID, msgStatus) VALUES (32767, 5)")));
    outbox.CloseDatabase();
}

int MessagesOf(RealProgram& program) {
    DB& outbox = *program.Context.OutboxDB;
    EXPECT_TRUE(outbox.OpenDatabase(engine::Mode::ReadShared));
    const int count = Rows(outbox
                               .OpenDynaset(Q("SELECT msgID FROM Message WHERE msgText LIKE 'Lunch%'"),
                                            engine::CursorType::ForwardOnly, engine::LockType::ReadOnly)
                               .get());
    outbox.CloseDatabase();
    return count;
}

/// Holds keys down long enough for some dozens of repeats.
QStringList Held(const char* keys) {
    return {Q("keydown"), Q(keys), Q("sleep"), Q("1.6"), Q("keyup"), Q(keys)};
}
void Hold(const char* keys) {
    RealInput::Do(Held(keys));
}

}  // namespace

TEST(OnTheScreen, AKeyThatIsHeldDownOnTheSendButtonSendsOnce) {
    RealOffice office;
    RealProgram program(office);
    ComposeForOne(program);
    LeaveSixteenBits(program);
    int messages = 0;
    // Again and again: how the toolkit sees repeats changes while a process runs.
    for (const char* keys : {"Return", "space", "alt+s", "Return", "KP_Enter", "alt+s", "ctrl+Return"}) {
        Driver::Find<QAbstractButton>(Q("cmdSendNow")).setFocus();
        Hold(keys);
        EXPECT_EQ(MessagesOf(program), ++messages) << keys;
    }
    EXPECT_EQ(List("lvRecipients").Rows().Count(), 1);
}

TEST(OnTheScreen, AKeyThatIsHeldDownDoesNotActOnWhatComesAfterTheSend) {
    RealOffice office;
    RealProgram program(office);
    ComposeForOne(program).setFocus();
    Hold("Return");
    EXPECT_EQ(MessagesOf(program), 1);
    EXPECT_TRUE(List("lvContacts").hasFocus());
    EXPECT_EQ(List("lvRecipients").Rows().Count(), 0) << "the next message has recipients already";
}

TEST(OnTheScreen, AKeyThatIsHeldDownDoesNotAnswerTheScheduleDialog) {
    RealOffice office;
    RealProgram program(office);
    ComposeForOne(program);
    Driver::Find<QAbstractButton>(Q("cmdSendLater")).setFocus();
    QProcess finger;
    bool isOver = false;
    Driver::WhenDialog(Q("frmGetTime"), [&] {
        Driver::WaitFor(Q("the key released"), [&] { return finger.state() == QProcess::NotRunning; });
        QWidget* const dialog = QApplication::activeModalWidget();
        EXPECT_NE(dialog, nullptr) << "the held key accepted it";
        if (dialog != nullptr) {
            dialog->close();
        }
        isOver = true;
    });
    finger.start(Q("xdotool"), Held("Return"));
    Driver::WaitFor(Q("the dialog, and its end"), [&] { return isOver; });
    EXPECT_EQ(MessagesOf(program), 0);
}

TEST(OnTheScreen, ASecondStartBringsTheFirstWindowForward) {
    RealOffice office;
    Started first(office);
    first.WaitForWindow();
    const QString window = first.Window();
    RealInput::Do({Q("windowminimize"), Q("--sync"), window});
    Driver::WaitFor(Q("the window put away"), [&] { return first.Window().isEmpty(); });

    Started second(office);
    ASSERT_TRUE(second.Process().waitForFinished(15000)) << "the second start goes on running";
    EXPECT_EQ(second.Process().exitCode(), 0);
    Driver::WaitFor(Q("the first window in front again"),
                    [&] { return RealInput::Output({Q("getactivewindow")}) == window; });
    EXPECT_EQ(first.Process().state(), QProcess::Running);
}

TEST(OnTheScreen, AfterACrashTheNextStartOpensAWindowAndTheOneAfterRaisesIt) {
    RealOffice office;
    {
        Started crashed(office);
        crashed.WaitForWindow();
        ::kill(static_cast<pid_t>(crashed.Process().processId()), SIGKILL);
        ASSERT_TRUE(crashed.Process().waitForFinished(5000));
    }
    Started next(office);
    next.WaitForWindow();
    const QString window = next.Window();
    RealInput::Do({Q("windowminimize"), Q("--sync"), window});
    Started third(office);
    ASSERT_TRUE(third.Process().waitForFinished(15000));
    Driver::WaitFor(Q("the window in front again"),
                    [&] { return RealInput::Output({Q("getactivewindow")}) == window; });
}

TEST(OnTheScreen, ASecondStartTakesTheMainWindowOutOfTheTray) {
    RealOffice office;
    RealProgram program(office);
    program.Window().ToTray(true);
    ASSERT_TRUE(program.Window().IsInTray());
    Started second(office);
    Driver::WaitFor(Q("the end of the second start"),
                    [&] { return second.Process().state() == QProcess::NotRunning; });
    Driver::WaitFor(Q("the window out of the tray"), [&] { return !program.Window().IsInTray(); });
    Driver::WaitFor(Q("the window in front"), [&] { return program.Window().isActiveWindow(); });
}

TEST(OnTheScreen, AHandleThatHasBecomeSomebodyElsesWindowDoesNotKeepTheRunningCopyHidden) {
    RealOffice office;
    RealProgram program(office);
    QWidget foreign;
    foreign.setWindowTitle(Q("Somebody else"));  // and not on the screen
    // A hidden window stands in no list of the window manager: only the file and the socket are left.
    program.Window().hide();
    ASSERT_TRUE(program.Seams.Files.Replace(program.Seams.Places.TempFolder() + Q("hwnd.sms"),
                                            QByteArray::number(foreign.winId()) + "\r\n"));
    Started second(office);
    Driver::WaitFor(Q("the end of the second start"),
                    [&] { return second.Process().state() == QProcess::NotRunning; });
    Driver::WaitFor(Q("the main window"), [&] { return program.Window().isVisible(); });
    EXPECT_EQ(RealInput::Output({Q("search"), Q("--onlyvisible"), Q("--name"), Q("Somebody else")}),
              QString())
        << "put on the screen by a program that it does not belong to";
}

TEST(OnTheScreen, APressOnTheBackgroundMovesTheWindow) {
    RealOffice office;
    RealProgram program(office);
    frmMain& window = program.Window();
    const QPoint before = window.pos();
    const QPoint ground = window.mapToGlobal(QPoint(4, 4));
    RealInput::Drag(ground, ground + QPoint(60, 40));
    Driver::WaitFor(Q("the window at another place"), [&] { return window.pos() != before; });
}

TEST(OnTheScreen, TheKeysWorkOnARussianKeyboard) {
    RealOffice office;
    RealProgram program(office);
    const KeyboardLayout russian(Q("ru"));
    Driver::Settle();
    Driver::Find(Q("cmdExit")).setFocus();
    // By the numbers of the keys: Alt, and the one with M on a Latin keyboard.
    RealInput::Do({Q("keydown"), Q("64"), Q("key"), Q("58"), Q("keyup"), Q("64")});
    Driver::WaitFor(Q("the focus in the message"), [] { return Driver::Find(Q("txtMessage")).hasFocus(); });
}
