#pragma once

#include <QIcon>
#include <QString>

#include <functional>

class QWidget;

/// How wide the desktop wants a window's two icons, in pixels of the screen.
struct IconWidths {
    int Large = 32;
    int Small = 16;

    /// By the widget's style and the scale of its screen.
    [[nodiscard]] static IconWidths Of(const QWidget& widget);
};

/// The window's icons, in the sizes that the desktop asks for. Loaded once; a missing file gives a null icon,
/// and setting it leaves the window as it is.
class CIconFixer {
public:
    /// `findFile` gives the path of a file "Icons/NAME.ico" that comes with the program, empty if there is
    /// none.
    CIconFixer(const IconWidths& widths, const std::function<QString(const QString& name)>& findFile);

    [[nodiscard]] const QIcon& LargeIcon() const { return m_largeIcon; }
    [[nodiscard]] const QIcon& SmallIcon() const { return m_smallIcon; }

    /// Gives the window the large icon, the small one, or both. What it had before is put into `oldLarge` and
    /// `oldSmall`; one that is not set leaves its place as it is.
    void SetIcons(QWidget& window, bool setLarge, bool setSmall, QIcon& oldLarge, QIcon& oldSmall) const;
    /// The same for the window at the top of the window's owners, if it has one.
    void SetAppIcons(QWidget& window, bool setLarge, bool setSmall) const;
    static void RestoreIcons(QWidget& window, const QIcon& oldLarge, const QIcon& oldSmall);

private:
    QIcon m_largeIcon;
    QIcon m_smallIcon;
};
