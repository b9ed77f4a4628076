#include "platform_ui/X11Windows.h"

#include "support/Environment.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <xcb/xcb_ewmh.h>

#include <cstdlib>
#include <optional>
#include <utility>
#include <vector>

namespace {

constexpr int Deadline = 20000;  // ms

/// An X server without a window manager, and a connection that makes windows on it.
class X11WindowsTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_server.start(QStringLiteral("Xvfb"), {QStringLiteral("-displayfd"), QStringLiteral("1")});
        while (!m_said.contains('\n')) {
            ASSERT_TRUE(m_server.waitForReadyRead(Deadline)) << "no Xvfb on this machine";
            m_said += m_server.readAllStandardOutput();
        }
        m_display.emplace("DISPLAY", ':' + m_said.trimmed());
        m_connection = xcb_connect(nullptr, nullptr);
        ASSERT_EQ(xcb_connection_has_error(m_connection), 0);
        ASSERT_NE(xcb_ewmh_init_atoms_replies(&m_ewmh, xcb_ewmh_init_atoms(m_connection, &m_ewmh), nullptr),
                  0);
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    }
    void TearDown() override {
        xcb_ewmh_connection_wipe(&m_ewmh);
        xcb_disconnect(m_connection);
        m_server.kill();
        m_server.waitForFinished(Deadline);
    }
    /// A new window lies on top of its siblings.
    xcb_window_t Make(xcb_window_t parent) {
        const xcb_window_t window = xcb_generate_id(m_connection);
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, parent, 0, 0, 10, 10, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        Sync();
        return window;
    }
    void Sync() {
        std::free(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    }

    QProcess m_server;
    QByteArray m_said;
    std::optional<EnvironmentVariable> m_display;
    xcb_connection_t* m_connection = nullptr;
    xcb_ewmh_connection_t m_ewmh = {};
    xcb_window_t m_root = 0;
};

TEST_F(X11WindowsTest, ChildrenAreWalkedFromTheTopOfTheStack) {
    const xcb_window_t parent = Make(m_root);
    const xcb_window_t lowest = Make(parent);
    const xcb_window_t highest = Make(parent);
    const X11Windows windows;
    ASSERT_TRUE(windows.IsReachable());
    EXPECT_EQ(windows.Children(parent), (QList<WindowHandle>{highest, lowest}));
    const uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(m_connection, lowest, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    Sync();
    EXPECT_EQ(windows.Children(parent), (QList<WindowHandle>{lowest, highest}));
    bool recursive = false;
    EXPECT_EQ(FindChildWindow(windows, parent, {}, {}, recursive), lowest);
}

TEST_F(X11WindowsTest, WithoutAWindowManagerTheWindowsAreTheChildrenOfTheScreen) {
    const xcb_window_t first = Make(m_root);
    const xcb_window_t second = Make(m_root);
    const X11Windows windows;
    EXPECT_EQ(windows.EnumWindows().first(2), (QList<WindowHandle>{second, first}));
}

TEST_F(X11WindowsTest, TheWindowManagersListIsWalkedFromTheTopOfTheStack) {
    std::vector<xcb_window_t> fromTheBottom = {Make(m_root), Make(m_root), Make(m_root)};
    xcb_ewmh_set_client_list(&m_ewmh, 0, 3, fromTheBottom.data());
    std::swap(fromTheBottom.at(0), fromTheBottom.at(1));
    xcb_ewmh_set_client_list_stacking(&m_ewmh, 0, 3, fromTheBottom.data());
    Sync();
    EXPECT_EQ(X11Windows().EnumWindows(), QList<WindowHandle>(fromTheBottom.rbegin(), fromTheBottom.rend()));
}

TEST_F(X11WindowsTest, AWindowThatIsGoneHasNoChildren) {
    const X11Windows windows;
    EXPECT_TRUE(windows.Children(4711).isEmpty());
}

}  // namespace
