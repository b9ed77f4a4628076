#pragma once

#include "platform/Notices.h"

#include <QIcon>
#include <QRect>
#include <QString>

#include <functional>

class QMenu;

/// What the icon in the notification area tells its owner.
struct TrayEvents {
    /// A double click; where the desktop knows only one kind of click, that one.
    std::function<void()> OnOpen;
    /// The right button went up on it.
    std::function<void()> OnMenu;
    /// The notification area went away, and the icon with it.
    std::function<void()> OnLost;
};

/// The program's icon in the desktop's notification area. There may be no such area, it may come late, and it
/// may go: the icon stands in it whenever it is there.
class Tray : public TrayBalloon {
public:
    /// From now on the icon is shown as soon as there is a place for it.
    virtual void Open(TrayEvents events) = 0;
    /// Takes the icon away; nothing is told any more.
    virtual void Close() = 0;
    /// True while the icon is shown, so that a user can reach it.
    [[nodiscard]] virtual bool IsThere() const = 0;
    /// Told while a window depends on the icon: the end of the area is then noticed within 2 s, and
    /// within 4 s that of one that hangs.
    virtual void SetNeeded(bool on) = 0;
    virtual void SetIcon(const QIcon& icon) = 0;
    virtual void SetToolTip(const QString& text) = 0;
    /// The menu of those desktops that draw it themselves; it outlives the icon. The others ask by OnMenu.
    virtual void SetHostMenu(QMenu* menu) = 0;
    /// Where on the screen the icon is; empty where that is not known.
    [[nodiscard]] virtual QRect Place() const = 0;
};
