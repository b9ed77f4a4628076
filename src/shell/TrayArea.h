#pragma once

#include <QIcon>
#include <QMenu>
#include <QObject>
#include <QPoint>
#include <QRect>

#include <functional>
#include <memory>

class CIconFixer;
class QWidget;
class TrayBalloon;
struct Machine;

/// What the tray asks of the main window.
struct TrayWays {
    std::function<void()> ForceForeground;
    std::function<void()> PressExit;
};

/// The main window and the notification area: hides the window there and brings it back, the icon with its
/// menu, and the window's own icons. Without an area the window is minimised instead, which the log is told
/// once, and counts as hidden until somebody brings it back.
class TrayArea final : public QObject {
    Q_OBJECT
public:
    TrayArea(QWidget& form, const Machine& machine, TrayWays ways);
    ~TrayArea() override;

    /// The icon's tip.
    void SetText();
    /// The window's icons, the picture of the tray's icon, and the icon itself.
    void InitTrayIcon();
    void RestoreIcons();
    /// Takes the icon out of the area for good. From then on the window is neither hidden nor shown here: its
    /// menu may still be open.
    void Close();

    /// Hides the window, or brings it back to the front.
    void ToTray(bool hide);
    [[nodiscard]] bool IsInTray() const { return m_isInTray; }
    /// The icon's menu, until an entry is chosen: for the right button, and for a host that asks for it.
    void ShowMenu();
    /// The tray's own way to tell something.
    [[nodiscard]] TrayBalloon* Balloon() const;
    /// Where on the screen the icon is; empty where that is not known.
    [[nodiscard]] QRect Place() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Hide();
    void TellOnceThatThereIsNone();
    void Restore();
    /// Where the window is when it is shown next.
    void AskForPlace();
    void SetInTray(bool on);
    /// The area has gone while the window may be hidden in it.
    void ComeBackFromLostTray();
    void LoadPicture();

    QWidget& m_form;
    const Machine& m_machine;
    TrayWays m_ways;
    /// For desktops that draw the menu themselves.
    QMenu m_hostMenu;
    QAction* m_hostShow;
    std::unique_ptr<CIconFixer> m_icons;
    QIcon m_oldLarge;
    QIcon m_oldSmall;
    QRect m_frame;     // where it was when it was hidden
    QPoint m_inFrame;  // its contents there
    bool m_isInTray = false;
    bool m_isMenuOpen = false;
    bool m_isClosed = false;
    bool m_isPictureDrawn = false;
    bool m_hasTold = false;
};
