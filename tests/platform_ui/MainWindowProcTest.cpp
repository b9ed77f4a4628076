#include "platform_ui/MainWindowProc.h"

#include <gtest/gtest.h>

#include <xcb/xcb.h>

namespace {

const QByteArray XcbEvent = QByteArrayLiteral("xcb_generic_event_t");
constexpr WindowHandle Window = 77;
constexpr quint32 Atom = 500;

xcb_client_message_event_t Message(quint32 number, quint32 parameter = 160) {
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE | 0x80;
    event.format = 32;
    event.window = Window;
    event.type = Atom;
    event.data.data32[0] = number;
    event.data.data32[1] = parameter;
    return event;
}

struct Proc {
    int Shown = 0;
    MainWindowProc Filter{[this] { ++Shown; }};
    Proc() {
        Filter.SubclassMainWindow(Window);
        Filter.ShowAtom = Atom;
    }
    template <typename Event>
    bool Takes(Event event) {
        qintptr result = -1;
        const bool isTaken = Filter.nativeEventFilter(XcbEvent, &event, &result);
        EXPECT_EQ(result, isTaken ? 0 : -1) << "the answer to a message that is taken";
        return isTaken;
    }
};

}  // namespace

TEST(MainWindowProc, Message1024ShowsTheWindowWhateverItsParameters) {
    Proc proc;
    EXPECT_TRUE(proc.Takes(Message(1024)));
    EXPECT_TRUE(proc.Takes(Message(1024, 0)));
    EXPECT_EQ(proc.Shown, 2);
}

TEST(MainWindowProc, AnythingElsePassesOn) {
    Proc proc;
    EXPECT_FALSE(proc.Takes(Message(1025)));
    auto other = Message(1024);
    other.window = Window + 1;
    EXPECT_FALSE(proc.Takes(other));
    auto stranger = Message(1024);
    stranger.type = Atom + 1;
    EXPECT_FALSE(proc.Takes(stranger));
    auto event = Message(1024);
    EXPECT_FALSE(proc.Filter.nativeEventFilter(QByteArrayLiteral("windows_generic_MSG"), &event, nullptr));
    EXPECT_EQ(proc.Shown, 0);
}

TEST(MainWindowProc, TheWindowsDestructionTakesTheFilterOffAndPassesOn) {
    Proc proc;
    xcb_destroy_notify_event_t event = {};
    event.response_type = XCB_DESTROY_NOTIFY;
    event.window = Window;
    EXPECT_FALSE(proc.Takes(event));
    EXPECT_FALSE(proc.Filter.IsInstalled());
    EXPECT_FALSE(proc.Takes(Message(1024)));
    EXPECT_EQ(proc.Shown, 0);
}

TEST(MainWindowProc, UnsubclassDoesNothingIfNothingIsInstalled) {
    MainWindowProc filter([] {});
    filter.UnsubclassMainWindow(Window);
    EXPECT_FALSE(filter.IsInstalled());
    filter.SubclassMainWindow(Window);
    filter.UnsubclassMainWindow(Window + 1);
    EXPECT_TRUE(filter.IsInstalled());
    filter.UnsubclassMainWindow(Window);
    EXPECT_FALSE(filter.IsInstalled());
}
