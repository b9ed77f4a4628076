#include "compose/MessageEdit.h"
#include "controls/ListView.h"
#include "e2e/RealProgram.h"
#include "platform_ui/Windows.h"

#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QLineEdit>

#include <xcb/xcb.h>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

QPoint MiddleOf(const char* name) {
    const QWidget& control = Driver::Find(Q(name));
    return control.mapToGlobal(control.rect().center());
}

/// What other programs say to one window while this lives: the numbers of each message.
class Messages final : public QAbstractNativeEventFilter {
public:
    QList<QList<quint32>> Heard;

    explicit Messages(WId window) : m_window(window) { qApp->installNativeEventFilter(this); }
    ~Messages() override { qApp->removeNativeEventFilter(this); }
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;

    bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override {
        const auto* event = static_cast<const xcb_client_message_event_t*>(message);
        if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE && event->window == m_window &&
            event->data.data32[0] == Windows::ShowMessage) {
            Heard.append({event->data.data32[0], event->data.data32[1], event->data.data32[2]});
        }
        return false;
    }

private:
    WId m_window;
};

}  // namespace

TEST(OnTheScreen, ContactsDraggedOntoTheMessageOrTheSignatureLeaveNoKeysThere) {
    RealOffice office;
    RealProgram program(office);
    auto& contacts = Driver::Find<ListView>(Q("lvContacts"));
    const QString name = contacts.Rows().At(2).Text;
    Driver::ClickRow(Q("lvContacts"), name);
    const QPoint row = Driver::RowPosition(Q("lvContacts"), name);
    const QString signature = Driver::Find<QLineEdit>(Q("txtEndWidth")).text();
    for (const char* place : {"txtMessage", "txtEndWidth"}) {
        RealInput::Drag(row, MiddleOf(place));
        Driver::Settle();
        EXPECT_EQ(Driver::Find<MessageEdit>(Q("txtMessage")).Text(), QString()) << place;
        EXPECT_EQ(Driver::Find<QLineEdit>(Q("txtEndWidth")).text(), signature) << place;
    }
    RealInput::Drag(row, MiddleOf("lvRecipients"));
    Driver::WaitFor(Q("the recipient"),
                    [] { return Driver::Find<ListView>(Q("lvRecipients")).Rows().Count() == 1; });
}

TEST(OnTheScreen, APressOnADisabledControlDoesNotMoveTheWindow) {
    RealOffice office;
    RealProgram program(office);
    const QPoint before = program.Window().pos();
    for (const char* name : {"txtEndWidth", "cbTails", "cmdSearch"}) {
        Driver::Find(Q(name)).setEnabled(false);
        const QPoint press = MiddleOf(name);
        RealInput::Drag(press, press + QPoint(60, 40));
        Driver::Settle();
        EXPECT_EQ(program.Window().pos(), before) << name;
    }
}

TEST(OnTheScreen, ASecondStartSendsTheFirstWindowMessage1024With160And128) {
    RealOffice office;
    RealProgram program(office);
    const Messages messages(program.Window().winId());
    QProcess second;
    second.start(Q(LARKSPAN), {Q("--data"), office.Folder()});
    Driver::WaitFor(Q("the end of the second start"), [&] { return second.state() == QProcess::NotRunning; });
    Driver::WaitFor(Q("its message"), [&] { return !messages.Heard.isEmpty(); });
    EXPECT_EQ(messages.Heard, (QList<QList<quint32>>{{1024, 160, 128}}));
}
