#pragma once

#include "addressbook/PhonebookSide.h"
#include "controls/CDoubleClickTracker.h"

#include <QWidget>

#include <optional>

class ContactListPanel;
class frmTabName;
class ListView;
class QPoint;
class TabControl;

/// The two rows of tabs, and what can be done to a group: tabGroup above chooses what the list holds, the
/// letters of tabAlpha beside it narrow the whole address book to one initial.
class GroupTabsPanel : public QWidget {
    Q_OBJECT
public:
    /// What the menu of a tab hands to AddNewGroup for both coordinates.
    static constexpr int StoredPosition = -1000;

    /// `content` is shown below the group tabs, and the letters stand beside its list.
    GroupTabsPanel(PhonebookSide& side, ContactListPanel& content, QWidget* parent = nullptr);

    [[nodiscard]] TabControl& tabGroup() { return *m_tabGroup; }
    [[nodiscard]] TabControl& tabAlpha() { return *m_tabAlpha; }
    [[nodiscard]] const TabControl& tabGroup() const { return *m_tabGroup; }
    [[nodiscard]] const TabControl& tabAlpha() const { return *m_tabAlpha; }
    /// Number and caption of the selected group tab; 0 and empty when there is none.
    [[nodiscard]] qint16 SelectedNumber() const;
    [[nodiscard]] QString SelectedCaption() const;
    [[nodiscard]] QString SelectedTag() const;
    [[nodiscard]] QString SelectedLetter() const;

    /// The letters count only while the tab "*" is selected, and look so.
    void ShowWhatCounts();

    /// As PhonebookArea::InitAlphaTabs.
    void InitAlphaTabs();
    /// A step that fails is logged as "InitGrouptabs_Error : ", and the tabs that could be made are there.
    void InitGroupTabs();
    /// Writes the order of the group tabs to the settings.
    void SaveTabOrder();

    /// The menu of the tab that was clicked, at a global position; runs the entry chosen.
    void ShowTabMenu(const QPoint& position);
    /// Asks for a name and makes a group; its tab comes in front of the last one. The arguments tell where
    /// the request came from and move nothing: the dialog stands where the mouse is by now.
    void AddNewGroup(int x, int y);
    /// Both do nothing without a clicked tab and for everyone and favourites. A rename forgets the clicked
    /// tab, also when it is given up.
    void RenameClickedGroup();
    void DeleteClickedGroup();
    /// Adds the group of the tab that was clicked last with another button than the left one, else the
    /// selected one, to the recipients.
    void DropClickedGroup();
    /// Asks for a name and makes a group of the rows of `list`, or of the selected ones alone; private
    /// contacts are left out.
    void CreateGroupFromSelection(const ListView& list, bool onlySelected);

Q_SIGNALS:
    /// The list has to be built anew for the selected tabs.
    void ShowGroupNeeded();

private:
    /// Caption and tag of a tab as they were when it was clicked.
    struct TabCopy {
        QString Caption;
        QString Tag;
    };

    void PlaceTabs(ContactListPanel& content);
    void ConnectTabs();
    void LetterChosen();
    void LetterChosenAgain();
    void SelectFirstGroupTab();
    void LeftPressed(const QPoint& point);
    void OtherButton(const QPoint& point);
    void DropOnTab(const QString& keys, int position);
    void ListAllTabs(const QPoint& position);
    void RunTabMenuEntry(int entry);
    /// False if the user gave up.
    [[nodiscard]] bool AskForName(frmTabName& dialog, const QPoint& place);
    /// Asks for a name and makes the group with its tab. The new group's number, 0 if there is none.
    [[nodiscard]] qint16 AskForNewGroup(const QPoint& place);
    /// The new group's number, 0 if the store refused.
    [[nodiscard]] qint16 MakeGroup(const QString& name);
    [[nodiscard]] qint16 ClickedNumber() const;
    [[nodiscard]] bool IsClickedTabFixed() const;

    PhonebookSide& m_side;
    TabControl* m_tabGroup;
    TabControl* m_tabAlpha;
    CDoubleClickTracker m_doubleClicks;
    /// The tab under the last event of another button than the left one; none if there was no tab.
    std::optional<TabCopy> m_clickedTab;
};
