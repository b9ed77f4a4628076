#include "GroupTabsOffice.h"

#include <QApplication>

namespace {

TEST_F(GroupTabs, ARightClickOnEveryoneGivesTheOneEntryAddNewGroup) {
    ChooseOn(QStringLiteral("*"), QString());
    EXPECT_EQ(Door.Menus, QList<QStringList>({{AddNewGroup}}));
}

TEST_F(GroupTabs, ARightClickOnAGroupOffersToAddRenameAndDeleteIt) {
    ChooseOn(Drivers, QString());
    EXPECT_EQ(Door.Menus.last(),
              QStringList({QStringLiteral("Add 'Drivers' Group To Recipients"),
                           QStringLiteral("Rename Group 'Drivers'"), QStringLiteral("Delete Group 'Drivers'"),
                           QStringLiteral("-"), AddNewGroup}));
    EXPECT_EQ(tabGroup().Selected(), 0) << "a right click selects nothing";
    EXPECT_TRUE(Host.DroppedGroups.isEmpty()) << "a dismissed menu does nothing";
}

TEST_F(GroupTabs, ARightClickOnThePrivateTabGivesItsEntriesGreyedUntilPrivateContactsAreThere) {
    ChooseOn(QStringLiteral("Private"), QString());
    EXPECT_EQ(Door.Menus.last(),
              QStringList({QStringLiteral("(Add 'Private' Group To Recipients)"),
                           QStringLiteral("(Edit Private Contacts)"), QStringLiteral("-"), AddNewGroup}));
}

TEST_F(GroupTabs, TheMenuOpensAtTheMouse) {
    ChooseOn(Kitchen, QString());
    EXPECT_EQ(Door.MenuPosition, tabGroup().mapToGlobal(tabGroup().TabRect(TabNamed(Kitchen)).center()));
}

TEST_F(GroupTabs, ClicksThatAreWaitingWhenTheMenuOpensAreDropped) {
    Office.Pump.OnProcess = [](int) { QCoreApplication::sendPostedEvents(); };
    PostClick(tabGroup(), tabGroup().TabRect(TabNamed(Kitchen)).center());
    PostClick(tabGroup(), tabGroup().TabRect(TabNamed(Kitchen)).center());
    ChooseOn(Drivers, QString());
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(tabGroup().Selected(), 0);
    EXPECT_TRUE(Host.DroppedGroups.isEmpty());
}

TEST_F(GroupTabs, ARightClickBesideTheTabsOpensNoMenu) {
    QTest::mouseClick(&tabGroup(), Qt::RightButton, Qt::NoModifier, tabGroup().rect().topRight());
    EXPECT_TRUE(Door.Menus.isEmpty());
}

TEST_F(GroupTabs, TheMiddleButtonOpensTheMenuToo) {
    Door.ExpectMenu(QString());
    ClickTab(Drivers, Qt::MiddleButton);
    EXPECT_EQ(Door.Menus.size(), 1);
}

TEST_F(GroupTabs, TheMenuAddsTheClickedGroupToTheRecipients) {
    ChooseOn(Kitchen, QStringLiteral("Add 'Kitchen' Group To Recipients"));
    EXPECT_EQ(Host.DroppedGroups, QList<qint32>({m_kitchen}));
    EXPECT_EQ(Host.StateUpdates, 1);
}

TEST_F(GroupTabs, ADoubleClickAddsTheGroupToTheRecipients) {
    DoubleClickTab(Drivers);
    EXPECT_EQ(Host.DroppedGroups, QList<qint32>({m_drivers}));
    EXPECT_EQ(Host.StateUpdates, 1);
}

TEST_F(GroupTabs, TwoSlowClicksAddNothing) {
    ClickTab(Drivers);
    ClickTab(Drivers);
    EXPECT_TRUE(Host.DroppedGroups.isEmpty());
}

TEST_F(GroupTabs, ADoubleClickOnEveryoneAddsNothingButRefreshesTheDisplay) {
    DoubleClickTab(QStringLiteral("*"));
    EXPECT_TRUE(Host.DroppedGroups.isEmpty());
    EXPECT_EQ(Host.StateUpdates, 1);
}

TEST_F(GroupTabs, ADoubleClickOnFavouritesOrPrivateAddsNoGroupOfTheAddressBook) {
    DoubleClickTab(Favourite);
    DoubleClickTab(QStringLiteral("Private"));
    EXPECT_TRUE(Host.DroppedGroups.isEmpty());
    EXPECT_EQ(Host.StateUpdates, 2);
}

TEST_F(GroupTabs, AfterARightClickALaterDoubleClickActsOnThatEarlierTab) {
    ChooseOn(Kitchen, QString());
    DoubleClickTab(Drivers);
    EXPECT_EQ(Host.DroppedGroups, QList<qint32>({m_kitchen}));
}

TEST_F(GroupTabs, TheClickedTabIsRememberedBehindADeletionAndBehindOneThatWasGivenUp) {
    for (const BoxAnswer answer : {BoxAnswer::No, BoxAnswer::Yes}) {
        Host.DroppedGroups.clear();
        Office.Boxes.Expect(answer);
        ChooseOn(Drivers, QStringLiteral("Delete Group 'Drivers'"));
        DoubleClickTab(Kitchen);
        EXPECT_EQ(Host.DroppedGroups, QList<qint32>({m_drivers}));
    }
}

TEST_F(GroupTabs, ARightClickBesideTheTabsForgetsTheClickedTab) {
    ChooseOn(Kitchen, QString());
    QTest::mouseClick(&tabGroup(), Qt::RightButton, Qt::NoModifier, tabGroup().rect().topRight());
    DoubleClickTab(Drivers);
    EXPECT_EQ(Host.DroppedGroups, QList<qint32>({m_drivers}));
}

TEST_F(GroupTabs, AGroupTabShowsItsMembers) {
    ClickTab(Drivers);
    EXPECT_EQ(Names(), QStringList({QStringLiteral("Ahern, Aoife"), QStringLiteral("Byrne, Declan")}));
}

TEST_F(GroupTabs, WhileAGroupIsOnShowTheLettersHaveNoEffectAndLookSo) {
    const QImage counting = tabAlpha().grab().toImage();
    ClickTab(Drivers);
    EXPECT_NE(tabAlpha().grab().toImage(), counting);
    ClickTab(QStringLiteral("*"));
    EXPECT_EQ(tabAlpha().grab().toImage(), counting);
}

TEST_F(GroupTabs, ALetterChosenWhileAGroupIsOnShowReturnsToTheAddressBook) {
    ClickTab(Drivers);
    ClickLetter(QStringLiteral("C"));
    EXPECT_EQ(tabGroup().Selected(), 0);
    EXPECT_EQ(Names(), QStringList(QStringLiteral("Costa, Joao")));
}

TEST_F(GroupTabs, TheLetterThatWasChosenBeforeReturnsToTheAddressBookToo) {
    ClickLetter(QStringLiteral("C"));
    ClickTab(Drivers);
    ClickLetter(QStringLiteral("C"));
    EXPECT_EQ(tabGroup().Selected(), 0);
    EXPECT_EQ(Names(), QStringList(QStringLiteral("Costa, Joao")));
}

TEST_F(GroupTabs, ADeletedGroupLosesItsTabAndEveryoneIsShown) {
    ClickTab(Kitchen);
    Office.Boxes.Expect(BoxAnswer::Yes);
    ChooseOn(Drivers, QStringLiteral("Delete Group 'Drivers'"));
    EXPECT_EQ(Office.Boxes.Shown.last(),
              (BoxRequest{QStringLiteral("Larkspan Messenger"), QStringLiteral("DELETE the Drivers Group?"),
                          BoxIcon::Question, BoxButtons::YesNo}));
    EXPECT_EQ(TabCaptions(),
              QStringList({QStringLiteral("*"), Kitchen, Favourite, QStringLiteral("Private")}));
    EXPECT_EQ(StoredNames(), QStringList(Kitchen));
    EXPECT_EQ(tabGroup().Selected(), 0);
    EXPECT_EQ(Names().size(), 3);
    EXPECT_EQ(Office.ContactRows().size(), 3);
}

TEST_F(GroupTabs, NoKeepsTheGroup) {
    Office.Boxes.Expect(BoxAnswer::No);
    ChooseOn(Drivers, QStringLiteral("Delete Group 'Drivers'"));
    EXPECT_EQ(StoredNames(), QStringList({Drivers, Kitchen}));
    EXPECT_TRUE(TabCaptions().contains(Drivers));
}

TEST_F(GroupTabs, AGroupThatTheStoreDoesNotDeleteKeepsItsTab) {
    Office.ExecuteOnPhonebook(QStringLiteral("DELETE FROM ContactGroup WHERE grpID = %1").arg(m_drivers));
    Office.Boxes.Expect(BoxAnswer::Yes);
    ChooseOn(Drivers, QStringLiteral("Delete Group 'Drivers'"));
    EXPECT_TRUE(TabCaptions().contains(Drivers));
}

TEST_F(GroupTabs, ContactsDroppedOnAGroupBecomeItsMembers) {
    DropOn(Kitchen, KeyOf(m_byrne) + QStringLiteral("\r\n") + QStringLiteral("P1\r\n") + KeyOf(m_costa) +
                        QStringLiteral("\r\n"));
    EXPECT_EQ(MembersOf(m_kitchen), QList<int>({m_byrne, m_costa}));
    EXPECT_EQ(Office.Pump.Calls, QList<int>({1}));
}

TEST_F(GroupTabs, OnlyGroupsTakeContactsAndOnlyOutOfTheContactList) {
    for (int tab = 0; tab < tabGroup().Count(); ++tab) {
        const bool isGroup = tab == TabNamed(Drivers) || tab == TabNamed(Kitchen);
        EXPECT_EQ(tabGroup().TakesText(QStringLiteral("lvContacts"), tab), isGroup) << tab;
        EXPECT_FALSE(tabGroup().TakesText(QStringLiteral("lvRecipients"), tab)) << tab;
        EXPECT_FALSE(tabGroup().TakesText(QString(), tab)) << tab << ": another program";
    }
}

TEST_F(GroupTabs, ADropOnTheFavouritesTabDoesNothing) {
    // A table that takes whatever is written to it.
    Office.ExecuteOnPhonebook(QStringLiteral("DROP TABLE GroupMember"));
    Office.ExecuteOnPhonebook(QStringLiteral("CREATE TABLE GroupMember (grpID, cntID)"));
    const auto before = Office.MemberRows();
    for (const QString& tab : {Favourite, QStringLiteral("*"), QStringLiteral("Private")}) {
        DropOn(tab, KeyOf(m_costa) + QStringLiteral("\r\n"));
    }
    EXPECT_EQ(Office.MemberRows(), before);
    EXPECT_TRUE(Office.Pump.Calls.isEmpty());
    DropOn(Kitchen, KeyOf(m_costa) + QStringLiteral("\r\n"));
    EXPECT_EQ(Office.MemberRows().size(), before.size() + 1);
}

TEST_F(GroupTabs, ADropBesideTheTabsDoesNothing) {
    const auto before = Office.MemberRows();
    DropOn(QString(), KeyOf(m_costa) + QStringLiteral("\r\n"));
    EXPECT_EQ(Office.MemberRows(), before);
}

TEST_F(GroupTabs, TheListOfAllTabsSelectsOne) {
    Door.ExpectMenu(Kitchen);
    Q_EMIT tabGroup().AllTabsRequested(QPoint());
    EXPECT_EQ(tabGroup().Caption(tabGroup().Selected()), Kitchen);
    EXPECT_EQ(Door.Menus.last().size(), 5);
    Door.ExpectMenu(QString());
    Q_EMIT tabGroup().AllTabsRequested(QPoint());
    EXPECT_EQ(tabGroup().Caption(tabGroup().Selected()), Kitchen);
}

}  // namespace
