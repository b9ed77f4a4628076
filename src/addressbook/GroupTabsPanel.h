#pragma once

#include "addressbook/PhonebookSide.h"
#include "controls/CDoubleClickTracker.h"

#include <QPoint>
#include <QStringList>
#include <QWidget>

#include <optional>

class frmTabName;
class TabControl;

/// The two rows of tabs, and what can be done to a group: tabGroup above chooses what the list holds, the
/// letters of tabAlpha beside it narrow the whole address book to one initial.
class GroupTabsPanel : public QWidget {
    Q_OBJECT
public:
    /// AddNewGroup takes the position of the last click when both arguments are this.
    static constexpr int StoredPosition = -1000;

    /// `content` is shown beside the letters, below the group tabs.
    GroupTabsPanel(PhonebookSide& side, QWidget* content, QWidget* parent = nullptr);

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

    void InitAlphaTabs();
    /// A step that fails is logged as "InitGrouptabs_Error : ", and the tabs that could be made are there.
    void InitGroupTabs();
    void SaveTabOrder();

    void ShowTabMenu(const QPoint& position);
    /// Asks for a name at the mouse and makes a group; its tab comes in front of the last one.
    void AddNewGroup(int x, int y);
    void RenameClickedGroup();
    void DeleteClickedGroup();
    /// Adds the group of the tab that was clicked last with another button than the left one, else the
    /// selected one, to the recipients.
    void DropClickedGroup();
    /// Asks for a name and makes a group of these contacts; private ones are left out.
    void CreateGroupFromKeys(const QStringList& keys);

Q_SIGNALS:
    /// The list has to be built anew for the selected tabs.
    void ShowGroupNeeded();

private:
    /// The tab under the last event of another button than the left one, as it was then.
    struct TabCopy {
        QString Caption;
        QString Tag;
    };

    void PlaceTabs(QWidget* content);
    void ConnectTabs();
    void LetterChosen();
    void LetterChosenAgain();
    void SelectFirstGroupTab();
    void LeftPressed(const QPoint& point);
    void OtherButton(const QPoint& point);
    void DropOnTab(const QString& keys, int position);
    void ListAllTabs(const QPoint& position);
    void RunTabMenuEntry(int entry);
    [[nodiscard]] bool AskForName(frmTabName& dialog, const QPoint& place);
    /// The new group's number, 0 if the store refused.
    [[nodiscard]] qint16 MakeGroup(const QString& name);
    [[nodiscard]] qint16 ClickedNumber() const;
    [[nodiscard]] bool IsClickedTabFixed() const;

    PhonebookSide& m_side;
    TabControl* m_tabGroup;
    TabControl* m_tabAlpha;
    CDoubleClickTracker m_doubleClicks;
    std::optional<TabCopy> m_clickedTab;
    QPoint m_clickedPoint;
};
