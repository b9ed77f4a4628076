#include "PhonebookOffice.h"

#include <QApplication>
#include <QCursor>

namespace {

const QString Drivers = QStringLiteral("Drivers");
const QString Kitchen = QStringLiteral("Kitchen");
const QString Favourite = QStringLiteral("Favourite");
const QString AddNewGroup = QStringLiteral("Add New Group");

/// Three contacts, of whom the first two are drivers; a group Kitchen without members; the private tab is
/// allowed.
class GroupTabs : public PhonebookOffice {
protected:
    GroupTabs() {
        m_ahern =
            Office.AddContact(QStringLiteral("Ahern"), QStringLiteral("Aoife"), QStringLiteral("+35311"));
        m_byrne =
            Office.AddContact(QStringLiteral("Byrne"), QStringLiteral("Declan"), QStringLiteral("+35322"));
        m_costa =
            Office.AddContact(QStringLiteral("Costa"), QStringLiteral("Joao"), QStringLiteral("+35333"));
        m_drivers = Office.AddGroup(Drivers, {m_ahern, m_byrne});
        m_kitchen = Office.AddGroup(Kitchen);
        Office.PhonebookValues.cfgAllowPrivateGroup = true;
        Start();
    }
    QList<int> MembersOf(qint16 group) {
        QList<int> members;
        const auto rows = Office.MemberRows();
        for (const QVariantMap& row : rows) {
            if (row.value(QStringLiteral("grpID")).toInt() == group) {
                members.append(row.value(QStringLiteral("cntID")).toInt());
            }
        }
        return members;
    }
    QStringList StoredNames() {
        QStringList names;
        const auto rows = Office.GroupRows();
        for (const QVariantMap& row : rows) {
            names.append(row.value(QStringLiteral("grpName")).toString());
        }
        return names;
    }
    void ChooseOn(const QString& caption, const QString& entry) {
        Door.ExpectMenu(entry);
        ClickTab(caption, Qt::RightButton);
    }
    QString KeyOf(qint32 id) { return QStringLiteral("C%1").arg(id); }

    qint32 m_ahern = 0;
    qint32 m_byrne = 0;
    qint32 m_costa = 0;
    qint16 m_drivers = 0;
    qint16 m_kitchen = 0;
};

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

TEST_F(GroupTabs, ANewGroupStandsInFrontOfTheLastTab) {
    ExpectName(QStringLiteral("Crew"));
    ChooseOn(QStringLiteral("*"), AddNewGroup);
    EXPECT_EQ(TabCaptions(), QStringList({QStringLiteral("*"), Drivers, Kitchen, Favourite,
                                          QStringLiteral("Crew"), QStringLiteral("Private")}));
    EXPECT_EQ(StoredNames().last(), QStringLiteral("Crew"));
    EXPECT_EQ(TabTags().at(4),
              QStringLiteral("G%1").arg(Office.GroupRows().last().value(QStringLiteral("grpID")).toInt()));
    EXPECT_EQ(Office.Pump.Calls.count(3), 1) << "pending events run three times behind the dialog";
}

TEST_F(GroupTabs, TheNameDialogOfANewGroupStandsAtTheMouse) {
    QCursor::setPos(300, 200);
    QPoint place;
    Door.ExpectDialog([&](QDialog& dialog) {
        place = dialog.pos();
        dialog.close();
    });
    ChooseOn(QStringLiteral("*"), AddNewGroup);
    EXPECT_EQ(place, QCursor::pos());
}

TEST_F(GroupTabs, ACanceledNameAddsNothing) {
    ExpectName(QStringLiteral("Crew"), Qt::Key_Escape);
    ChooseOn(QStringLiteral("*"), AddNewGroup);
    EXPECT_EQ(tabGroup().Count(), 5);
    EXPECT_EQ(Office.GroupRows().size(), 2);
}

TEST_F(GroupTabs, AStarBeepsAndEscapeAfterThatAddsNothing) {
    Door.ExpectDialog([this](QDialog& dialog) {
        auto* box = dialog.findChild<QLineEdit*>(QStringLiteral("txtName"));
        QTest::keyClicks(box, QStringLiteral("*"));
        QTest::keyClick(box, Qt::Key_Return);
        EXPECT_EQ(Office.Sound.Beeps, 1);
        EXPECT_TRUE(dialog.isVisible());
        QTest::keyClick(box, Qt::Key_Escape);
    });
    ChooseOn(QStringLiteral("*"), AddNewGroup);
    EXPECT_EQ(Office.GroupRows().size(), 2);
}

TEST_F(GroupTabs, AGroupThatTheStoreRefusesGetsNoTab) {
    Office.Boxes.Expect();
    ExpectName(Drivers);
    ChooseOn(QStringLiteral("*"), AddNewGroup);
    EXPECT_EQ(Office.Boxes.Shown.last().Text, QStringLiteral("A Group with that name already exists"));
    EXPECT_EQ(tabGroup().Count(), 5);
}

TEST_F(GroupTabs, ANameOfTwelveCharactersComesBackWithTenAndARenameWithSix) {
    const QString longName = QStringLiteral("Twelve chars");
    ExpectName(longName);
    ChooseOn(QStringLiteral("*"), AddNewGroup);
    EXPECT_EQ(TabCaptions().at(4), longName) << "the tab shows what was typed until the next start";
    Start();
    EXPECT_TRUE(TabCaptions().contains(QStringLiteral("Twelve cha")));
    ExpectName(longName);
    ChooseOn(QStringLiteral("Twelve cha"), QStringLiteral("Rename Group 'Twelve cha'"));
    EXPECT_TRUE(TabCaptions().contains(longName));
    Start();
    EXPECT_TRUE(TabCaptions().contains(QStringLiteral("Twelve")));
    EXPECT_FALSE(TabCaptions().contains(longName));
}

TEST_F(GroupTabs, ARenameOffersTheOldNameTwentyPixelsAboveTheMouse) {
    QCursor::setPos(300, 200);
    const QPoint mouse = QCursor::pos();
    Door.ExpectDialog([&](QDialog& dialog) {
        EXPECT_EQ(static_cast<frmTabName&>(dialog).EditValue(), Drivers);
        EXPECT_EQ(dialog.pos(), QPoint(qMax(0, mouse.x() - 20), qMax(0, mouse.y() - 20)));
        dialog.close();
    });
    ChooseOn(Drivers, QStringLiteral("Rename Group 'Drivers'"));
    EXPECT_EQ(StoredNames(), QStringList({Drivers, Kitchen})) << "the dialog was given up";
}

TEST_F(GroupTabs, ARenameIsStoredAndForgetsTheClickedTab) {
    ExpectName(QStringLiteral("O'Neil"));
    ChooseOn(Drivers, QStringLiteral("Rename Group 'Drivers'"));
    EXPECT_EQ(StoredNames(), QStringList({QStringLiteral("O'Neil"), Kitchen}));
    DoubleClickTab(Kitchen);
    EXPECT_EQ(Host.DroppedGroups, QList<qint32>({m_kitchen}));
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
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(GroupTabs, ADropOnTheFavouritesTabDoesNothing) {
    const auto before = Office.MemberRows();
    for (const QString& tab : {Favourite, QStringLiteral("*"), QStringLiteral("Private")}) {
        DropOn(tab, KeyOf(m_costa) + QStringLiteral("\r\n"));
    }
    EXPECT_EQ(Office.MemberRows(), before);
    EXPECT_TRUE(Office.Pump.Calls.isEmpty());
}

TEST_F(GroupTabs, ADropBesideTheTabsDoesNothing) {
    const auto before = Office.MemberRows();
    DropOn(QString(), KeyOf(m_costa) + QStringLiteral("\r\n"));
    EXPECT_EQ(Office.MemberRows(), before);
}

TEST_F(GroupTabs, AGroupMadeOfKeysLeavesPrivateContactsOut) {
    ExpectName(QStringLiteral("Crew"));
    Area->CreateGroupFromKeys({KeyOf(m_costa), QStringLiteral("P3"), KeyOf(m_ahern)});
    const auto id = static_cast<qint16>(Office.GroupRows().last().value(QStringLiteral("grpID")).toInt());
    EXPECT_EQ(MembersOf(id), QList<int>({m_ahern, m_costa}));
    EXPECT_EQ(tabGroup().Tag(4), QStringLiteral("G%1").arg(id));
}

TEST_F(GroupTabs, TheDialogOfAGroupMadeOfKeysIsHeldOnTheScreen) {
    QCursor::setPos(5, 300);
    const QPoint mouse = QCursor::pos();
    Door.ExpectDialog([&](QDialog& dialog) {
        EXPECT_EQ(dialog.pos(), QPoint(qMax(0, mouse.x() - 20), qMax(0, mouse.y() - 20)));
        dialog.close();
    });
    Area->CreateGroupFromKeys({KeyOf(m_costa)});
    EXPECT_EQ(Office.GroupRows().size(), 2);
}

TEST_F(GroupTabs, AGroupOfKeysThatTheStoreRefusesGetsNoMembers) {
    Office.Boxes.Expect();
    ExpectName(Kitchen);
    Area->CreateGroupFromKeys({KeyOf(m_costa)});
    EXPECT_TRUE(MembersOf(m_kitchen).isEmpty());
    EXPECT_EQ(tabGroup().Count(), 5);
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
