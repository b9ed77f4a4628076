#pragma once

#include <QString>

/// The icon of a balloon, with the number that it has for the tray.
enum class BalloonIcon { Information = 1, Warning = 2, Error = 3 };

/// The tray's own way to tell something.
class TrayBalloon {
public:
    virtual ~TrayBalloon() = default;
    /// `timeValue` is how long, in seconds; a desktop may show it longer or shorter.
    virtual void ShowBalloonTip(int timeValue, const QString& title, const QString& text,
                                BalloonIcon icon) = 0;
};

/// The desktop's own notifications. Where there is nobody who shows them, nothing happens.
class DesktopNotices {
public:
    virtual ~DesktopNotices() = default;
    virtual void Show(const QString& title, const QString& text, BalloonIcon icon) = 0;
};
