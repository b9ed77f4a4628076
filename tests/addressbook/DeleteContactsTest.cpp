#include "PhonebookOffice.h"

#include <QApplication>

namespace {

const QString Drivers = QStringLiteral("Drivers");

class DeleteContacts : public PhonebookOffice {
protected:
    DeleteContacts() {
        for (const QStringView surname :
             {QStringView(u"Ahern"), QStringView(u"Byrne"), QStringView(u"Costa")}) {
            m_ids.append(
                Office.AddContact(surname.toString(), QStringLiteral("Al"), QStringLiteral("+35311")));
        }
        Office.AddGroup(Drivers, {m_ids[0], m_ids[1]});
        Office.PhonebookValues.cfgAllowPrivateGroup = true;
        Start();
    }
    /// Puts a contact into the list that is on show, and selects it.
    void SelectOneHere() {
        Contact contact;
        contact.SetID(static_cast<qint16>(m_ids[0]));
        m_onShow.Add(contact);
        Area->FillContactList(m_onShow);
        ClickRow(0);
        ASSERT_EQ(lvContacts().SelectedCount(), 1);
    }
    void ExpectBox(BoxAnswer answer) { Office.Boxes.Expect(answer); }
    BoxRequest Question(const QString& text) {
        return {QStringLiteral("Larkspan Messenger"), text, BoxIcon::Question, BoxButtons::YesNo};
    }

    QList<qint32> m_ids;
    ContactList m_onShow;
};

TEST_F(DeleteContacts, OneContactOnEveryoneIsAskedForByName) {
    ClickRow(1);
    ExpectBox(BoxAnswer::Yes);
    Press(u"cmdDeleteContact");
    EXPECT_EQ(Office.Boxes.Shown.last(), Question(QStringLiteral("DELETE Byrne, Al from the Address Book")));
    EXPECT_EQ(Host.PasswordsAsked, QList<bool>({false}));
    EXPECT_EQ(Office.ContactRows().size(), 2);
    EXPECT_EQ(Names(), QStringList({QStringLiteral("Ahern, Al"), QStringLiteral("Costa, Al")}));
}

TEST_F(DeleteContacts, TwoAreAskedForByTheirCount) {
    SelectRows({0, 2});
    ExpectBox(BoxAnswer::Yes);
    Press(u"cmdDeleteContact");
    EXPECT_EQ(Office.Boxes.Shown.last(), Question(QStringLiteral("DELETE 2 Contacts from the Address Book")));
    EXPECT_EQ(Names(), QStringList(QStringLiteral("Byrne, Al")));
}

TEST_F(DeleteContacts, OnAGroupTheContactIsOnlyRemovedFromIt) {
    ClickTab(Drivers);
    ClickRow(0);
    ExpectBox(BoxAnswer::Yes);
    Press(u"cmdDeleteContact");
    EXPECT_EQ(Office.Boxes.Shown.last(), Question(QStringLiteral("REMOVE Ahern, Al from the Drivers Group")));
    EXPECT_EQ(Names(), QStringList(QStringLiteral("Byrne, Al")));
    EXPECT_EQ(Office.ContactRows().size(), 3);
    EXPECT_EQ(Host.PasswordsAsked, QList<bool>({false}));
}

TEST_F(DeleteContacts, NoDeletesNothing) {
    ClickRow(1);
    ExpectBox(BoxAnswer::No);
    Press(u"cmdDeleteContact");
    EXPECT_EQ(Office.ContactRows().size(), 3);
    EXPECT_EQ(Names().size(), 3);
}

TEST_F(DeleteContacts, WithNothingSelectedNothingIsAsked) {
    Press(u"cmdDeleteContact");
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
    EXPECT_EQ(Office.ContactRows().size(), 3);
}

TEST_F(DeleteContacts, AWrongPasswordEndsItWithTheFocusInTheList) {
    ClickRow(1);
    tabGroup().setFocus();
    Host.IsPasswordRight = false;
    Press(u"cmdDeleteContact");
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
    EXPECT_EQ(Office.ContactRows().size(), 3);
    EXPECT_EQ(Area->window()->focusWidget(), &lvContacts());
    EXPECT_EQ(LabelText(u"lblPhone"), QStringLiteral("+35311")) << "the details stay";
}

TEST_F(DeleteContacts, OnFavouritesNoPasswordIsAsked) {
    ClickTab(QStringLiteral("Favourite"));
    SelectOneHere();
    Press(u"cmdDeleteContact");
    EXPECT_TRUE(Host.PasswordsAsked.isEmpty());
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(DeleteContacts, OnThePrivateTabNothingIsDoneAndNothingAsked) {
    ClickTab(QStringLiteral("Private"));
    SelectOneHere();
    Press(u"cmdDeleteContact");
    EXPECT_TRUE(Host.PasswordsAsked.isEmpty());
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
    EXPECT_EQ(Office.ContactRows().size(), 3);
}

TEST_F(DeleteContacts, AfterwardsTheDetailsAreEmptyAndTheListHasTheFocus) {
    ClickRow(1);
    EXPECT_EQ(LabelText(u"lblPhone"), QStringLiteral("+35311"));
    ExpectBox(BoxAnswer::No);
    Press(u"cmdDeleteContact");
    EXPECT_TRUE(LabelText(u"lblPhone").isEmpty());
    EXPECT_EQ(Area->window()->focusWidget(), &lvContacts());
    EXPECT_EQ(Area->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(DeleteContacts, TheQuestionItselfHasNoHourglass) {
    ClickRow(1);
    ExpectBox(BoxAnswer::No);
    Qt::CursorShape overTheWindow = Qt::ArrowCursor;
    Qt::CursorShape overTheQuestion = Qt::WaitCursor;
    bool isForcedEverywhere = true;
    Boxes.OnShow = [&] {
        const QDialog question(Area->window());
        overTheWindow = Area->window()->cursor().shape();
        overTheQuestion = question.cursor().shape();
        isForcedEverywhere = QGuiApplication::overrideCursor() != nullptr;
    };
    Press(u"cmdDeleteContact");
    EXPECT_EQ(overTheWindow, Qt::WaitCursor);
    EXPECT_EQ(overTheQuestion, Qt::ArrowCursor);
    EXPECT_FALSE(isForcedEverywhere);
}

TEST_F(DeleteContacts, TheDeleteKeyIsTheButton) {
    ClickRow(0);
    ExpectBox(BoxAnswer::Yes);
    QTest::keyClick(&lvContacts(), Qt::Key_Delete);
    EXPECT_EQ(Office.ContactRows().size(), 2);
}

}  // namespace
