#include "e2e/TrayScreen.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>

using namespace TrayScreen;

namespace {

/// Whether the window manager has the window in front, which it says a moment after the window knows.
bool IsInFront(const QWidget& window) {
    return window.isActiveWindow() &&
           RealInput::Output({Q("getactivewindow")}).trimmed() == QString::number(window.winId());
}

/// Hears what the window manager is asked for.
class RootListener {
public:
    RootListener() : m_connection(xcb_connect(nullptr, nullptr)) {
        const QByteArray name = QByteArrayLiteral("_NET_ACTIVE_WINDOW");
        xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
            m_connection,
            xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(name.size()), name.constData()), nullptr);
        m_atom = reply == nullptr ? 0 : reply->atom;
        std::free(reply);
        const uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_connection,
                                     xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root,
                                     XCB_CW_EVENT_MASK, &mask);
        Sync();
    }
    ~RootListener() { xcb_disconnect(m_connection); }
    RootListener(const RootListener&) = delete;
    RootListener& operator=(const RootListener&) = delete;

    /// How often this window was to be put in front since the last call.
    [[nodiscard]] int Requests(WindowHandle window) {
        Sync();
        int count = 0;
        while (xcb_generic_event_t* event = xcb_poll_for_event(m_connection)) {
            if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE) {
                xcb_client_message_event_t message;
                std::memcpy(&message, event, sizeof(message));
                count += message.type == m_atom && message.window == window ? 1 : 0;
            }
            std::free(event);
        }
        return count;
    }

private:
    void Sync() {
        std::free(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    }

    xcb_connection_t* m_connection;
    xcb_atom_t m_atom = 0;
};

}  // namespace

TEST(Foreground, AWindowThatIsInFrontStaysAsItIsAndAnotherOneComesForward) {
    const RealOffice office;
    RealProgram program(office);
    const auto number = static_cast<WindowHandle>(program.Window().winId());
    Driver::WaitFor(Q("the window in front"), [&] { return IsInFront(program.Window()); });
    Driver::Settle();
    RootListener listener;
    EXPECT_TRUE(program.Seams.Desktop.ForceForeground(number));
    Driver::Settle();
    EXPECT_EQ(listener.Requests(number), 0) << "nothing is asked for a window that is in front";
    EXPECT_TRUE(IsInFront(program.Window()));
    QWidget other;
    other.setWindowTitle(Q("In front"));
    other.show();
    other.activateWindow();
    Driver::WaitFor(Q("the other window in front"), [&] { return IsInFront(other); });
    EXPECT_TRUE(program.Seams.Desktop.ForceForeground(number));
    Driver::WaitFor(Q("the window in front again"), [&] { return IsInFront(program.Window()); });
    EXPECT_EQ(listener.Requests(number), 1);
    program.Window().showMinimized();
    Driver::WaitFor(Q("the minimised window"), [&] {
        return StateOf(QString::number(number)) == Q("Iconic") && !IsInFront(program.Window());
    });
    Driver::Settle();  // the toolkit hears of the state later than the screen shows it
    EXPECT_TRUE(program.Seams.Desktop.ForceForeground(number));
    Driver::WaitFor(Q("the window back"),
                    [&] { return IsInFront(program.Window()) && !program.Window().isMinimized(); });
}

TEST(Foreground, AWindowThatDoesNotExistCannotBeBroughtForward) {
    const RealOffice office;
    RealProgram program(office);
    EXPECT_FALSE(program.Seams.Desktop.ForceForeground(0));
    EXPECT_FALSE(program.Seams.Desktop.ForceForeground(0x7ffffff0));
}
