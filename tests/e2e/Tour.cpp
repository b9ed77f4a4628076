// The tour of ./run where there is no display: a whole send, driven through the controls of the real
// program's window.
//
// usage: larkspan-tour --data FOLDER PICTURES
// Exit status 0 only if every message reached its final status stands in both local files, and one more was
// canceled in time.

#include "e2e/Driver.h"

#include "app/AppContext.h"
#include "app/CommandLine.h"
#include "app/EntryRoutine.h"
#include "app/RealMachine.h"
#include "controls/ListView.h"
#include "controls/ReportControl.h"
#include "platform/Drives.h"
#include "platform/Folders.h"
#include "platform/LocalFiles.h"
#include "shell/Application.h"
#include "shell/Look.h"
#include "shell/MainScreens.h"
#include "shell/frmMain.h"

#include <QAbstractButton>
#include <QDateTimeEdit>
#include <QDir>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>

#include <cstdio>

namespace {

struct SentMessage {
    qint32 ID = 0;
    QString Recipient;
    qint32 Status = 0;
};

struct Tour {
    AppContext& Context;
    const Machine& Parts;
    frmMain& Window;
    Driver Hand;

    void PickPeople();
    void Compose();
    void SendNow();
    void SendAtTime();
    void SeeItDelivered();
    void CheckFiles() const;
    void CancelOne();
    void WorkInHistory();
    void ComposeForPictures();
    void ShowLooks();
    void ShowScaled();
    void Run();

    [[nodiscard]] int Recipients() const {
        return Driver::Find<ListView>(QStringLiteral("lvRecipients")).Rows().Count();
    }
    [[nodiscard]] QStringList NamesWithConfirmation(bool isConfirm, int count) const;

    /// What became of the messages of this tour, as it stands in the outbox.
    [[nodiscard]] QList<SentMessage> Sent() const;
    /// Whether the client still follows a message.
    [[nodiscard]] bool HasPending() const;

    int Expected = 0;
    /// The newest message of the history when it was closed.
    ReportRecord Newest = {};
};

QString StatusWord(qint32 status) {
    switch (status) {
        case 0:
            return QStringLiteral("waiting");
        case 1:
            return QStringLiteral("being handed over");
        case 2:
            return QStringLiteral("canceled");
        case 3:
            return QStringLiteral("en route");
        case 4:
            return QStringLiteral("could not be sent");
        case 5:
            return QStringLiteral("delivered");
        case 6:
            return QStringLiteral("delivery unconfirmed");
        case 7:
            return QStringLiteral("not delivered");
        default:
            return QStringLiteral("unknown");
    }
}

QStringList Tour::NamesWithConfirmation(bool isConfirm, int count) const {
    QStringList names;
    for (const Contact& contact : Context.AddressContacts.list()) {
        if (contact.IsConfirmSend == isConfirm && names.size() < count) {
            names.append(contact.DisplayName(Context.SortBy));
        }
    }
    return names;
}

void Tour::PickPeople() {
    const QString list = QStringLiteral("lvContacts");
    const QStringList people = NamesWithConfirmation(false, 3);
    Hand.ClickRow(list, people[0]);
    Hand.ClickRow(list, people[1], Qt::ControlModifier);
    Hand.ClickRow(list, people[2], Qt::ControlModifier);
    Hand.Press(list, Qt::Key_Return);
    Hand.WaitFor(QStringLiteral("three recipients"), [this] { return Recipients() == 3; });
    Hand.DoubleClickRow(list, NamesWithConfirmation(true, 1)[0]);
    Hand.WaitFor(QStringLiteral("a fourth recipient"), [this] { return Recipients() == 4; });

    // A double click on a group's tab adds the group.
    const auto groups = mdlPhonebook::GetGroups(Context);
    const QString group = groups->Value(u"grpName").toString();
    Hand.DoubleClickTab(QStringLiteral("tabGroup"), group);
    Hand.WaitFor(QStringLiteral("the members of ") + group, [this] { return Recipients() > 4; });
    Hand.Picture(QStringLiteral("2-recipients"));
}

void Tour::Compose() {
    Hand.Type(QStringLiteral("txtMessage"),
              QStringLiteral(
                  "Dear @FN @SN, the canteen closes at 14:00 on @TD. Please collect orders before then."));
    Hand.Picture(QStringLiteral("3-message"));
}

void Tour::SendNow() {
    Expected += Recipients();
    Hand.WhenDialog(QStringLiteral("frmConfirmRecipient"), [this] {
        Hand.Picture(QStringLiteral("4-confirm"));
        Driver::Click(QStringLiteral("cmdOkay"));
    });
    Hand.Click(QStringLiteral("cmdSendNow"));
    Hand.WaitFor(QStringLiteral("an empty composition"), [this] { return Recipients() == 0; });
    Hand.Picture(QStringLiteral("5-sent"));
}

void Tour::SendAtTime() {
    Hand.ClickTab(QStringLiteral("tabGroup"), QStringLiteral("*"));
    Hand.DoubleClickRow(QStringLiteral("lvContacts"), NamesWithConfirmation(false, 4)[3]);
    Hand.WaitFor(QStringLiteral("one recipient"), [this] { return Recipients() == 1; });
    Hand.Type(QStringLiteral("txtMessage"), QStringLiteral("Your parcel is at the front desk."));
    ++Expected;
    Hand.WhenDialog(QStringLiteral("frmGetTime"), [this] {
        Hand.Picture(QStringLiteral("6-schedule"));
        // Due at once: a tour does not wait for an hour.
        Driver::Find<QDateTimeEdit>(QStringLiteral("dtTime")).setTime(QTime(0, 0));
        Driver::Click(QStringLiteral("cmdOK"));
    });
    Hand.Click(QStringLiteral("cmdSendLater"));
    Hand.WaitFor(QStringLiteral("an empty composition"), [this] { return Recipients() == 0; });
}

QList<SentMessage> Tour::Sent() const {
    mdlHistory history(Parts.Files, Parts.Places, Parts.Boxes, Parts.Page);
    QString filter;
    for (const HistoryRecord& record : history.ReadHistory().mid(0, Expected)) {
        filter += QStringLiteral(" OR msgID = ") + QString::number(record.MessageID);
    }
    // Past the client's own connection, as the gateway sees it.
    DB outbox(Context.Database);
    outbox.Filename = Context.OutboxDB->Filename;
    QList<SentMessage> messages;
    if (filter.isEmpty() || !outbox.OpenDatabase(engine::Mode::ReadShared)) {
        return messages;
    }
    const auto rows = outbox.OpenDynaset(
        QStringLiteral("SELECT msgID, msgRecipient, msgStatus FROM Message WHERE ") + filter.mid(4),
        engine::CursorType::ForwardOnly, engine::LockType::ReadOnly);
    for (; rows != nullptr && !rows->EndOfFile(); rows->MoveNext()) {
        messages.append({rows->Value(u"msgID").toInt(), rows->Value(u"msgRecipient").toString(),
                         rows->Value(u"msgStatus").toInt()});
    }
    return messages;
}

bool Tour::HasPending() const {
    for (int slot = 0; slot < MessageTracker::SlotCount; ++slot) {
        const MessageTracker::Slot& message = Context.MessageTracker.SlotAt(slot);
        if (message.msgID != 0 && !mdlOutbox::IsMessageFinal(message.status)) {
            return true;
        }
    }
    return false;
}

void Tour::SeeItDelivered() {
    Hand.WaitFor(
        QStringLiteral("a popup that tells of messages"),
        [this] { return Window.findChild<QWidget*>(QStringLiteral("pucFeedback"))->isVisible(); }, 90);
    Hand.Picture(QStringLiteral("7-popup"));
    Hand.WaitFor(
        QStringLiteral("every message at its final status"), [this] { return !HasPending(); }, 90);
    const QList<SentMessage> messages = Sent();
    for (const SentMessage& message : messages) {
        if (!mdlOutbox::IsMessageFinal(message.Status)) {
            throw DriverError(QStringLiteral("message %1 is not final").arg(message.ID));
        }
        std::printf("    message %-4d to %-28s %s\n", message.ID, qUtf8Printable(message.Recipient),
                    qUtf8Printable(StatusWord(message.Status)));
    }
    if (messages.size() != Expected) {
        throw DriverError(
            QStringLiteral("%1 messages of %2 stand in the outbox").arg(messages.size()).arg(Expected));
    }
    Hand.Picture(QStringLiteral("8-delivered"));
}

void Tour::CheckFiles() const {
    const QByteArray log =
        Parts.Files.Read(Parts.Places.ApplicationFolder() + QStringLiteral("messagelog.sms"))
            .value_or(QByteArray());
    for (const SentMessage& message : Sent()) {
        if (!("\n" + log).contains("\n" + QByteArray::number(message.ID) + ',')) {
            throw DriverError(QStringLiteral("message %1 is not in messagelog.sms").arg(message.ID));
        }
    }
    std::printf("    %d messages, all in history.sms and messagelog.sms\n", Expected);
}

/// A message for tomorrow is taken back before the gateway gets it.
void Tour::CancelOne() {
    Hand.ClickTab(QStringLiteral("tabGroup"), QStringLiteral("*"));
    Hand.DoubleClickRow(QStringLiteral("lvContacts"), NamesWithConfirmation(false, 5)[4]);
    Hand.Type(QStringLiteral("txtMessage"), QStringLiteral("Your appointment is tomorrow at ten."));
    Hand.WhenDialog(QStringLiteral("frmGetTime"), [] {
        auto& date = Driver::Find<QDateTimeEdit>(QStringLiteral("dtDate"));
        date.setDate(date.date().addDays(1));
        Driver::Click(QStringLiteral("cmdOK"));
    });
    Hand.Click(QStringLiteral("cmdSendLater"));
    Hand.WaitFor(QStringLiteral("an empty composition"), [this] { return Recipients() == 0; });
    Hand.WhenDialog(QStringLiteral("frmHistory"), [this] { WorkInHistory(); });
    Hand.Click(QStringLiteral("cmdHistory"));
    if (Newest.Items.value(0).Value != QVariant(2)) {
        throw DriverError(QStringLiteral("the message for tomorrow was not canceled"));
    }
    std::printf("    a message for tomorrow was canceled before it was sent\n");
}

void Tour::WorkInHistory() {
    auto& grid = Driver::Find<ReportControl>(QStringLiteral("rptHistory"));
    Hand.Picture(QStringLiteral("9-history"));
    Hand.WhenMenu([this](QMenu& menu) {
        Hand.Picture(QStringLiteral("10-history-menu"));
        menu.close();
    });
    QTest::mouseClick(grid.viewport(), Qt::RightButton, {},
                      grid.visualRect(grid.model()->index(0, 2)).center());
    Hand.WhenDialog(QStringLiteral("MessageBox"), [this] {
        Hand.Picture(QStringLiteral("11-cancel"));
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        box->button(QMessageBox::Yes)->click();
    });
    Driver::Click(QStringLiteral("cmdCancel"));
    Hand.Picture(QStringLiteral("12-canceled"));
    Newest = *grid.RowRecord(0);
    Look::Apply(QStringLiteral("dark"));
    Hand.Picture(QStringLiteral("13-history-dark"));
    Look::Apply(QStringLiteral("light"));
    Driver::Click(QStringLiteral("cmdClose"));
}

void Tour::ComposeForPictures() {
    const QString list = QStringLiteral("lvContacts");
    Hand.ClickTab(QStringLiteral("tabGroup"), QStringLiteral("*"));
    const QStringList people = NamesWithConfirmation(false, 6);
    Hand.ClickRow(list, people[2]);
    Hand.ClickRow(list, people[4], Qt::ControlModifier);
    Hand.Press(list, Qt::Key_Return);
    Hand.DoubleClickRow(list, NamesWithConfirmation(true, 1)[0]);
    Hand.ClickRow(list, people[5]);
    Hand.Type(
        QStringLiteral("txtMessage"),
        QStringLiteral("Dear @FN, the canteen closes at 14:00 on @TD. Please collect orders before then."));
}

void Tour::ShowLooks() {
    ComposeForPictures();
    Window.resize(1100, 740);
    Hand.PictureOf(Window, QStringLiteral("main-window"));
    Look::Apply(QStringLiteral("dark"));
    Window.ShowAlert(true);
    Hand.PictureOf(Window, QStringLiteral("main-window-dark"));
    Look::Apply(QStringLiteral("light"));
    Window.resize(900, 600);
    Hand.PictureOf(Window, QStringLiteral("main-window-small"));
    Window.ShowAlert(false);
    Window.resize(1900, 1000);
    Hand.PictureOf(Window, QStringLiteral("main-window-large"));
}

/// What a screen of twice the pixels shows: the smallest window, with the warning.
void Tour::ShowScaled() {
    ComposeForPictures();
    Window.ShowAlert(true);
    Window.resize(900, 600);
    Hand.PictureOf(Window, QStringLiteral("main-window-scaled"));
}

void Tour::Run() {
    Hand.Picture(QStringLiteral("1-start"));
    SendAtTime();
    PickPeople();
    Compose();
    SendNow();
    SeeItDelivered();
    CheckFiles();
    CancelOne();
    ShowLooks();
}

}  // namespace

int main(int argc, char** argv) {
    QStringList arguments;
    for (int i = 1; i < argc && i < 3; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    const CommandLine commandLine(arguments);
    const bool isScaled = argc == 5 && qstrcmp(argv[4], "--scaled") == 0;
    if ((argc != 4 && !isScaled) || commandLine.DataFolder.isEmpty()) {
        std::fprintf(stderr, "usage: larkspan-tour --data FOLDER PICTURES [--scaled]\n");
        return 2;
    }
    CompleteEnvironment();
    Application application(argc, argv);
    Look::Apply(QStringLiteral("light"));
    RealMachine real;
    const Machine machine = real.Seams();
    application.SetLastResort(&machine.AppLog, &machine.Boxes);
    AppContext context(machine);
    MainScreens screens(context, machine, commandLine);
    EntryRoutine entry(context, machine, screens, commandLine);
    if (!entry.Run()) {
        std::fprintf(stderr, "the program did not start\n");
        return 1;
    }

    int status = 1;
    const QString pictures = QString::fromLocal8Bit(argv[3]);
    QDir().mkpath(pictures);
    QTimer::singleShot(0, &application, [&] {
        Tour tour{context, machine, *screens.Main(), Driver(pictures)};
        try {
            Driver::WaitFor(QStringLiteral("the main window"),
                            [&] { return screens.Main() != nullptr && screens.Main()->isActiveWindow(); });
            if (isScaled) {
                tour.ShowScaled();
            } else {
                tour.Run();
            }
            status = 0;
        } catch (const std::exception& problem) {
            std::fprintf(stderr, "tour: %s\n", problem.what());
            tour.Hand.Picture(QStringLiteral("failed"));
        }
        Driver::Click(QStringLiteral("cmdExit"));
    });
    const int ended = Application::exec();
    return status != 0 ? status : ended;
}
