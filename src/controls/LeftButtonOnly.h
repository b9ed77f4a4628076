#pragma once

#include <QObject>

class QMenu;

/// While it lives, only the left button chooses in a menu and its submenus: what the other buttons do inside
/// them is dropped. A press outside closes the menu, whatever its button. The button that opened a menu may
/// be pressed again where the menu then lies, and must not choose what happens to be under it.
class LeftButtonOnly final : public QObject {
    Q_OBJECT
public:
    explicit LeftButtonOnly(const QMenu& menu);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    const QMenu& m_menu;
};
