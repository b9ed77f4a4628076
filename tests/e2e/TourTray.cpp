#include "e2e/Tour.h"

#include "app/Machine.h"
#include "e2e/RealInput.h"
#include "platform_ui/Tray.h"
#include "shell/frmMain.h"

#include <QApplication>
#include <QMenu>

#include <algorithm>
#include <cstdio>

namespace {

/// The real mouse on the icon, and what it does there.
void AtIcon(const Machine& parts, const QStringList& actions) {
    const QPoint place = parts.NotificationArea.Place().center();
    RealInput::Do(QStringList{QStringLiteral("mousemove"), QString::number(place.x()),
                              QString::number(place.y()), QStringLiteral("sleep"), QStringLiteral("0.2")} +
                  actions);
}

}  // namespace

bool Tour::IsShown(const QString& name) const {
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.cbegin(), windows.cend(), [&name](const QWidget* window) {
        const auto* control = window->findChild<QWidget*>(name);
        return control != nullptr && control->isVisible();
    });
}

void Tour::GoToTray() {
    Driver::WaitFor(QStringLiteral("the icon in the tray"),
                    [this] { return m_parts.NotificationArea.IsThere(); });
    Driver::Click(QStringLiteral("cmdMinimize"));
    Driver::WaitFor(QStringLiteral("the window hidden"), [this] { return !m_window.isVisible(); });
}

/// The popup comes though the window is away; the menu of the icon as well.
void Tour::SeePopupOverTray() {
    Driver::WaitFor(
        QStringLiteral("a popup that tells of messages"),
        [this] { return IsShown(QStringLiteral("pucFeedback")); }, 90);
    m_hand.Picture(QStringLiteral("7-popup-over-tray"));
    bool isMenuSeen = false;
    Driver::WhenMenu([&](QMenu& menu) {
        m_hand.Picture(QStringLiteral("8-tray-menu"));
        menu.close();
        isMenuSeen = true;
    });
    AtIcon(m_parts, {QStringLiteral("click"), QStringLiteral("3")});
    Driver::WaitFor(QStringLiteral("the menu of the icon"), [&] { return isMenuSeen; });
}

/// By a double click on the icon. A message that failed meanwhile stands in the warning.
void Tour::ComeBack() {
    RealInput::Repeat(
        QStringLiteral("the window out of the tray"),
        [this] {
            AtIcon(m_parts, {QStringLiteral("sleep"), QStringLiteral("0.6"), QStringLiteral("click"),
                             QStringLiteral("--repeat"), QStringLiteral("2"), QStringLiteral("--delay"),
                             QStringLiteral("80"), QStringLiteral("1")});
        },
        [this] { return m_window.isVisible() && m_window.isActiveWindow(); });
    Driver::WaitFor(QStringLiteral("the warning"),
                    [this] { return IsShown(QStringLiteral("lblFailureWarning")); });
    m_hand.Picture(QStringLiteral("9-warning"));
    Driver::Click(QStringLiteral("lblFailureWarning"));
    if (IsShown(QStringLiteral("lblFailureWarning"))) {
        throw DriverError(QStringLiteral("the warning stays after a click"));
    }
    m_hand.Picture(QStringLiteral("10-delivered"));
    std::printf("    the popup told of it over the tray, and the warning of what failed\n");
}
