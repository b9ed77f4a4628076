#include "ContactListOffice.h"

#include <QAbstractButton>
#include <QApplication>

#include <stdexcept>

namespace {

const QStringList NoDetails = {QString(), QString(), QString(), QString(), QString()};

TEST_F(ContactListView, TheStarTabsShowEveryoneBySurname) {
    Start();
    EXPECT_EQ(Names(), QStringList({QStringLiteral("Ahern, Aoife"), QStringLiteral("Byrne, Declan"),
                                    QStringLiteral("Costa, Joao"), QStringLiteral("Doyle, Zoe")}));
    EXPECT_EQ(KeysOfAddressContacts(), lvContacts().Rows().KeyList());
}

TEST_F(ContactListView, ALetterNarrowsTheAddressBook) {
    Start();
    ClickLetter(QStringLiteral("D"));
    EXPECT_EQ(Names(), QStringList(QStringLiteral("Doyle, Zoe")));
    EXPECT_EQ(KeysOfAddressContacts(), QStringList(KeyOf(3)));
    ClickLetter(QStringLiteral("Q"));
    EXPECT_TRUE(Names().isEmpty());
    EXPECT_EQ(AddressContacts.Count(), 0);
}

TEST_F(ContactListView, WithTheFirstVersionThereIsNoSharpAndTheNameItselfIsFiltered) {
    Office.PhonebookValues.cfgVersion = 1;
    Office.ExecuteOnPhonebook(
        QStringLiteral("UPDATE Contact SET cntAlphaSurname = 'X', cntAlphaFirstNames = 'X'"));
    Start();
    EXPECT_EQ(tabAlpha().Caption(tabAlpha().Count() - 1), QStringLiteral("Z"));
    ClickLetter(QStringLiteral("B"));
    EXPECT_EQ(Names(), QStringList(QStringLiteral("Byrne, Declan")));
}

TEST_F(ContactListView, ASurnameThatBeginsWithADigitIsListedUnderTheSharp) {
    Office.PhonebookValues.cfgVersion = 2;
    Add(u"3M", u"Office", u"+35355");
    Start();
    ClickLetter(QStringLiteral("#"));
    EXPECT_EQ(Names(), QStringList(QStringLiteral("3M, Office")));
}

TEST_F(ContactListView, FavouritesAndPrivateShowAnEmptyList) {
    Office.PhonebookValues.cfgAllowPrivateGroup = true;
    Start();
    ClickTab(QStringLiteral("Favourite"));
    EXPECT_TRUE(Names().isEmpty());
    EXPECT_EQ(AddressContacts.Count(), 0);
    ClickTab(QStringLiteral("Private"));
    EXPECT_TRUE(Names().isEmpty());
    Area->ShowGroupMembers(-1);
    EXPECT_TRUE(Names().isEmpty());
    EXPECT_TRUE(LogText().isEmpty());
}

TEST_F(ContactListView, AnAddressBookThatCannotBeReadIsToldToTheLogAndTheListIsEmpty) {
    Start();
    Office.PhonebookDB().CloseDatabase();
    Area->ShowAlphaGroup(QStringLiteral("*"));
    EXPECT_TRUE(Names().isEmpty());
    EXPECT_EQ(AddressContacts.Count(), 0);
    EXPECT_TRUE(LogText().contains(QStringLiteral("GetContacts Error:") + Office.PhonebookDB().LastError()));
}

TEST_F(ContactListView, AGroupThatCannotBeReadIsToldToTheLogWithItsNumber) {
    Start();
    Office.PhonebookDB().CloseDatabase();
    Area->ShowGroupMembers(m_drivers);
    EXPECT_TRUE(Names().isEmpty());
    EXPECT_TRUE(LogText().contains(QStringLiteral("GetGroupMembers(%1) Error: ").arg(m_drivers) +
                                   Office.PhonebookDB().LastError()));
}

TEST_F(ContactListView, AFailureWhileShowingAGroupIsLoggedAndTheListIsRedrawnAgain) {
    Start();
    tabGroup().SetTag(1, QStringLiteral("G99999"));
    ClickTab(Drivers);
    EXPECT_TRUE(LogText().contains(QStringLiteral("ShowGroup Error: 6 Overflow"))) << LogText().toStdString();
    EXPECT_TRUE(lvContacts().updatesEnabled());
    EXPECT_EQ(Area->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(ContactListView, AFailureWhileTheMembersAreShownIsToldToTheLog) {
    Start();
    const auto connection =
        QObject::connect(&lvContacts().Rows(), &QAbstractItemModel::modelReset, Area.get(), [this] {
            if (AddressContacts.Count() > 0) {
                throw std::runtime_error("made to fail");
            }
        });
    EXPECT_NO_THROW(Area->ShowGroupMembers(m_drivers));
    QObject::disconnect(connection);
    EXPECT_TRUE(LogText().contains(QStringLiteral("ShowGroupMembers Error: 0 made to fail")))
        << LogText().toStdString();
}

TEST_F(ContactListView, TheListIsNotRedrawnWhileItIsFilled) {
    Start();
    bool wasRedrawn = true;
    QObject::connect(&lvContacts().Rows(), &QAbstractItemModel::modelReset, Area.get(),
                     [&] { wasRedrawn = lvContacts().updatesEnabled(); });
    Area->FillContactList(AddressContacts);
    EXPECT_FALSE(wasRedrawn);
    EXPECT_TRUE(lvContacts().updatesEnabled());
}

TEST_F(ContactListView, TheFirstImageMarksContactsThatWantConfirmation) {
    Start();
    EXPECT_EQ(lvContacts().Rows().At(0).SmallIcon, 0);
    EXPECT_EQ(lvContacts().Rows().At(3).SmallIcon, 1);
}

TEST_F(ContactListView, ThePointerShowsTheHourglassWhileTheListIsFilled) {
    Start();
    bool wasWaiting = false;
    QObject::connect(&lvContacts().Rows(), &QAbstractItemModel::modelReset, Area.get(), [&] {
        wasWaiting = Area->cursor().shape() == Qt::WaitCursor && !lvContacts().updatesEnabled();
    });
    Area->ShowGroup();
    EXPECT_TRUE(wasWaiting);
    EXPECT_EQ(Area->cursor().shape(), Qt::ArrowCursor);
    EXPECT_TRUE(lvContacts().updatesEnabled());
}

TEST_F(ContactListView, TheSortButtonChangesEveryNameAndItsLetter) {
    Start();
    auto& button = Control<QAbstractButton>(u"cmdSortBy");
    EXPECT_EQ(button.text(), QStringLiteral("F"));
    EXPECT_EQ(button.toolTip(), QStringLiteral(" Sort contacts by their firstnames "));
    Press(u"cmdSortBy");
    EXPECT_EQ(SortBy, 1);
    EXPECT_EQ(Names(), QStringList({QStringLiteral("Aoife Ahern"), QStringLiteral("Declan Byrne"),
                                    QStringLiteral("Joao Costa"), QStringLiteral("Zoe Doyle")}));
    EXPECT_EQ(button.text(), QStringLiteral("S"));
    EXPECT_EQ(button.toolTip(), QStringLiteral(" Sort contacts by their surnames "));
    EXPECT_EQ(Host.Refreshes, 1) << "the recipients' names follow";
    Press(u"cmdSortBy");
    EXPECT_EQ(SortBy, 0);
    EXPECT_EQ(Names().first(), QStringLiteral("Ahern, Aoife"));
    EXPECT_EQ(Host.Refreshes, 2);
}

TEST_F(ContactListView, AfterSortingTheFirstRowHasTheCursor) {
    Start();
    ClickRow(2);
    Press(u"cmdSortBy");
    EXPECT_EQ(lvContacts().CurrentKey(), KeyOf(0));
    EXPECT_EQ(Area->window()->focusWidget(), &lvContacts());
    EXPECT_EQ(LabelText(u"lblPhone"), QStringLiteral("+35311"));
}

TEST_F(ContactListView, WhileTheWindowLoadsTheOrderIsShownAndNothingIsFilled) {
    SortBy = 1;
    Start();
    EXPECT_EQ(Control<QAbstractButton>(u"cmdSortBy").text(), QStringLiteral("S"));
    EXPECT_EQ(Host.Refreshes, 0);
    EXPECT_EQ(Names().first(), QStringLiteral("Aoife Ahern"));
}

TEST_F(ContactListView, AnUnknownSortOrderListsBySurnameAndItsButtonSaysSurnames) {
    SortBy = 7;
    Start();
    EXPECT_EQ(Names(), QStringList({QStringLiteral("Ahern, Aoife"), QStringLiteral("Byrne, Declan"),
                                    QStringLiteral("Costa, Joao"), QStringLiteral("Doyle, Zoe")}));
    EXPECT_EQ(Control<QAbstractButton>(u"cmdSortBy").text(), QStringLiteral("S"));
    Press(u"cmdSortBy");
    EXPECT_EQ(SortBy, 0);
}

TEST_F(ContactListView, TheCaptionsOfTheUserFieldsHaveAColonBehindThem) {
    Office.ExecuteOnPhonebook(QStringLiteral("DELETE FROM UserFields"));
    Office.ExecuteOnPhonebook(
        QStringLiteral("INSERT INTO UserFields (hdrFieldID, hdrFieldCaption) VALUES (2, 'Room')"));
    Start();
    EXPECT_EQ(LabelText(u"lblUserHeader0"), QStringLiteral("User 1 :"));
    EXPECT_EQ(LabelText(u"lblUserHeader1"), QStringLiteral("Room :"));
    EXPECT_EQ(LabelText(u"lblUserHeader2"), QStringLiteral("User 3 :"));
}

TEST_F(ContactListView, AClickShowsTheDetailsOfTheContact) {
    Start();
    ClickRow(0);
    EXPECT_EQ(LabelText(u"lblPhone"), QStringLiteral("+35311"));
    ClickRow(3);
    EXPECT_EQ(Details(),
              QStringList({QStringLiteral("Private Number"), QStringLiteral("night shift"),
                           QStringLiteral("Transport"), QStringLiteral("2.14"), QStringLiteral("4471")}));
}

TEST_F(ContactListView, ARightClickShowsTheDetailsOfTheContactBeforeTheMenuOpens) {
    Start();
    ClickRow(0);
    QString atTheMenu;
    QObject::connect(&lvContacts(), &ListView::ContextMenuRequested, Area.get(),
                     [&] { atTheMenu = LabelText(u"lblNote"); });
    ChooseOnList(3, QString());
    EXPECT_EQ(LabelText(u"lblPhone"), QStringLiteral("Private Number"));
    EXPECT_EQ(atTheMenu, QStringLiteral("night shift"));
}

TEST_F(ContactListView, AnotherGroupLeavesTheDetailsAsTheyAre) {
    Start();
    ClickRow(0);
    const QStringList shown = Details();
    ClickTab(Drivers);
    EXPECT_EQ(Details(), shown);
}

TEST_F(ContactListView, AScreenReaderHearsTheCaptionAndTheValueAndNoPrivateNumber) {
    Start();
    ClickRow(0);
    EXPECT_EQ(Control<QLabel>(u"lblPhone").accessibleName(), QStringLiteral("Phone : +35311"));
    ClickRow(3);
    EXPECT_EQ(Control<QLabel>(u"lblPhone").accessibleName(), QStringLiteral("Phone : Private Number"));
    EXPECT_TRUE(Control<QLabel>(u"UserData1").accessibleName().endsWith(QStringLiteral(" : 2.14")));
}

TEST_F(ContactListView, TheEmptyKeyClearsTheDetailsAndAnUnknownOneChangesNothing) {
    Start();
    ClickRow(3);
    const QStringList shown = Details();
    Area->ShowContactInfo(QStringLiteral("C9999"));
    EXPECT_EQ(Details(), shown);
    Area->ShowContactInfo(QString());
    EXPECT_EQ(Details(), NoDetails);
}

TEST_F(ContactListView, SelectContactSelectsShowsAndFocuses) {
    Start();
    Area->SelectContact(m_ids[2]);
    EXPECT_EQ(lvContacts().SelectedKeys(), QStringList(KeyOf(2)));
    EXPECT_EQ(LabelText(u"lblPhone"), QStringLiteral("+35333"));
    EXPECT_EQ(Area->window()->focusWidget(), &lvContacts());
}

TEST_F(ContactListView, SelectContactForOneThatIsNotListedOnlyMovesTheFocus) {
    Start();
    ClickRow(0);
    tabGroup().setFocus();
    Area->SelectContact(30000);
    EXPECT_EQ(lvContacts().SelectedKeys(), QStringList(KeyOf(0)));
    EXPECT_EQ(LabelText(u"lblPhone"), QStringLiteral("+35311"));
    EXPECT_EQ(Area->window()->focusWidget(), &lvContacts());
}

TEST_F(ContactListView, ContactListFocusWithHomeGivesTheFirstRowTheCursor) {
    Start();
    ClickRow(2);
    Area->ContactListFocus(false);
    EXPECT_EQ(lvContacts().CurrentKey(), KeyOf(2));
    Area->ContactListFocus(true);
    EXPECT_EQ(lvContacts().CurrentKey(), KeyOf(0));
}

TEST_F(ContactListView, ADoubleClickWithThreeSelectedMovesThreeAndLeavesNoneSelected) {
    Start();
    SelectRows({0, 1, 3});
    DoubleClickRow(1);
    EXPECT_EQ(Host.Added, QList<QStringList>({{KeyOf(0), KeyOf(1), KeyOf(3)}}));
    EXPECT_FALSE(lvContacts().HasSelection());
    EXPECT_EQ(Host.ScrolledTo, QList<int>({4})) << "the place of the last one in the contact list";
    EXPECT_EQ(Host.StateUpdates, 1);
}

TEST_F(ContactListView, TheListIsNotRedrawnWhileItsSelectionGoesOver) {
    Start();
    SelectRows({0, 1});
    bool wasRedrawn = true;
    Host.OnAdd = [&] { wasRedrawn = lvContacts().updatesEnabled(); };
    DoubleClickRow(1);
    EXPECT_FALSE(wasRedrawn);
    EXPECT_TRUE(lvContacts().updatesEnabled());
}

TEST_F(ContactListView, EnterAddsTheSelection) {
    Start();
    SelectRows({2});
    QTest::keyClick(&lvContacts(), Qt::Key_Return);
    EXPECT_EQ(Host.Added, QList<QStringList>({{KeyOf(2)}}));
    EXPECT_FALSE(lvContacts().HasSelection());
}

TEST_F(ContactListView, ControlASelectsEveryContact) {
    Start();
    QTest::keyClick(&lvContacts(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(lvContacts().SelectedCount(), 4);
}

TEST_F(ContactListView, ADragOffersTheKeysOfTheSelection) {
    Start();
    SelectRows({1, 3});
    EXPECT_EQ(lvContacts().DragText(), KeyOf(1) + QStringLiteral("\r\n") + KeyOf(3) + QStringLiteral("\r\n"));
    EXPECT_TRUE(lvContacts().dragEnabled());
}

TEST_F(ContactListView, SelectEverythingLeadsBackToTheWholeAddressBook) {
    Start();
    ClickLetter(QStringLiteral("B"));
    ClickTab(Drivers);
    Area->SelectEverything();
    EXPECT_EQ(tabGroup().Selected(), 0);
    EXPECT_EQ(tabAlpha().Selected(), 0);
    EXPECT_EQ(Names().size(), 4);
}

TEST_F(ContactListView, TenThousandSelectedContactsGoOverInOneCall) {
    Office.ExecuteOnPhonebook(QStringLiteral(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 12000) "
        "INSERT INTO Contact (cntSurname, cntFirstnames, cntPhone, cntAlphaSurname, cntAlphaFirstNames) "
        "SELECT 'Name' || i, 'First', '+353' || i, 'N', 'F' FROM n"));
    Start();
    ASSERT_EQ(Names().size(), 12004);
    lvContacts().SelectAllRows();
    QTest::keyClick(&lvContacts(), Qt::Key_Return);
    ASSERT_EQ(Host.Added.size(), 1);
    EXPECT_EQ(Host.Added.first().size(), 12004);
    EXPECT_EQ(Host.StateUpdates, 1);
    EXPECT_FALSE(lvContacts().HasSelection());
}

}  // namespace
