#include "platform_ui/X11Windows.h"

#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <iterator>

const QByteArray X11Windows::ShowAtomName = QByteArrayLiteral("_LARKSPAN_SHOW");

namespace {

/// Replies of the X library are allocated by malloc.
struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using ReplyPtr = std::unique_ptr<Reply, FreeReply>;

/// How much of a text property is read, in units of 4 bytes: far more than any title.
constexpr quint32 TextUnits = 1024;

xcb_atom_t InternAtom(xcb_connection_t* connection, const QByteArray& name) {
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<uint16_t>(name.size()), name.constData());
    const ReplyPtr<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
}

/// The server and the window manager tell windows from the bottom of the stack.
QList<WindowHandle> FromTheTop(const xcb_window_t* lowest, int count) {
    return {std::make_reverse_iterator(lowest + count), std::make_reverse_iterator(lowest)};
}

}  // namespace

struct X11Windows::Server {
    xcb_connection_t* Connection = nullptr;
    xcb_ewmh_connection_t Ewmh = {};
    int Screen = 0;
    xcb_atom_t ShowAtom = XCB_ATOM_NONE;
    xcb_atom_t StateAtom = XCB_ATOM_NONE;
    bool HasEwmh = false;

    Server() {
        Connection = xcb_connect(nullptr, &Screen);
        if (xcb_connection_has_error(Connection) != 0) {
            return;
        }
        HasEwmh = xcb_ewmh_init_atoms_replies(&Ewmh, xcb_ewmh_init_atoms(Connection, &Ewmh), nullptr) != 0 &&
                  Screen < Ewmh.nb_screens;
        ShowAtom = InternAtom(Connection, ShowAtomName);
        StateAtom = InternAtom(Connection, QByteArrayLiteral("WM_STATE"));
    }
    ~Server() {
        if (HasEwmh) {
            xcb_ewmh_connection_wipe(&Ewmh);
        }
        xcb_disconnect(Connection);
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    [[nodiscard]] xcb_window_t Root() const { return Ewmh.screens[Screen]->root; }
    /// True if the request went through without an error.
    [[nodiscard]] bool Check(xcb_void_cookie_t cookie) const {
        const ReplyPtr<xcb_generic_error_t> error(xcb_request_check(Connection, cookie));
        return error == nullptr;
    }
};

X11Windows::X11Windows() : m_server(std::make_unique<Server>()) {
    if (!m_server->HasEwmh) {
        m_server = nullptr;
    }
}

X11Windows::~X11Windows() = default;

QList<WindowHandle> X11Windows::EnumWindows() const {
    if (m_server == nullptr) {
        return {};
    }
    xcb_ewmh_get_windows_reply_t reply = {};
    const auto cookie = xcb_ewmh_get_client_list_stacking(&m_server->Ewmh, m_server->Screen);
    if (xcb_ewmh_get_client_list_stacking_reply(&m_server->Ewmh, cookie, &reply, nullptr) == 0) {
        return Children(m_server->Root());  // no window manager keeps a list
    }
    const QList<WindowHandle> windows = FromTheTop(reply.windows, static_cast<int>(reply.windows_len));
    xcb_ewmh_get_windows_reply_wipe(&reply);
    return windows;
}

QList<WindowHandle> X11Windows::Children(WindowHandle parent) const {
    if (m_server == nullptr) {
        return {};
    }
    const auto cookie = xcb_query_tree(m_server->Connection, parent);
    const ReplyPtr<xcb_query_tree_reply_t> reply(xcb_query_tree_reply(m_server->Connection, cookie, nullptr));
    if (reply == nullptr) {
        return {};
    }
    return FromTheTop(xcb_query_tree_children(reply.get()), xcb_query_tree_children_length(reply.get()));
}

QByteArray X11Windows::TextProperty(WindowHandle window, quint32 property) const {
    if (m_server == nullptr) {
        return {};
    }
    const auto cookie =
        xcb_get_property(m_server->Connection, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, TextUnits);
    const ReplyPtr<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_server->Connection, cookie, nullptr));
    if (reply == nullptr || reply->format != 8) {
        return {};
    }
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
}

QString X11Windows::ClassName(WindowHandle window) const {
    // The property holds two texts, each closed by a null: the instance's name and the class.
    const QList<QByteArray> parts = TextProperty(window, XCB_ATOM_WM_CLASS).split('\0');
    return parts.size() < 2 ? QString() : QString::fromLatin1(parts[1]);
}

QString X11Windows::Title(WindowHandle window) const {
    if (m_server == nullptr) {
        return {};
    }
    const QByteArray title = TextProperty(window, m_server->Ewmh._NET_WM_NAME);
    if (!title.isEmpty()) {
        return QString::fromUtf8(title);
    }
    return QString::fromLatin1(TextProperty(window, XCB_ATOM_WM_NAME));
}

void X11Windows::SetClassName(WindowHandle window, const QString& name) {
    if (m_server == nullptr) {
        return;
    }
    QByteArray value = QByteArrayLiteral("larkspan");
    value.append('\0').append(name.toLatin1()).append('\0');
    xcb_change_property(m_server->Connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS,
                        XCB_ATOM_STRING, 8, static_cast<uint32_t>(value.size()), value.constData());
    xcb_flush(m_server->Connection);
}

bool X11Windows::IsWindow(WindowHandle window) const {
    if (m_server == nullptr || window == 0) {
        return false;
    }
    const auto cookie = xcb_get_window_attributes(m_server->Connection, window);
    const ReplyPtr<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(m_server->Connection, cookie, nullptr));
    return reply != nullptr;
}

bool X11Windows::SendShowRequest(WindowHandle window) {
    if (!IsWindow(window)) {
        return false;
    }
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = m_server->ShowAtom;
    event.data.data32[0] = ShowMessage;
    event.data.data32[1] = ShowParameter;
    event.data.data32[2] = ShowValue;
    std::array<char, 32> bytes = {};
    std::memcpy(bytes.data(), &event, sizeof(event));
    // Without an event mask the message goes to the program that made the window, whether it listens or not.
    const auto cookie = xcb_send_event_checked(m_server->Connection, 0, window, 0, bytes.data());
    const bool isSent = m_server->Check(cookie);
    SetForegroundWindow(window);
    return isSent;
}

bool X11Windows::SetForegroundWindow(WindowHandle window) {
    // Source 2: on behalf of the user, so that a window manager does not hold it back.
    xcb_ewmh_request_change_active_window(&m_server->Ewmh, m_server->Screen, window,
                                          XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER, XCB_CURRENT_TIME, XCB_NONE);
    return xcb_flush(m_server->Connection) > 0;
}

bool X11Windows::IsIconic(WindowHandle window) const {
    constexpr uint32_t Iconic = 3;  // ICCCM 4.1.3.1
    const auto cookie = xcb_get_property(m_server->Connection, 0, window, m_server->StateAtom,
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, 1);
    const ReplyPtr<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_server->Connection, cookie, nullptr));
    if (reply == nullptr || xcb_get_property_value_length(reply.get()) < static_cast<int>(sizeof(Iconic))) {
        return false;
    }
    uint32_t state = 0;
    std::memcpy(&state, xcb_get_property_value(reply.get()), sizeof(state));
    return state == Iconic;
}

bool X11Windows::ForceForeground(WindowHandle window) {
    if (!IsWindow(window)) {
        return false;
    }
    xcb_window_t active = 0;
    const auto cookie = xcb_ewmh_get_active_window(&m_server->Ewmh, m_server->Screen);
    if (xcb_ewmh_get_active_window_reply(&m_server->Ewmh, cookie, &active, nullptr) != 0 &&
        active == window && !IsIconic(window)) {
        return true;
    }
    xcb_map_window(m_server->Connection, window);
    return SetForegroundWindow(window);
}

void X11Windows::SetAppWindowStyle(WindowHandle window, bool on) {
    if (!IsWindow(window)) {
        return;
    }
    xcb_ewmh_request_change_wm_state(
        &m_server->Ewmh, m_server->Screen, window, on ? XCB_EWMH_WM_STATE_REMOVE : XCB_EWMH_WM_STATE_ADD,
        m_server->Ewmh._NET_WM_STATE_SKIP_TASKBAR, 0, XCB_EWMH_CLIENT_SOURCE_TYPE_NORMAL);
    xcb_flush(m_server->Connection);
}
