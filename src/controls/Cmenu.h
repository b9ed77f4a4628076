#pragma once

#include <QMenu>
#include <QPoint>
#include <QString>
#include <QStringList>

#include <memory>

class ModalDoor;

/// A popup menu built at run time out of numbered entries.
class Cmenu {
public:
    explicit Cmenu(const QString& caption = QString());

    /// A text entry; the text "-" is a separator.
    void AddItem(int id, const QString& text, bool isDefault = false, bool isGrayed = false,
                 bool isChecked = false);
    /// A submenu; the entries of `menu` answer with their own numbers. Takes the menu over.
    void AddItem(Cmenu menu);
    /// Shows the menu at a global position. The number of the entry chosen, 0 for none.
    [[nodiscard]] int TrackPopup(ModalDoor& door, const QPoint& position) const;
    /// For tests: the entries' texts in order, submenus as "text > entry", separators as "-".
    [[nodiscard]] QStringList Texts() const;

private:
    std::unique_ptr<QMenu> m_menu;
};
