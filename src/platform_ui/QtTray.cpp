#include "platform_ui/QtTray.h"

#include <QCoreApplication>
#include <QGuiApplication>
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
        m_trayIcon->setVisible(isShown);
    }
    m_watch.SetPolling(!isShown || m_isNeeded);
    if (wasShown && !isShown && m_events.OnLost) {
        m_events.OnLost();
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
    } else if (reason == QSystemTrayIcon::Context && m_events.OnMenu) {
        if (QGuiApplication::mouseButtons().testFlag(Qt::RightButton)) {
            QCoreApplication::instance()->installEventFilter(this);
        } else {
            m_events.OnMenu();
        }
    }
}

bool QtTray::eventFilter(QObject*, QEvent* event) {
    // The toolkit tells the press; the menu belongs to the release.
    if (event->type() == QEvent::MouseButtonRelease &&
        static_cast<QMouseEvent*>(event)->button() == Qt::RightButton) {
        QCoreApplication::instance()->removeEventFilter(this);
        QTimer::singleShot(0, this, [this] {
            if (m_events.OnMenu) {
                m_events.OnMenu();
            }
        });
    }
    return false;
}
