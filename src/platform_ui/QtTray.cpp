#include "platform_ui/QtTray.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTimer>

#include <utility>

QtTray::QtTray() {
    connect(&m_watch, &TrayWatch::Changed, this, &QtTray::Update);
}

QtTray::~QtTray() = default;

void QtTray::Open(TrayEvents events) {
    m_events = std::move(events);
    if (!std::exchange(m_isOpen, true)) {
        m_watch.Start();
        Update();
    }
}

void QtTray::Close() {
    m_isOpen = false;
    m_events = {};
    m_watch.Stop();
    if (m_trayIcon != nullptr) {
        m_trayIcon->hide();
    }
}

QtTray::Kind QtTray::Found() const {
    if (!m_watch.IsHostKnown()) {
        return Kind::None;  // making the icon now would wait for the bus
    }
    if (m_watch.HasHost()) {
        return Kind::Host;
    }
    return TrayWatch::HasEmbeddingTray() ? Kind::Embedding : Kind::None;
}

bool QtTray::IsAreaThere() const {
    switch (m_kind) {
        case Kind::Embedding:
            return TrayWatch::HasEmbeddingTray();
        case Kind::Host:
            return m_watch.HasHost();
        case Kind::None:
            break;
    }
    return false;
}

bool QtTray::IsThere() const {
    return m_isOpen && m_trayIcon != nullptr && m_trayIcon->isVisible() && IsAreaThere();
}

void QtTray::SetNeeded(bool on) {
    m_isNeeded = on;
    if (m_isOpen) {
        Update();
    }
}

void QtTray::Update() {
    if (!m_isOpen) {
        return;
    }
    if (m_trayIcon == nullptr && Found() != Kind::None) {
        MakeIcon(Found());
    }
    const bool wasShown = m_trayIcon != nullptr && m_trayIcon->isVisible();
    const bool isShown = m_trayIcon != nullptr && IsAreaThere();
    if (wasShown != isShown) {
        ShowIcon(isShown);
    }
    m_watch.SetPolling(!isShown || m_isNeeded);
    if (wasShown && !isShown && m_events.OnLost) {
        m_events.OnLost();
    }
}

void QtTray::ShowIcon(bool on) {
    const QWidgetList before = QApplication::topLevelWidgets();
    m_trayIcon->setVisible(on);
    if (!on || m_kind != Kind::Embedding) {
        return;
    }
    const QWidgetList after = QApplication::topLevelWidgets();
    for (QWidget* window : after) {
        if (!before.contains(window)) {
            m_iconWindow = window;
            window->installEventFilter(this);
        }
    }
}

void QtTray::MakeIcon(Kind kind) {
    m_kind = kind;
    m_trayIcon = std::make_unique<QSystemTrayIcon>(m_picture);
    m_trayIcon->setObjectName(QStringLiteral("trayIcon"));
    m_trayIcon->setToolTip(m_toolTip);
    SetHostMenu(m_hostMenu);
    connect(m_trayIcon.get(), &QSystemTrayIcon::activated, this, &QtTray::Activate);
}

void QtTray::SetIcon(const QIcon& icon) {
    m_picture = icon;
    if (m_trayIcon != nullptr) {
        m_trayIcon->setIcon(icon);
    }
}

void QtTray::SetToolTip(const QString& text) {
    m_toolTip = text;
    if (m_trayIcon != nullptr) {
        m_trayIcon->setToolTip(text);
    }
}

void QtTray::SetHostMenu(QMenu* menu) {
    m_hostMenu = menu;
    if (m_trayIcon != nullptr && m_kind == Kind::Host) {
        m_trayIcon->setContextMenu(menu);
    }
}

QRect QtTray::Place() const {
    return IsThere() ? m_trayIcon->geometry() : QRect();
}

void QtTray::ShowBalloonTip(int timeValue, const QString& title, const QString& text, BalloonIcon icon) {
    constexpr int Second = 1000;  // ms
    if (IsThere()) {
        // Both count information, warning and error from 1.
        m_trayIcon->showMessage(title, text, static_cast<QSystemTrayIcon::MessageIcon>(icon),
                                timeValue * Second);
    }
}

void QtTray::Activate(QSystemTrayIcon::ActivationReason reason) {
    const bool isOpening = reason == QSystemTrayIcon::DoubleClick ||
                           (reason == QSystemTrayIcon::Trigger && m_kind == Kind::Host);
    if (isOpening && m_events.OnOpen) {
        m_events.OnOpen();
    } else if (reason == QSystemTrayIcon::Context && m_iconWindow == nullptr) {
        AskForMenu();
    }
}

void QtTray::AskForMenu() {
    // Not from within the toolkit's own handling of the event: the menu may end the program.
    QTimer::singleShot(0, this, [this] {
        const auto onMenu = m_events.OnMenu;  // the menu may end what it belongs to
        if (onMenu) {
            onMenu();
        }
    });
}

bool QtTray::eventFilter(QObject* watched, QEvent* event) {
    // The toolkit tells the press, and only of the first of two clicks; the menu belongs to each release.
    if (watched == m_iconWindow && event->type() == QEvent::MouseButtonRelease) {
        const auto* mouse = static_cast<const QMouseEvent*>(event);
        if (mouse->button() == Qt::RightButton &&
            m_iconWindow->rect().contains(mouse->position().toPoint())) {
            AskForMenu();
        }
    }
    return false;
}
