#include "GroupTabsOffice.h"
#include "addressbook/GroupTabsPanel.h"

#include <QAbstractButton>
#include <QCursor>

namespace {

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

TEST_F(GroupTabs, WhereTheRequestCameFromDoesNotMoveTheNameDialog) {
    QCursor::setPos(300, 200);
    QPoint place;
    Door.ExpectDialog([&](QDialog& dialog) {
        place = dialog.pos();
        dialog.close();
    });
    Area->findChild<GroupTabsPanel*>()->AddNewGroup(10, 10);
    EXPECT_EQ(place, QCursor::pos());
}

TEST_F(GroupTabs, AGroupWhoseNumberIsTooLargeIsStoredAndGetsNoTab) {
    Office.ExecuteOnPhonebook(
        QStringLiteral("INSERT INTO ContactGroup (grpID, grpName) VALUES (32767, 'Last')"));
    ExpectName(QStringLiteral("Crew"));
    EXPECT_NO_THROW(ChooseOn(QStringLiteral("*"), AddNewGroup));
    EXPECT_EQ(Office.GroupRows().last().value(QStringLiteral("grpID")).toInt(), 32768);
    EXPECT_EQ(StoredNames().last(), QStringLiteral("Crew"));
    EXPECT_FALSE(TabCaptions().contains(QStringLiteral("Crew")));
    EXPECT_EQ(tabGroup().Count(), 5);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
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

TEST_F(GroupTabs, WithoutThePrivateTabANewGroupStandsInFrontOfTheFavourites) {
    Office.PhonebookValues.cfgAllowPrivateGroup = false;
    Start();
    ExpectName(QStringLiteral("Crew"));
    ChooseOn(QStringLiteral("*"), AddNewGroup);
    EXPECT_EQ(TabCaptions(),
              QStringList({QStringLiteral("*"), Drivers, Kitchen, QStringLiteral("Crew"), Favourite}));
}

TEST_F(GroupTabs, TheNameDialogsAreModalToTheWindow) {
    QWidget outer;
    Area->setParent(&outer);
    for (const QString& entry : {AddNewGroup, QStringLiteral("Rename Group 'Drivers'")}) {
        Door.Owner = nullptr;
        ExpectName(QStringLiteral("x"), Qt::Key_Escape);
        ChooseOn(Drivers, entry);
        EXPECT_EQ(Door.Owner, &outer);
    }
    Door.Owner = nullptr;
    ExpectName(QStringLiteral("x"), Qt::Key_Escape);
    Area->CreateGroupFromSelection(lvContacts(), true);
    EXPECT_EQ(Door.Owner, &outer);
    Area->setParent(nullptr);
}

TEST_F(GroupTabs, ARenameLetsNoEventsThrough) {
    ExpectName(QStringLiteral("Crew"));
    ChooseOn(Drivers, QStringLiteral("Rename Group 'Drivers'"));
    EXPECT_EQ(Office.Pump.Calls, QList<int>({2})) << "but for those of the click";
}

TEST_F(GroupTabs, ARenameThatIsGivenUpForgetsTheClickedTabToo) {
    ExpectName(QStringLiteral("Crew"), Qt::Key_Escape);
    ChooseOn(Drivers, QStringLiteral("Rename Group 'Drivers'"));
    DoubleClickTab(Kitchen);
    EXPECT_EQ(Host.DroppedGroups, QList<qint32>({m_kitchen}));
}

TEST_F(GroupTabs, WithoutAClickedTabAndOnEveryoneAndFavouritesNothingIsRenamedOrDeleted) {
    auto& panel = *Area->findChild<GroupTabsPanel*>();
    const auto tryBoth = [&] {
        panel.RenameClickedGroup();
        panel.DeleteClickedGroup();
    };
    ClickTab(Drivers);
    tryBoth();
    for (const QString& caption : {QStringLiteral("*"), Favourite}) {
        ChooseOn(caption, QString());
        tryBoth();
    }
    EXPECT_TRUE(Door.Dialogs.isEmpty());
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
    EXPECT_EQ(StoredNames(), QStringList({Drivers, Kitchen}));
    EXPECT_EQ(tabGroup().Count(), 5);
}

TEST_F(GroupTabs, TheNameOfThePrivateTabCanBeAskedFor) {
    ChooseOn(QStringLiteral("Private"), QString());
    Door.ExpectDialog([](QDialog& dialog) {
        EXPECT_EQ(static_cast<frmTabName&>(dialog).EditValue(), QStringLiteral("Private"));
        dialog.close();
    });
    Area->findChild<GroupTabsPanel*>()->RenameClickedGroup();
    EXPECT_EQ(Door.Dialogs.size(), 1);
}

TEST_F(GroupTabs, ATabWhoseNumberIsNoneOfAGroupIsNotDeleted) {
    tabGroup().SetTag(TabNamed(Drivers), QStringLiteral("G99999"));
    ChooseOn(Drivers, QString());
    Office.Boxes.Expect(BoxAnswer::Yes);
    EXPECT_NO_THROW(Area->findChild<GroupTabsPanel*>()->DeleteClickedGroup());
    EXPECT_TRUE(TabCaptions().contains(Drivers));
    EXPECT_EQ(StoredNames(), QStringList({Drivers, Kitchen}));
}

TEST_F(GroupTabs, AGroupMadeOfTheSelectionHasTheSelectedContactsButNoPrivateOnes) {
    ContactList mixed;
    for (const QString& key : {KeyOf(m_ahern), QStringLiteral("P3"), KeyOf(m_byrne), KeyOf(m_costa)}) {
        Contact contact;
        contact.Key = key;
        mixed.Add(contact);
    }
    Area->FillContactList(mixed);
    SelectRows({0, 1, 3});
    ExpectName(QStringLiteral("Crew"));
    Area->CreateGroupFromSelection(lvContacts(), true);
    const auto id = static_cast<qint16>(Office.GroupRows().last().value(QStringLiteral("grpID")).toInt());
    EXPECT_EQ(MembersOf(id), QList<int>({m_ahern, m_costa}));
    EXPECT_EQ(tabGroup().Tag(4), QStringLiteral("G%1").arg(id));
    ExpectName(QStringLiteral("All"));
    Area->CreateGroupFromSelection(lvContacts(), false);
    EXPECT_EQ(MembersOf(static_cast<qint16>(id + 1)), QList<int>({m_ahern, m_byrne, m_costa}));
}

TEST_F(GroupTabs, AGroupIsMadeOfTheRowsThatAreThereWhenItsNameIsTaken) {
    SelectRows({0});
    Door.ExpectDialog([this](QDialog& dialog) {
        SelectRows({2});
        auto* box = dialog.findChild<QLineEdit*>(QStringLiteral("txtName"));
        QTest::keyClicks(box, QStringLiteral("Crew"));
        QTest::keyClick(box, Qt::Key_Return);
    });
    Area->CreateGroupFromSelection(lvContacts(), true);
    EXPECT_EQ(MembersOf(static_cast<qint16>(m_kitchen + 1)), QList<int>({m_costa}));
}

TEST_F(GroupTabs, TheDialogOfAGroupMadeOfTheSelectionIsHeldOnTheScreen) {
    QCursor::setPos(5, 300);
    const QPoint mouse = QCursor::pos();
    Door.ExpectDialog([&](QDialog& dialog) {
        EXPECT_EQ(dialog.pos(), QPoint(qMax(0, mouse.x() - 20), qMax(0, mouse.y() - 20)));
        dialog.close();
    });
    Area->CreateGroupFromSelection(lvContacts(), false);
    EXPECT_EQ(Office.GroupRows().size(), 2);
}

TEST_F(GroupTabs, TheDialogOfAGroupMadeOfTheSelectionStandsWhereTheMouseWasWhenItWasAskedFor) {
    QCursor::setPos(300, 200);
    const QPoint mouse = QCursor::pos();
    Office.Pump.OnProcess = [](int) { QCursor::setPos(500, 400); };
    Door.ExpectDialog([&](QDialog& dialog) {
        EXPECT_EQ(dialog.pos(), mouse - QPoint(20, 20));
        EXPECT_NE(QCursor::pos(), mouse);
        dialog.close();
    });
    Area->CreateGroupFromSelection(lvContacts(), false);
}

TEST_F(GroupTabs, PendingEventsRunThreeTimesBehindTheDialogOfAGroupMadeOfTheSelection) {
    bool isDialogGone = false;
    ExpectName(QStringLiteral("Crew"));
    Office.Pump.OnProcess = [&](int passes) {
        isDialogGone = passes == 3 && Door.Dialogs.size() == 1 && Office.GroupRows().size() == 2;
    };
    Area->CreateGroupFromSelection(lvContacts(), false);
    EXPECT_EQ(Office.Pump.Calls, QList<int>({2, 3}));
    EXPECT_TRUE(isDialogGone) << "and in front of the new row";
}

TEST_F(GroupTabs, ClicksThatAreWaitingWhenAGroupIsMadeOfTheSelectionAreDropped) {
    Office.Pump.OnProcess = [](int) { QCoreApplication::sendPostedEvents(); };
    PostClick(Control<QAbstractButton>(u"cmdSortBy"), QPoint(5, 5));
    ExpectName(QStringLiteral("Crew"));
    Area->CreateGroupFromSelection(lvContacts(), false);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(SortBy, 0);
}

TEST_F(GroupTabs, AGroupOfTheSelectionThatTheStoreRefusesGetsNoMembers) {
    Office.Boxes.Expect();
    ExpectName(Kitchen);
    Area->CreateGroupFromSelection(lvContacts(), false);
    EXPECT_TRUE(MembersOf(m_kitchen).isEmpty());
    EXPECT_EQ(tabGroup().Count(), 5);
}

}  // namespace
