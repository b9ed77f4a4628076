#include "shell/TrayArea.h"

#include "app/Machine.h"
#include "controls/CIconFixer.h"
#include "controls/Cmenu.h"
#include "controls/Icons.h"
#include "controls/mdlWinAPI.h"
#include "core/Log.h"
#include "core/Product.h"
#include "core/Trap.h"
#include "platform/SuppliedFiles.h"
#include "platform_ui/Tray.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScopedValueRollback>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <utility>

namespace {

constexpr int ShowEntry = 1;
constexpr int CloseEntry = 2;

QString ShowText() {
    return QStringLiteral("Show ") + Product::AppTitle;
}

QString CloseText() {
    return QStringLiteral("Close ") + Product::AppTitle;
}

/// The position of a frame; on the first screen, as a whole if there is room, if its upper edge can be
/// reached on none: a screen may have gone.
QPoint PlaceOnScreens(const QRect& frame) {
    constexpr int EdgeHeight = 24;
    constexpr QSize Grip(48, 8);  // what a hand needs of it; pixels
    const QRect edge(frame.left(), frame.top(), frame.width(), EdgeHeight);
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        const QSize seen = (edge & screen->availableGeometry()).size();
        if (seen.expandedTo(Grip) == seen) {
            return frame.topLeft();
        }
    }
    const QScreen* const first = QGuiApplication::primaryScreen();
    const QRect room = first != nullptr ? first->availableGeometry() : frame;
    return {qMax(room.left(), qMin(frame.left(), room.right() + 1 - frame.width())),
            qMax(room.top(), qMin(frame.top(), room.bottom() + 1 - frame.height()))};
}

}  // namespace

TrayArea::TrayArea(QWidget& form, const Machine& machine, TrayWays ways)
    : QObject(&form), m_form(form), m_machine(machine), m_ways(std::move(ways)) {
    m_hostShow = m_hostMenu.addAction(ShowText(), this, [this] { ToTray(false); });
    m_hostShow->setVisible(false);
    m_hostMenu.addAction(CloseText(), this, [this] { m_ways.PressExit(); });
    m_form.installEventFilter(this);
}

TrayArea::~TrayArea() {
    Close();
}

void TrayArea::SetText() {
    m_machine.NotificationArea.SetToolTip(Product::AppTitle);
}

void TrayArea::InitTrayIcon() {
    const auto findFile = [this](const QString& name) {
        return FindSuppliedFile(m_machine.Places, m_machine.Files, name);
    };
    m_icons = std::make_unique<CIconFixer>(IconWidths::Of(m_form), findFile);
    Trap([this] { m_icons->SetIcons(m_form, true, true, m_oldLarge, m_oldSmall); });
    Trap([this] { m_icons->SetAppIcons(m_form, true, true); });
    Trap([this] { LoadPicture(); });
    m_machine.NotificationArea.SetHostMenu(&m_hostMenu);
    m_machine.NotificationArea.Open({[this] {
                                         if (IsInTray()) {
                                             ToTray(false);
                                         }
                                     },
                                     [this] { ShowMenu(); }, [this] { ComeBackFromLostTray(); }});
}

void TrayArea::LoadPicture() {
    const QString path =
        FindSuppliedFile(m_machine.Places, m_machine.Files, QStringLiteral("Icons/larkspantray.ico"));
    const QIcon picture = path.isEmpty() ? QIcon() : QIcon(path);
    m_isPictureDrawn = picture.availableSizes().isEmpty();
    m_machine.NotificationArea.SetIcon(m_isPictureDrawn ? Icons::Get(QStringLiteral("larkspan-symbolic"))
                                                        : picture);
}

void TrayArea::RestoreIcons() {
    if (m_icons != nullptr) {
        CIconFixer::RestoreIcons(m_form, m_oldLarge, m_oldSmall);
        m_icons = nullptr;
    }
}

void TrayArea::Close() {
    m_isClosed = true;
    m_machine.NotificationArea.Close();
    m_machine.NotificationArea.SetHostMenu(nullptr);
}

void TrayArea::ToTray(bool hide) {
    if (m_isClosed) {
        return;
    }
    if (hide) {
        Hide();
    } else {
        Restore();
    }
    SetInTray(hide);
}

void TrayArea::Hide() {
    if (!m_machine.NotificationArea.IsThere()) {
        TellOnceThatThereIsNone();
        m_form.showMinimized();
    } else if (m_form.isVisible()) {
        m_frame = m_form.frameGeometry();
        m_inFrame = m_form.geometry().topLeft() - m_frame.topLeft();
        m_form.hide();
    }
}

void TrayArea::TellOnceThatThereIsNone() {
    if (!std::exchange(m_hasTold, true)) {
        m_machine.AppLog.Write(QStringLiteral("No tray is there: the window is minimised instead"));
    }
}

void TrayArea::Restore() {
    if (!m_form.isVisible()) {
        AskForPlace();
        m_form.show();
    }
    m_ways.ForceForeground();
}

void TrayArea::AskForPlace() {
    QWindow* window = m_form.windowHandle();
    if (window != nullptr && !m_form.isMaximized() && !m_form.isFullScreen()) {
        const QPoint place = PlaceOnScreens(m_frame);
        m_form.move(place);
        // Without this a window manager looks for a new place: a widget that believes to be there already
        // asks for nothing.
        window->setPosition(place + m_inFrame);
    }
}

void TrayArea::SetInTray(bool on) {
    m_isInTray = on;
    m_hostShow->setVisible(on);
    m_machine.NotificationArea.SetNeeded(on && !m_form.isVisible());
}

void TrayArea::ComeBackFromLostTray() {
    if (m_isInTray && !m_form.isVisible()) {
        AskForPlace();
        m_form.showMinimized();
        SetInTray(true);
    }
}

void TrayArea::ShowMenu() {
    if (m_isMenuOpen) {
        return;
    }
    const QScopedValueRollback<bool> open(m_isMenuOpen, true);
    mdlWinAPI::FlushMouseMessages(m_form, m_machine.Pump);
    Cmenu menu;
    if (IsInTray()) {
        menu.AddItem(ShowEntry, ShowText());
    }
    menu.AddItem(CloseEntry, CloseText());
    switch (menu.TrackPopup(m_machine.Door, &m_form)) {
        case ShowEntry:
            ToTray(false);
            break;
        case CloseEntry:
            m_ways.PressExit();
            break;
        default:
            break;
    }
}

TrayBalloon* TrayArea::Balloon() const {
    return &m_machine.NotificationArea;
}

QRect TrayArea::Place() const {
    return m_machine.NotificationArea.Place();
}

bool TrayArea::eventFilter(QObject* watched, QEvent* event) {
    if (watched != &m_form) {
        return false;
    }
    // Minimised for want of an area, and brought back by the task bar.
    if (event->type() == QEvent::WindowStateChange && m_isInTray && m_form.isVisible() &&
        !m_form.isMinimized()) {
        SetInTray(false);
    }
    if (event->type() == QEvent::ApplicationPaletteChange && m_isPictureDrawn) {
        LoadPicture();
    }
    return false;
}
