#include "addressbook/GroupTabsPanel.h"

#include "addressbook/Contact.h"
#include "addressbook/ContactListPanel.h"
#include "addressbook/PhonebookHost.h"
#include "addressbook/TabMenu.h"
#include "addressbook/frmTabName.h"
#include "addressbook/mdlTabControl.h"
#include "controls/Cmenu.h"
#include "controls/ListView.h"
#include "controls/ModalDoor.h"
#include "controls/TabControl.h"
#include "controls/WaitCursor.h"
#include "controls/mdlWinAPI.h"
#include "core/Log.h"
#include "core/Product.h"
#include "core/Trap.h"
#include "platform/EventPump.h"
#include "platform/MessageBoxes.h"
#include "store/Phonebook.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCursor>

namespace {

/// The schema version from which on names are found by an alphabet key, so that there is a place for the
/// others.
constexpr qint16 AlphaKeyVersion = 2;
/// How far a name dialog stands to the left of and above the mouse, in pixels.
constexpr int DialogOffset = 20;
constexpr int PassesAfterDialog = 3;

QPoint PlaceAboveMouse() {
    const QPoint mouse = QCursor::pos() - QPoint(DialogOffset, DialogOffset);
    return {qMax(0, mouse.x()), qMax(0, mouse.y())};
}

}  // namespace

GroupTabsPanel::GroupTabsPanel(PhonebookSide& side, ContactListPanel& content, QWidget* parent)
    : QWidget(parent),
      m_side(side),
      m_tabGroup(new TabControl(TabControl::Look::Strip, this)),
      m_tabAlpha(new TabControl(TabControl::Look::Letters, this)),
      m_doubleClicks(side.Time, QApplication::doubleClickInterval()) {
    m_tabGroup->setObjectName(QStringLiteral("tabGroup"));
    m_tabGroup->setAccessibleName(tr("Groups"));
    m_tabAlpha->setObjectName(QStringLiteral("tabAlpha"));
    m_tabAlpha->setAccessibleName(tr("First letter"));
    PlaceTabs(content);
    ConnectTabs();
}

void GroupTabsPanel::PlaceTabs(ContactListPanel& content) {
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(6);
    all->addWidget(m_tabGroup);
    all->addWidget(&content, 1);
    setTabOrder(m_tabGroup, m_tabAlpha);
    content.PutBesideList(*m_tabAlpha);
}

void GroupTabsPanel::ConnectTabs() {
    connect(m_tabGroup, &TabControl::SelectionChanged, this, [this] {
        if (!m_side.IsInitialising) {
            Q_EMIT ShowGroupNeeded();
        }
    });
    connect(m_tabAlpha, &TabControl::SelectionChanged, this, &GroupTabsPanel::LetterChosen);
    connect(m_tabAlpha, &TabControl::SelectedAgain, this, &GroupTabsPanel::LetterChosenAgain);
    connect(m_tabGroup, &TabControl::LeftPressed, this, &GroupTabsPanel::LeftPressed);
    connect(m_tabGroup, &TabControl::OtherButton, this, &GroupTabsPanel::OtherButton);
    connect(m_tabGroup, &TabControl::TextDropped, this, &GroupTabsPanel::DropOnTab);
    connect(m_tabGroup, &TabControl::AllTabsRequested, this, &GroupTabsPanel::ListAllTabs);
    m_tabGroup->SetDropIn(QStringLiteral("lvContacts"), [this](int position) {
        return mdlTabControl::NumberOf(*m_tabGroup, position) >= 0;
    });
}

qint16 GroupTabsPanel::SelectedNumber() const {
    return m_tabGroup->Selected() >= 0 ? mdlTabControl::NumberOf(*m_tabGroup, m_tabGroup->Selected())
                                       : qint16(0);
}

QString GroupTabsPanel::SelectedCaption() const {
    return m_tabGroup->Selected() >= 0 ? m_tabGroup->Caption(m_tabGroup->Selected()) : QString();
}

QString GroupTabsPanel::SelectedTag() const {
    return m_tabGroup->Selected() >= 0 ? m_tabGroup->Tag(m_tabGroup->Selected()) : QString();
}

QString GroupTabsPanel::SelectedLetter() const {
    return m_tabAlpha->Selected() >= 0 ? m_tabAlpha->Caption(m_tabAlpha->Selected()) : QString();
}

void GroupTabsPanel::ShowWhatCounts() {
    m_tabAlpha->SetQuiet(SelectedCaption() != QStringLiteral("*"));
}

void GroupTabsPanel::InitAlphaTabs() {
    m_tabAlpha->RemoveAll();
    m_tabAlpha->Insert(0, QStringLiteral("*"));
    for (char16_t letter = u'A'; letter <= u'Z'; ++letter) {
        m_tabAlpha->Insert(m_tabAlpha->Count(), QString(QChar(letter)));
    }
    if (m_side.Phonebook.State.cfgVersion >= AlphaKeyVersion) {
        m_tabAlpha->Insert(m_tabAlpha->Count(), QStringLiteral("#"));
    }
    m_tabAlpha->Select(0);
}

void GroupTabsPanel::InitGroupTabs() {
    const auto log = [this](const std::exception& failure) {
        m_side.AppLog.WriteFailureBriefly(QStringLiteral("InitGrouptabs_Error : "), failure);
    };
    const auto add = [this](int position, const QString& caption, qint16 number) {
        m_tabGroup->Insert(position, caption);
        m_tabGroup->SetTag(position, Keys::GroupTag(number));
    };
    m_tabGroup->RemoveAll();
    add(0, QStringLiteral("*"), Keys::EveryoneTab);
    int index = 1;
    TrapTo([&] { mdlTabControl::LoadGroupTabs(m_side.Phonebook.State, *m_tabGroup, index); }, log);
    add(m_tabGroup->Count(), m_side.FavouriteWord(), Keys::FavouritesTab);
    if (m_side.Phonebook.State.cfgAllowPrivateGroup) {
        add(m_tabGroup->Count(), QStringLiteral("Private"), Keys::PrivateTab);
    }
    TrapTo([&] { mdlTabControl::RestoreTabOrder(*m_tabGroup, m_side.AppSettings); }, log);
}

void GroupTabsPanel::SaveTabOrder() {
    mdlTabControl::SaveTabOrder(*m_tabGroup, m_side.AppSettings);
}

void GroupTabsPanel::LetterChosen() {
    if (m_side.IsInitialising) {
        return;
    }
    if (SelectedNumber() != Keys::EveryoneTab) {
        SelectFirstGroupTab();
    }
    Q_EMIT ShowGroupNeeded();
}

void GroupTabsPanel::LetterChosenAgain() {
    // A click on the letter that was chosen before the group leads back to the address book as any other
    // letter does.
    if (SelectedNumber() != Keys::EveryoneTab) {
        LetterChosen();
    }
}

void GroupTabsPanel::SelectFirstGroupTab() {
    // Whoever calls this builds the list right afterwards.
    const QSignalBlocker oneListOnly(*m_tabGroup);
    m_tabGroup->Select(0);
}

void GroupTabsPanel::LeftPressed(const QPoint& point) {
    if (m_doubleClicks.IsDoubleClick(static_cast<float>(point.x()), static_cast<float>(point.y()))) {
        DropClickedGroup();
    }
}

void GroupTabsPanel::OtherButton(const QPoint& point) {
    m_clickedTab.reset();
    mdlWinAPI::FlushMouseMessages(*m_tabGroup, m_side.Pump);
    const int position = m_tabGroup->TabUnder(point);
    if (position >= 0) {
        m_clickedTab = TabCopy{m_tabGroup->Caption(position), m_tabGroup->Tag(position)};
        ShowTabMenu(m_tabGroup->mapToGlobal(point));
    }
}

qint16 GroupTabsPanel::ClickedNumber() const {
    qint16 number = 0;
    Trap([&] { number = m_clickedTab.has_value() ? Keys::Number(m_clickedTab->Tag) : SelectedNumber(); });
    return number;
}

bool GroupTabsPanel::IsClickedTabFixed() const {
    return !m_clickedTab.has_value() || m_clickedTab->Tag == Keys::GroupTag(Keys::EveryoneTab) ||
           m_clickedTab->Tag == Keys::GroupTag(Keys::FavouritesTab);
}

void GroupTabsPanel::ShowTabMenu(const QPoint& position) {
    if (!m_clickedTab.has_value()) {
        return;
    }
    TabMenu::Subject subject;
    subject.Number = ClickedNumber();
    subject.Caption = m_clickedTab->Caption;
    subject.Position = mdlTabControl::TabWithTag(*m_tabGroup, m_clickedTab->Tag);
    subject.TabCount = m_tabGroup->Count();
    RunTabMenuEntry(TabMenu::Build(subject).TrackPopup(m_side.Door, position));
}

void GroupTabsPanel::RunTabMenuEntry(int entry) {
    int position = m_clickedTab.has_value() ? mdlTabControl::TabWithTag(*m_tabGroup, m_clickedTab->Tag) : -1;
    switch (entry) {
        case TabMenu::AddToRecipients:
            DropClickedGroup();
            break;
        case TabMenu::Rename:
            RenameClickedGroup();
            break;
        case TabMenu::Delete:
            DeleteClickedGroup();
            break;
        case TabMenu::AddNew:
            AddNewGroup(StoredPosition, StoredPosition);
            break;
        case TabMenu::MoveUp:
            mdlTabControl::MoveTabUp(*m_tabGroup, position);
            break;
        case TabMenu::MoveDown:
            mdlTabControl::MoveTabDown(*m_tabGroup, position);
            break;
        default:
            break;
    }
}

void GroupTabsPanel::DropClickedGroup() {
    const qint16 number = ClickedNumber();
    if (number > 0 || number < Keys::PrivateTab) {
        Trap([&] { m_side.Host.DropGroupByID(number); });
    }
    Trap([&] { m_side.Host.UpdateStateDisplay(); });
}

bool GroupTabsPanel::AskForName(frmTabName& dialog, const QPoint& place) {
    dialog.move(place);
    m_side.Door.ShowModal(dialog, window());
    return !dialog.IsCanceled();
}

qint16 GroupTabsPanel::AskForNewGroup(const QPoint& place) {
    frmTabName dialog(m_side.Speaker, m_side.Time);
    const bool isNamed = AskForName(dialog, place);
    m_side.Pump.Process(PassesAfterDialog);
    return isNamed ? MakeGroup(dialog.EditValue()) : qint16(0);
}

qint16 GroupTabsPanel::MakeGroup(const QString& name) {
    qint16 id = 0;
    Trap([&] { id = mdlPhonebook::AddGroup(m_side.Phonebook, name); });
    if (id != 0) {
        const int place = m_tabGroup->Count() - 1;
        m_tabGroup->Insert(place, name);
        m_tabGroup->SetTag(place, Keys::GroupTag(id));
    }
    return id;
}

void GroupTabsPanel::AddNewGroup(int /*x*/, int /*y*/) {
    static_cast<void>(AskForNewGroup(QCursor::pos()));
}

void GroupTabsPanel::CreateGroupFromSelection(const ListView& list, bool onlySelected) {
    const QPoint place = PlaceAboveMouse();
    mdlWinAPI::FlushMouseMessages(*window(), m_side.Pump);
    const qint16 id = AskForNewGroup(place);
    if (id == 0) {
        return;
    }
    QString members;
    const QStringList keys = onlySelected ? list.SelectedKeys() : list.Rows().KeyList();
    for (const QString& key : keys) {
        if (!Keys::IsPrivate(key)) {
            members += key + QStringLiteral("\t\r\n");
        }
    }
    Trap([&] { mdlPhonebook::AddToGroup(m_side.Phonebook.State, id, members); });
}

void GroupTabsPanel::RenameClickedGroup() {
    if (IsClickedTabFixed()) {
        return;
    }
    const TabCopy tab = *m_clickedTab;
    frmTabName dialog(m_side.Speaker, m_side.Time);
    dialog.SetEditValue(tab.Caption);
    if (AskForName(dialog, PlaceAboveMouse())) {
        const int position = mdlTabControl::TabWithTag(*m_tabGroup, tab.Tag);
        if (position >= 0) {
            m_tabGroup->SetCaption(position, dialog.EditValue());
        }
        Trap([&] {
            mdlPhonebook::RenameGroup(m_side.Phonebook.State, Keys::Number(tab.Tag), dialog.EditValue());
        });
    }
    m_clickedTab.reset();
}

void GroupTabsPanel::DeleteClickedGroup() {
    if (IsClickedTabFixed()) {
        return;
    }
    // A statement that has to wait lets events run, and another tab may be clicked meanwhile.
    const TabCopy tab = *m_clickedTab;
    const QString question = QStringLiteral("DELETE the ") + tab.Caption + QStringLiteral(" Group?");
    const BoxRequest request{Product::AppTitle, question, BoxIcon::Question, BoxButtons::YesNo};
    if (m_side.Boxes.Show(request) != BoxAnswer::Yes) {
        return;
    }
    bool isDeleted = false;
    Trap([&] { isDeleted = mdlPhonebook::DeleteGroup(m_side.Phonebook.State, Keys::Number(tab.Tag)); });
    if (!isDeleted) {
        return;
    }
    const int position = mdlTabControl::TabWithTag(*m_tabGroup, tab.Tag);
    if (position >= 0) {
        const QSignalBlocker oneListOnly(*m_tabGroup);
        m_tabGroup->RemoveAt(position);
    }
    SelectFirstGroupTab();
    Q_EMIT ShowGroupNeeded();
}

void GroupTabsPanel::DropOnTab(const QString& keys, int position) {
    const qint16 number = position >= 0 ? mdlTabControl::NumberOf(*m_tabGroup, position) : qint16(-1);
    if (number < 0) {
        return;
    }
    {
        const WaitCursor wait(*window());
        window()->repaint();
        Trap([&] { mdlPhonebook::AddToGroup(m_side.Phonebook.State, number, keys); });
    }
    m_side.Pump.Process(1);
}

void GroupTabsPanel::ListAllTabs(const QPoint& position) {
    Cmenu menu;
    for (int tab = 0; tab < m_tabGroup->Count(); ++tab) {
        menu.AddName(tab + 1, m_tabGroup->Caption(tab), tab == m_tabGroup->Selected());
    }
    m_tabGroup->Select(menu.TrackPopup(m_side.Door, position) - 1);
}
