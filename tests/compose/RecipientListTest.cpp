#include "ComposeBench.h"

#include "addressbook/ContactItems.h"
#include "support/PaintCount.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>

namespace {

class RecipientListTest : public ComposeBench {
protected:
    /// Drops text on the list as a drag out of the widget `source` would.
    void Drop(const QString& text, QWidget* source = nullptr) {
        Q_EMIT lvRecipients().TextDropped(text, source == nullptr ? QString() : source->objectName());
    }
    void DoubleClick(int row) {
        const QPoint place = lvRecipients().visualRect(lvRecipients().model()->index(row, 0)).center();
        QTest::mouseClick(lvRecipients().viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(lvRecipients().viewport(), Qt::LeftButton, {}, place);
    }
};

TEST_F(RecipientListTest, ARowHasKeyNameToolTipAndTheMarkOfConfirmation) {
    AddRecipient(1, QStringLiteral("Byrne"), true);
    Contact hidden;
    hidden.SetID(2);
    hidden.Surname = QStringLiteral("Costa");
    hidden.Firstnames = QStringLiteral("Joao");
    hidden.IsPrivate = true;
    AddressContacts.Add(hidden);
    Area->AddKeyToRecipients(QStringLiteral("C2"), false);
    const RowModel& rows = lvRecipients().Rows();
    ASSERT_EQ(rows.Count(), 2);
    EXPECT_EQ(rows.At(0), (ListRow{QStringLiteral("C1"), QStringLiteral("Byrne, Ann"),
                                   QStringLiteral(" +353860000001 "), 1, false}));
    EXPECT_EQ(rows.At(1), (ListRow{QStringLiteral("C2"), QStringLiteral("Costa, Joao"),
                                   QStringLiteral(" Private Number "), 0, false}));
    EXPECT_NE(RecipientContacts.ContactByKey(QStringLiteral("C1")), nullptr);
}

TEST_F(RecipientListTest, AKeyThatIsNotOnShowIsDropped) {
    Area->AddKeysToRecipients({QStringLiteral("C77"), QStringLiteral("nonsense"), QString()});
    EXPECT_EQ(lvRecipients().Rows().Count(), 0);
    EXPECT_EQ(RecipientContacts.Count(), 0);
}

TEST_F(RecipientListTest, TheCaptionShowsTheCount) {
    EXPECT_EQ(RecipientCaption(), QStringLiteral("Recipient List"));
    AddRecipient(1, QStringLiteral("Byrne"));
    EXPECT_EQ(RecipientCaption(), QStringLiteral("Recipient List [1]"));
    AddRecipient(2, QStringLiteral("Costa"));
    EXPECT_EQ(RecipientCaption(), QStringLiteral("Recipient List [2]"));
}

TEST_F(RecipientListTest, WithEnsureVisibleTheNewRowIsSelected) {
    for (qint16 id = 1; id <= 40; ++id) {
        AddRecipient(id, QStringLiteral("Byrne"));
    }
    ShowWindow();
    const QString key = ShowContact(50, QStringLiteral("Zapata"));
    Area->AddKeyToRecipients(key, true);
    EXPECT_EQ(lvRecipients().SelectedKeys(), QStringList{key});
    EXPECT_TRUE(lvRecipients().viewport()->rect().intersects(
        lvRecipients().visualRect(lvRecipients().model()->index(40, 0))));
}

TEST_F(RecipientListTest, DraggingTheSameContactTwiceGivesOneRow) {
    ShowContact(1, QStringLiteral("Byrne"));
    Drop(QStringLiteral("C1\r\n"));
    Drop(QStringLiteral("C1\r\n"));
    EXPECT_EQ(RecipientTexts(), QStringList{QStringLiteral("Byrne, Ann")});
    EXPECT_EQ(RecipientCaption(), QStringLiteral("Recipient List [1]"));
    EXPECT_EQ(RecipientContacts.Count(), 1);
}

TEST_F(RecipientListTest, AddingOneWhoIsARecipientAlreadyLeavesRowAndCopyAsTheyAre) {
    const QString key = AddRecipient(1, QStringLiteral("Byrne"));
    const ListRow row = lvRecipients().Rows().At(0);
    AddressContacts.ContactByKey(key)->Surname = QStringLiteral("Nolan");
    AddressContacts.ContactByKey(key)->PhoneNumber = QStringLiteral("+99");
    Area->AddKeyToRecipients(key, true);
    Area->AddKeysToRecipients({key});
    ASSERT_EQ(lvRecipients().Rows().Count(), 1);
    EXPECT_EQ(lvRecipients().Rows().At(0), row);
    EXPECT_FALSE(lvRecipients().HasSelection()) << "nor is it selected";
    EXPECT_EQ(RecipientContacts.ContactByKey(key)->Surname, QStringLiteral("Byrne"));
    EXPECT_NE(RecipientContacts.ContactByKey(key)->PhoneNumber, QStringLiteral("+99"));
}

TEST_F(RecipientListTest, DroppedKeysAreSplitAtLineBreaksTheLastOneMayBeOpen) {
    ShowContact(1, QStringLiteral("Byrne"));
    ShowContact(2, QStringLiteral("Costa"));
    ShowContact(3, QStringLiteral("Doyle"));
    Drop(QStringLiteral("C2\r\nC1\t\r\nC9\r\nC3"));
    EXPECT_EQ(lvRecipients().Rows().KeyList(), (QStringList{QStringLiteral("C2"), QStringLiteral("C3")}));
    EXPECT_EQ(RecipientCaption(), QStringLiteral("Recipient List [2]"));
}

TEST_F(RecipientListTest, APlainTextWithoutLineBreakIsIgnored) {
    ShowContact(1, QStringLiteral("Byrne"));
    txtMessage().SetText(QString(156, u'x'));
    const int beeps = Office.Sound.Beeps;
    Drop(QStringLiteral("C1"));
    Drop(QStringLiteral("C1\nC1\n"));
    Drop(QString());
    EXPECT_EQ(lvRecipients().Rows().Count(), 0);
    EXPECT_EQ(Office.Sound.Beeps, beeps) << "the display is not refreshed for nothing";
}

TEST_F(RecipientListTest, ADropRefreshesTheDisplayOnce) {
    txtMessage().SetText(QString(156, u'x'));
    ShowContact(1, QStringLiteral("Byrne"));
    ShowContact(2, QStringLiteral("Costa"));
    const int beeps = Office.Sound.Beeps;
    Drop(QStringLiteral("C1\r\nC2\r\n"));
    EXPECT_EQ(Office.Sound.Beeps, beeps + 1);
}

TEST_F(RecipientListTest, DraggingAGroupTabOntoTheListDoesNothing) {
    QWidget tabs;
    tabs.setObjectName(QStringLiteral("tabGroup"));
    ShowContact(1, QStringLiteral("Byrne"));
    Drop(QStringLiteral("C1\r\n"), &tabs);
    EXPECT_EQ(lvRecipients().Rows().Count(), 0);
    EXPECT_EQ(RecipientContacts.Count(), 0);
}

TEST_F(RecipientListTest, ADropThroughTheWindowSystemArrives) {
    ShowWindow();
    ShowContact(1, QStringLiteral("Byrne"));
    QMimeData data;
    data.setText(QStringLiteral("C1\r\n"));
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(lvRecipients().viewport(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(lvRecipients().viewport(), &drop);
    EXPECT_EQ(RecipientTexts(), QStringList{QStringLiteral("Byrne, Ann")});
}

TEST_F(RecipientListTest, AGroupComesInExpandedAndTheOverlapIsSkipped) {
    const qint32 ann =
        Office.AddContact(QStringLiteral("Ahern"), QStringLiteral("Ann"), QStringLiteral("+1"));
    const qint32 bob =
        Office.AddContact(QStringLiteral("Brown"), QStringLiteral("Bob"), QStringLiteral("+2"));
    const qint32 cem =
        Office.AddContact(QStringLiteral("Celik"), QStringLiteral("Cem"), QStringLiteral("+3"));
    const qint16 group = Office.AddGroup(QStringLiteral("Drivers"), {ann, bob, cem});
    AddRecipient(static_cast<qint16>(bob), QStringLiteral("Kept"));
    Area->DropGroupByID(group);
    EXPECT_EQ(lvRecipients().Rows().Count(), 3);
    EXPECT_EQ(RecipientContacts.Count(), 3);
    EXPECT_EQ(RecipientTexts().first(), QStringLiteral("Kept, Ann"));
    EXPECT_TRUE(RecipientTexts().contains(QStringLiteral("Ahern, Ann")));
    EXPECT_TRUE(RecipientTexts().contains(QStringLiteral("Celik, Cem")));
}

TEST_F(RecipientListTest, TheLastNewMemberOfAGroupComesIntoView) {
    QList<qint32> members;
    for (int member = 0; member < 60; ++member) {
        members.append(Office.AddContact(QStringLiteral("Member %1").arg(member, 2, 10, QLatin1Char('0')),
                                         QStringLiteral("A"), QStringLiteral("+1")));
    }
    const qint16 group = Office.AddGroup(QStringLiteral("Many"), members);
    ShowWindow();
    Area->DropGroupByID(group);
    ASSERT_EQ(lvRecipients().Rows().Count(), 60);
    EXPECT_TRUE(lvRecipients().viewport()->rect().intersects(
        lvRecipients().visualRect(lvRecipients().model()->index(59, 0))));
}

TEST_F(RecipientListTest, AGroupThatCannotBeReadChangesNothing) {
    const qint16 group = Office.AddGroup(QStringLiteral("Drivers"));
    const QString key = AddRecipient(1, QStringLiteral("Byrne"));
    const ListRow row = lvRecipients().Rows().At(0);
    Office.PhonebookDB().CloseDatabase();
    Area->DropGroupByID(group);
    Area->UpdateStateDisplay();
    ASSERT_EQ(lvRecipients().Rows().Count(), 1);
    EXPECT_EQ(lvRecipients().Rows().At(0), row);
    ASSERT_EQ(RecipientContacts.Count(), 1);
    EXPECT_EQ(RecipientContacts.ContactByKey(key)->Surname, QStringLiteral("Byrne"));
    EXPECT_EQ(RecipientCaption(), QStringLiteral("Recipient List [1]"));
}

TEST_F(RecipientListTest, MembersOfAGroupComeInTheOrderInWhichThePhonebookNamesThem) {
    QList<qint32> members;
    for (const char* surname : {"Celik", "Ahern", "Brown"}) {
        members.append(
            Office.AddContact(QString::fromLatin1(surname), QStringLiteral("A"), QStringLiteral("+1")));
    }
    const qint16 group = Office.AddGroup(QStringLiteral("Drivers"), {members[2], members[0], members[1]});
    QStringList keys;
    const auto rows = mdlPhonebook::GetGroupMembers(Office.PhonebookValues, group);
    for (; !rows->EndOfFile(); rows->MoveNext()) {
        keys.append(Keys::ContactKey(rows->Value(u"cntID").toInt()));
    }
    ASSERT_EQ(keys.size(), 3);
    Area->DropGroupByID(group);
    EXPECT_EQ(lvRecipients().Rows().KeyList(), keys);
}

TEST_F(RecipientListTest, ARefreshKeepsTheOrderInWhichTheRecipientsCame) {
    AddRecipient(3, QStringLiteral("Ahern"));
    AddRecipient(1, QStringLiteral("Celik"));
    AddRecipient(2, QStringLiteral("Brown"));
    lvRecipients().SelectKey(QStringLiteral("C1"));
    QTest::keyClick(&lvRecipients(), Qt::Key_Delete);
    Area->RefreshRecipientList();
    EXPECT_EQ(lvRecipients().Rows().KeyList(),
              (QStringList{QStringLiteral("C3"), QStringLiteral("C1"), QStringLiteral("C2")}));
}

TEST_F(RecipientListTest, ARefreshPaintsTheListOnceItIsFilled) {
    ShowWindow();
    AddRecipient(1, QStringLiteral("Byrne"));
    QCoreApplication::processEvents();
    PaintCount paints(*lvRecipients().viewport());
    Area->RefreshRecipientList();
    EXPECT_EQ(paints.Count, 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(paints.Count, 1);
}

TEST_F(RecipientListTest, AMemberWhoseNumberIsTooLargeIsLeftOut) {
    const qint16 group = Office.AddGroup(QStringLiteral("Drivers"));
    Office.ExecuteOnPhonebook(
        QStringLiteral("INSERT INTO Contact (cntID, cntSurname, cntPhone) VALUES (40000,'Far','+1')"));
    Office.ExecuteOnPhonebook(
        QStringLiteral("INSERT INTO GroupMember (grpID, cntID) VALUES (%1, 40000)").arg(group));
    Area->DropGroupByID(group);
    EXPECT_EQ(lvRecipients().Rows().Count(), 0);
    EXPECT_EQ(RecipientContacts.Count(), 0);
}

TEST_F(RecipientListTest, ADoubleClickTakesTheRecipientOutOfBoth) {
    ShowWindow();
    AddRecipient(1, QStringLiteral("Byrne"));
    AddRecipient(2, QStringLiteral("Costa"));
    DoubleClick(0);
    EXPECT_EQ(RecipientTexts(), QStringList{QStringLiteral("Costa, Ann")});
    EXPECT_EQ(RecipientContacts.ContactByKey(QStringLiteral("C1")), nullptr);
    EXPECT_EQ(RecipientCaption(), QStringLiteral("Recipient List [1]"));
}

TEST_F(RecipientListTest, ADoubleClickOnEmptySpaceWithNoCurrentRowDoesNothing) {
    ShowWindow();
    AddRecipient(1, QStringLiteral("Byrne"));
    lvRecipients().setCurrentIndex(QModelIndex());
    const QPoint below(10, lvRecipients().viewport()->height() - 3);
    QTest::mouseDClick(lvRecipients().viewport(), Qt::LeftButton, {}, below);
    EXPECT_EQ(lvRecipients().Rows().Count(), 1);
    EXPECT_EQ(RecipientContacts.Count(), 1);
}

TEST_F(RecipientListTest, ADoubleClickAnywhereInTheListRemovesTheCurrentRow) {
    ShowWindow();
    AddRecipient(1, QStringLiteral("Byrne"));
    AddRecipient(2, QStringLiteral("Costa"));
    lvRecipients().SelectKey(QStringLiteral("C1"));
    const QPoint below(10, lvRecipients().viewport()->height() - 3);
    QTest::mouseDClick(lvRecipients().viewport(), Qt::LeftButton, {}, below);
    EXPECT_EQ(lvRecipients().Rows().KeyList(), QStringList{QStringLiteral("C2")});
    EXPECT_EQ(RecipientContacts.Count(), 1);
}

TEST_F(RecipientListTest, CtrlAThenDeleteEmptiesTheListButNotTheContactsAndDimsTheButtons) {
    ShowWindow();
    AddRecipient(1, QStringLiteral("Byrne"));
    AddRecipient(2, QStringLiteral("Costa"));
    txtMessage().SetText(QStringLiteral("Hello"));
    EXPECT_TRUE(cmdSendNow().isEnabled());
    lvRecipients().setFocus();
    QTest::keyClick(&lvRecipients(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(lvRecipients().SelectedKeys().size(), 2);
    QTest::keyClick(&lvRecipients(), Qt::Key_Delete);
    EXPECT_EQ(lvRecipients().Rows().Count(), 0);
    EXPECT_EQ(RecipientContacts.Count(), 2);
    EXPECT_FALSE(cmdSendNow().isEnabled());
    EXPECT_FALSE(cmdSendLater().isEnabled());
    EXPECT_EQ(RecipientCaption(), QStringLiteral("Recipient List"));
}

TEST_F(RecipientListTest, DeleteTakesOnlyTheSelectedRowsAndLeavesTheCursorThere) {
    ShowWindow();
    for (qint16 id = 1; id <= 5; ++id) {
        AddRecipient(id, QStringLiteral("Byrne"));
    }
    lvRecipients().setFocus();
    lvRecipients().SelectKey(QStringLiteral("C2"));
    QTest::keyClick(&lvRecipients(), Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(&lvRecipients(), Qt::Key_Delete);
    EXPECT_EQ(lvRecipients().Rows().KeyList(),
              (QStringList{QStringLiteral("C1"), QStringLiteral("C4"), QStringLiteral("C5")}));
    EXPECT_EQ(lvRecipients().CurrentKey(), QStringLiteral("C4"));
    QTest::keyClick(&lvRecipients(), Qt::Key_Delete);
    EXPECT_EQ(lvRecipients().Rows().Count(), 3) << "nothing is selected any more";
}

TEST_F(RecipientListTest, ARefreshBringsBackWhatDeleteTookAndTheGroupDoesNotAddItAgain) {
    const qint32 id = Office.AddContact(QStringLiteral("Ahern"), QStringLiteral("Ann"), QStringLiteral("+1"));
    const qint16 group = Office.AddGroup(QStringLiteral("Drivers"), {id});
    Area->DropGroupByID(group);
    Area->UpdateStateDisplay();
    lvRecipients().SelectAllRows();
    QTest::keyClick(&lvRecipients(), Qt::Key_Delete);
    Area->DropGroupByID(group);
    EXPECT_EQ(lvRecipients().Rows().Count(), 0);
    Area->RefreshRecipientList();
    EXPECT_EQ(RecipientTexts(), QStringList{QStringLiteral("Ahern, Ann")});
    EXPECT_EQ(RecipientCaption(), QStringLiteral("Recipient List [1]"));
}

TEST_F(RecipientListTest, ARefreshShowsTheNamesInTheNewOrderOfSorting) {
    AddRecipient(1, QStringLiteral("Byrne"));
    SortBy = 1;
    Area->RefreshRecipientList();
    EXPECT_EQ(RecipientTexts(), QStringList{QStringLiteral("Ann Byrne")});
}

TEST_F(RecipientListTest, TheListIsNotRedrawnWhileItIsRefreshed) {
    AddRecipient(1, QStringLiteral("Byrne"));
    bool wasRedrawn = true;
    QObject::connect(lvRecipients().model(), &QAbstractItemModel::modelReset, &Window,
                     [&] { wasRedrawn = lvRecipients().updatesEnabled(); });
    Area->RefreshRecipientList();
    EXPECT_FALSE(wasRedrawn);
    EXPECT_TRUE(lvRecipients().updatesEnabled());
}

TEST_F(RecipientListTest, ClearEmptiesTheRowsAndTheContactsWithoutAsking) {
    ShowWindow();
    AddRecipient(1, QStringLiteral("Byrne"));
    txtMessage().SetText(QStringLiteral("Hello"));
    QTest::mouseClick(&Find<QPushButton>("cmdClearRecipients"), Qt::LeftButton);
    EXPECT_EQ(lvRecipients().Rows().Count(), 0);
    EXPECT_EQ(RecipientContacts.Count(), 0);
    EXPECT_EQ(RecipientCaption(), QStringLiteral("Recipient List"));
    EXPECT_FALSE(cmdSendNow().isEnabled());
    EXPECT_EQ(txtMessage().Text(), QStringLiteral("Hello"));
}

TEST_F(RecipientListTest, TheRightButtonMakesAGroupOfAllRows) {
    ShowWindow();
    AddRecipient(1, QStringLiteral("Byrne"));
    AddRecipient(2, QStringLiteral("Costa"));
    lvRecipients().SelectKey(QStringLiteral("C2"));
    Door.ExpectMenu(QStringLiteral("Create New Group From Recipients"));
    QTest::mouseClick(lvRecipients().viewport(), Qt::RightButton, {}, QPoint(8, 8));
    ASSERT_EQ(Door.Menus.size(), 1);
    EXPECT_EQ(Door.Menus.first(), QStringList{QStringLiteral("Create New Group From Recipients")});
    EXPECT_EQ(Host.GroupKeys, (QStringList{QStringLiteral("C1"), QStringLiteral("C2")}));
}

TEST_F(RecipientListTest, ADismissedMenuMakesNoGroupAndAnEmptyListHasNoMenu) {
    ShowWindow();
    QTest::mouseClick(lvRecipients().viewport(), Qt::RightButton, {}, QPoint(8, 8));
    EXPECT_TRUE(Door.Menus.isEmpty());
    AddRecipient(1, QStringLiteral("Byrne"));
    Door.ExpectMenu(QString());
    QTest::mouseClick(lvRecipients().viewport(), Qt::RightButton, {}, QPoint(8, 8));
    EXPECT_TRUE(Host.Calls.isEmpty());
}

TEST_F(RecipientListTest, AnEditedContactBringsRowAndCopyInLineButNotTheUserFields) {
    AddRecipient(1, QStringLiteral("Byrne"));
    RecipientContacts.ContactByKey(QStringLiteral("C1"))->SetUserData(0, QStringLiteral("old"));
    Contact edited;
    edited.SetID(1);
    edited.Surname = QStringLiteral("Nolan");
    edited.Firstnames = QStringLiteral("Eve");
    edited.PhoneNumber = QStringLiteral("+99");
    edited.Note = QStringLiteral("note");
    edited.IsConfirmSend = true;
    edited.IsPrivate = true;
    edited.SetUserData(0, QStringLiteral("new"));
    Area->UpdateRecipient(edited, QStringLiteral(" Private Number  (requires confirmation) "));
    EXPECT_EQ(lvRecipients().Rows().At(0),
              (ListRow{QStringLiteral("C1"), QStringLiteral("Nolan, Eve"),
                       QStringLiteral(" Private Number  (requires confirmation) "), 1, false}));
    const Contact& copy = *RecipientContacts.ContactByKey(QStringLiteral("C1"));
    EXPECT_EQ(copy.Surname, QStringLiteral("Nolan"));
    EXPECT_EQ(copy.Firstnames, QStringLiteral("Eve"));
    EXPECT_EQ(copy.PhoneNumber, QStringLiteral("+99"));
    EXPECT_EQ(copy.Note, QStringLiteral("note"));
    EXPECT_TRUE(copy.IsConfirmSend);
    EXPECT_TRUE(copy.IsPrivate);
    EXPECT_EQ(copy.GetUserData(0), QStringLiteral("old"));
}

TEST_F(RecipientListTest, AnEditedContactThatIsNotInTheContactListChangesTheCopyAndNotTheRow) {
    AddRecipient(1, QStringLiteral("Byrne"));
    const ListRow row = lvRecipients().Rows().At(0);
    Contact edited;
    edited.SetID(1);
    edited.Surname = QStringLiteral("Nolan");
    edited.PhoneNumber = QStringLiteral("+99");
    edited.IsConfirmSend = true;
    Area->UpdateRecipient(edited, QString());
    EXPECT_EQ(lvRecipients().Rows().At(0), row);
    const Contact& copy = *RecipientContacts.ContactByKey(QStringLiteral("C1"));
    EXPECT_EQ(copy.Surname, QStringLiteral("Nolan"));
    EXPECT_EQ(copy.PhoneNumber, QStringLiteral("+99"));
    EXPECT_TRUE(copy.IsConfirmSend);
}

TEST_F(RecipientListTest, AnEditedContactThatIsNoRecipientChangesNothing) {
    AddRecipient(1, QStringLiteral("Byrne"));
    Contact other;
    other.SetID(2);
    other.Surname = QStringLiteral("Nolan");
    Area->UpdateRecipient(other, QStringLiteral(" "));
    EXPECT_EQ(RecipientTexts(), QStringList{QStringLiteral("Byrne, Ann")});
    EXPECT_EQ(RecipientContacts.Count(), 1);
}

TEST_F(RecipientListTest, EnterInTheListSendsNothing) {
    ShowWindow();
    AddRecipient(1, QStringLiteral("Byrne"));
    txtMessage().SetText(QStringLiteral("Hello"));
    lvRecipients().setFocus();
    QTest::keyClick(&lvRecipients(), Qt::Key_Return);
    QTest::keyClick(&txtEndWidth(), Qt::Key_Return);
    QTest::keyClick(&txtMessage(), Qt::Key_Return);
    EXPECT_TRUE(Office.MessageRows().isEmpty());
}

}  // namespace
