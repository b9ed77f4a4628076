#include "ContactRows.h"
#include "PhonebookOffice.h"
#include "controls/ListView.h"

#include <functional>
#include <utility>

namespace {

const QString Star = QStringLiteral("*");
const QString Drivers = QStringLiteral("Drivers");
const QString Kitchen = QStringLiteral("Kitchen");
const QString Favourite = QStringLiteral("Favourite");
constexpr int LockedByAnother = 3218;

/// A phonebook whose engine can be locked by another program for one attempt: before the next one events are
/// let through. Drivers has Ahern and Byrne, Kitchen has Costa.
class PumpedEvents : public PhonebookOffice {
protected:
    PumpedEvents() {
        Engine.Serve(QStringLiteral("FROM qry_Groups"),
                     {{QStringLiteral("grpID"), QStringLiteral("grpName")}, {{1, Drivers}, {2, Kitchen}}});
        const QVariantList ahern = Named(1, QStringLiteral("Ahern"));
        const QVariantList byrne = Named(2, QStringLiteral("Byrne"));
        const QVariantList costa = Named(3, QStringLiteral("Costa"));
        Serve(QStringLiteral("FROM qry_Contacts"), {ahern, byrne, costa});
        Serve(QStringLiteral("grpID = 1"), {ahern, byrne});
        Serve(QStringLiteral("grpID = 2"), {costa});
        Office.PhonebookValues.PhonebookDB =
            std::make_unique<DB>(DBServices{Engine, Office.Time, Office.Pump, Office.Drives, Office.Folders});
        Office.PhonebookValues.PhonebookDB->Filename = Office.PhonebookPath();
        EXPECT_TRUE(Office.PhonebookValues.PhonebookDB->OpenDatabase(engine::Mode::ReadWriteShared));
        Start();
        Office.Pump.Calls.clear();
    }
    ~PumpedEvents() override {
        Area.reset();
        Office.PhonebookValues.PhonebookDB.reset();
    }
    static QVariantList Named(int id, const QString& surname) {
        QVariantList row = ContactRows::Full(id);
        row[1] = surname;
        return row;
    }
    void Serve(const QString& part, const QList<QVariantList>& rows) {
        Engine.Serve(part, {ContactRows::AllColumns(), rows});
    }
    /// What the user does when events are let through the next time.
    void OnNextEvents(std::function<void()> act) {
        m_act = std::move(act);
        Office.Pump.OnProcess = [this](int) {
            if (const auto once = std::exchange(m_act, {})) {
                once();
            }
        };
    }
    /// The next operation of this kind finds the file locked once, and `act` is what the user does while it
    /// waits.
    void WhileLocked(FakeEngine::Operation operation, std::function<void()> act) {
        const int next = Engine.Attempts(operation) + 1;
        Engine.Fail(operation, LockedByAnother, next, next);
        OnNextEvents(std::move(act));
    }
    QStringList KeysOfAddressContacts() {
        QStringList keys;
        for (const Contact& contact : AddressContacts.list()) {
            keys.append(contact.Key);
        }
        return keys;
    }
    void ExpectOnShow(const QStringList& names) {
        EXPECT_EQ(Names(), names);
        EXPECT_EQ(KeysOfAddressContacts(), lvContacts().Rows().KeyList());
        EXPECT_TRUE(lvContacts().updatesEnabled());
        EXPECT_EQ(Area->cursor().shape(), Qt::ArrowCursor);
    }

    FakeEngine Engine;

private:
    std::function<void()> m_act;
};

TEST_F(PumpedEvents, AnotherGroupChosenWhileOneIsReadIsShownAlone) {
    WhileLocked(FakeEngine::Operation::Recordset, [this] { ClickTab(Kitchen); });
    ClickTab(Drivers);
    EXPECT_EQ(tabGroup().Caption(tabGroup().Selected()), Kitchen);
    ExpectOnShow({QStringLiteral("Costa, Aoife")});
    ClickTab(Drivers);
    ExpectOnShow({QStringLiteral("Ahern, Aoife"), QStringLiteral("Byrne, Aoife")});
}

TEST_F(PumpedEvents, AGroupChosenWhileTheAddressBookIsReadIsShownAlone) {
    WhileLocked(FakeEngine::Operation::Recordset, [this] { ClickTab(Kitchen); });
    ClickLetter(QStringLiteral("A"));
    ExpectOnShow({QStringLiteral("Costa, Aoife")});
}

TEST_F(PumpedEvents, TheEmptyFavouritesStayEmptyWhenAGroupBeforeThemIsReadLate) {
    WhileLocked(FakeEngine::Operation::Recordset, [this] { ClickTab(Favourite); });
    ClickTab(Drivers);
    ExpectOnShow({});
}

TEST_F(PumpedEvents, WhileAListIsReadTheWindowShowsTheHourglass) {
    Qt::CursorShape pointer = Qt::ArrowCursor;
    WhileLocked(FakeEngine::Operation::Recordset, [&] { pointer = Area->cursor().shape(); });
    ClickTab(Drivers);
    EXPECT_EQ(pointer, Qt::WaitCursor);
    EXPECT_EQ(Area->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(PumpedEvents, ATabClickedWhileAGroupIsDeletedStays) {
    Office.Boxes.Expect(BoxAnswer::Yes);
    Door.ExpectMenu(QStringLiteral("Delete Group 'Drivers'"));
    Door.ExpectMenu(QString());
    // The first events that run are those of the click itself.
    OnNextEvents([this] {
        WhileLocked(FakeEngine::Operation::Execute, [this] { ClickTab(Kitchen, Qt::RightButton); });
    });
    ClickTab(Drivers, Qt::RightButton);
    EXPECT_EQ(Door.Menus.size(), 2);
    EXPECT_EQ(TabCaptions(), QStringList({Star, Kitchen, Favourite, QStringLiteral("Private")}));
    EXPECT_EQ(Engine.Statements.filter(QStringLiteral("DELETE FROM ContactGroup WHERE grpID = 1")).size(), 2);
    EXPECT_TRUE(
        Engine.Statements.filter(QStringLiteral("DELETE FROM ContactGroup WHERE grpID = 2")).isEmpty());
}

TEST_F(PumpedEvents, WhileDroppedContactsAreWrittenTheWindowShowsTheHourglass) {
    Qt::CursorShape pointer = Qt::ArrowCursor;
    WhileLocked(FakeEngine::Operation::Execute, [&] { pointer = Area->cursor().shape(); });
    DropOn(Kitchen, QStringLiteral("C1\r\n"));
    EXPECT_EQ(pointer, Qt::WaitCursor);
    EXPECT_EQ(Area->cursor().shape(), Qt::ArrowCursor);
    EXPECT_EQ(Office.Pump.Calls.last(), 1) << "pending events run once behind it";
}

TEST_F(PumpedEvents, ADismissedMenuAsksTheStoreForTheGroupThatCannotBe) {
    SelectRows({0, 2});
    Door.ExpectMenu(QString());
    ClickRow(2, Qt::RightButton);
    EXPECT_EQ(Engine.Statements.filter(QStringLiteral("INSERT")),
              QStringList({QStringLiteral("INSERT INTO GroupMember (grpID, cntID) VALUES (-100,1\t)"),
                           QStringLiteral("INSERT INTO GroupMember (grpID, cntID) VALUES (-100,3\t)")}));
}

TEST_F(PumpedEvents, ATabWithTheNumberZeroTakesContactsAsAGroupDoes) {
    tabGroup().SetTag(2, QStringLiteral("G0"));
    EXPECT_TRUE(tabGroup().TakesText(QStringLiteral("lvContacts"), 2));
    DropOn(Kitchen, QStringLiteral("C1\r\n"));
    EXPECT_EQ(Engine.Statements.filter(QStringLiteral("INSERT")),
              QStringList(QStringLiteral("INSERT INTO GroupMember (grpID, cntID) VALUES (0,1)")));
}

}  // namespace
