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
    static constexpr int AtPointer = -1;
    static constexpr int ColumnBreak = 32;  // a bit of an entry's flag

    explicit Cmenu(const QString& caption = QString());

    /// A text entry; the text "-" is a separator, of which nothing else counts. With ColumnBreak as its flag
    /// it begins a new section: menus have one column here, so a separator stands before it. A disabled entry
    /// cannot be chosen, and looks like a grayed one.
    void AddItem(int id, const QString& text, bool isDefault = false, int flag = 0, bool isGrayed = false,
                 bool isDisabled = false, bool isChecked = false);
    /// An entry that users have named: "-" is a text like any other.
    void AddName(int id, const QString& name, bool isChecked = false);
    /// A submenu under its caption; the entries of `menu` answer with their own numbers. Takes the menu over.
    void AddItem(Cmenu menu, bool isDefault = false, bool isGrayed = false, bool isDisabled = false);
    /// Shows the menu at a global position. The number of the entry chosen, 0 for none.
    [[nodiscard]] int TrackPopup(ModalDoor& door, const QPoint& position) const;
    /// Shows the menu for a window of this program; without one, for the first top-level window that there
    /// is. At the lower left corner of `anchor`; without one at `x` and `y`, each of which is the pointer's
    /// where it is -1. The number of the entry chosen, 0 for none. Throws NumberedFailure if the program has
    /// no window.
    [[nodiscard]] int TrackPopup(ModalDoor& door, const QWidget* window, int x = AtPointer, int y = AtPointer,
                                 const QWidget* anchor = nullptr) const;
    /// For tests: the entries' texts in order, submenus as "text > entry", separators as "-".
    [[nodiscard]] QStringList Texts() const;

private:
    QAction* AddText(int id, const QString& text, bool isChecked);
    void SetState(QAction& entry, bool isDefault, bool isGrayed, bool isDisabled);

    std::unique_ptr<QMenu> m_menu;
};
