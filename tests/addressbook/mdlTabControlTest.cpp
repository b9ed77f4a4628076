#include "addressbook/mdlTabControl.h"

#include "PhonebookOffice.h"

namespace {

/// A strip of tabs with these numbers, captioned by them.
class mdlTabControlTest : public ::testing::Test {
protected:
    void Add(std::initializer_list<int> numbers) {
        for (const int number : numbers) {
            m_tabs.Insert(m_tabs.Count(), QString::number(number));
            m_tabs.SetTag(m_tabs.Count() - 1, QStringLiteral("G%1").arg(number));
        }
    }
    void Store(const QString& order) {
        m_office.AppSettings.SetValue(QStringLiteral("Display"), QStringLiteral("TabOrder"), order);
    }
    QList<qint16> Restored(const QString& order) {
        Store(order);
        mdlTabControl::RestoreTabOrder(m_tabs, m_office.AppSettings);
        return mdlTabControl::GetTabIDs(m_tabs);
    }

    TempOffice m_office;
    TabControl m_tabs{TabControl::Look::Strip};
};

using Order = QList<qint16>;

TEST_F(mdlTabControlTest, TheSavedOrderHasTheNumbersOfAllTabsWithoutBlanks) {
    Add({-1, 5, 2, -2, -3});
    mdlTabControl::SaveTabOrder(m_tabs, m_office.AppSettings);
    EXPECT_EQ(m_office.AppSettings.GetValue(QStringLiteral("Display"), QStringLiteral("TabOrder"), QString()),
              QStringLiteral("-1,5,2,-2,-3"));
    EXPECT_EQ(mdlTabControl::LoadTabOrder(m_office.AppSettings), Order({-1, 5, 2, -2, -3}));
}

TEST_F(mdlTabControlTest, NothingIsRestoredFromAnEmptyOrder) {
    Add({-1, 5, -2});
    EXPECT_EQ(Restored(QString()), Order({-1, 5, -2}));
}

TEST_F(mdlTabControlTest, ATabIsMovedToItsPlaceInTheList) {
    Add({-1, 2, 5, -2});
    EXPECT_EQ(Restored(QStringLiteral("5,-2,-1,2")), Order({5, -2, -1, 2}));
}

TEST_F(mdlTabControlTest, MalformedEntriesAreSkipped) {
    Add({-1, 2, 5, -2});
    EXPECT_EQ(Restored(QStringLiteral("x,5,99999,")), Order({-1, 5, 2, -2}));
}

TEST_F(mdlTabControlTest, TabsAreMovedWithCaptionTagAndSelection) {
    Add({-1, 2, 5, -2});
    m_tabs.Select(2);
    static_cast<void>(Restored(QStringLiteral("5,-1")));
    EXPECT_EQ(m_tabs.Caption(0), QStringLiteral("5"));
    EXPECT_EQ(m_tabs.Tag(0), QStringLiteral("G5"));
    EXPECT_EQ(m_tabs.Selected(), 0);
}

TEST_F(mdlTabControlTest, ATabWithANegativeNumberIsASystemTab) {
    Add({-1, 5});
    EXPECT_TRUE(mdlTabControl::IsSystemTab(m_tabs, 0));
    EXPECT_FALSE(mdlTabControl::IsSystemTab(m_tabs, 1));
}

TEST_F(mdlTabControlTest, UpMovesAGroupOnePlaceAndThePositionFollows) {
    Add({-1, 2, 5, -2});
    int position = 2;
    mdlTabControl::MoveTabUp(m_tabs, position);
    EXPECT_EQ(mdlTabControl::GetTabIDs(m_tabs), Order({-1, 5, 2, -2}));
    EXPECT_EQ(position, 1);
    EXPECT_EQ(m_tabs.Caption(1), QStringLiteral("5"));
    mdlTabControl::MoveTabUp(m_tabs, position);
    EXPECT_EQ(mdlTabControl::GetTabIDs(m_tabs), Order({-1, 5, 2, -2})) << "position 1 is the top";
}

TEST_F(mdlTabControlTest, DownStopsAtTheThirdTabFromTheEndAndOnlyThere) {
    Add({-1, 2, 5, 7, -2, -3});
    int position = 1;
    mdlTabControl::MoveTabDown(m_tabs, position);
    mdlTabControl::MoveTabDown(m_tabs, position);
    EXPECT_EQ(position, 3);
    mdlTabControl::MoveTabDown(m_tabs, position);
    EXPECT_EQ(mdlTabControl::GetTabIDs(m_tabs), Order({-1, 5, 7, 2, -2, -3}));
    m_tabs.Move(3, 4);
    position = 4;
    mdlTabControl::MoveTabDown(m_tabs, position);
    EXPECT_EQ(mdlTabControl::GetTabIDs(m_tabs), Order({-1, 5, 7, -2, -3, 2})) << "equality, not a bound";
}

TEST_F(mdlTabControlTest, AGroupAtEitherEndIsMovedNoFurther) {
    Add({2, -1, -2, -3, 5});
    int position = 0;
    mdlTabControl::MoveTabUp(m_tabs, position);
    EXPECT_EQ(mdlTabControl::GetTabIDs(m_tabs), Order({2, -1, -2, -3, 5}));
    EXPECT_EQ(position, 0);
    EXPECT_EQ(m_tabs.Caption(0), QStringLiteral("2"));
    position = 4;
    mdlTabControl::MoveTabDown(m_tabs, position);
    EXPECT_EQ(mdlTabControl::GetTabIDs(m_tabs), Order({2, -1, -2, -3, 5}));
    EXPECT_EQ(position, 4);
    EXPECT_EQ(m_tabs.Caption(4), QStringLiteral("5"));
}

TEST_F(mdlTabControlTest, SystemTabsAreMovedByNeither) {
    Add({-1, 2, -2, 5});
    int position = 2;
    mdlTabControl::MoveTabUp(m_tabs, position);
    mdlTabControl::MoveTabDown(m_tabs, position);
    EXPECT_EQ(mdlTabControl::GetTabIDs(m_tabs), Order({-1, 2, -2, 5}));
}

TEST_F(mdlTabControlTest, GroupsAreInsertedFromAPositionOnWhichMovesPastThem) {
    const qint16 drivers = m_office.AddGroup(QStringLiteral("Drivers"));
    const qint16 crew = m_office.AddGroup(QStringLiteral("Crew"));
    Add({-1, -2});
    int index = 1;
    mdlTabControl::LoadGroupTabs(m_office.PhonebookValues, m_tabs, index);
    EXPECT_EQ(index, 3);
    EXPECT_EQ(mdlTabControl::GetTabIDs(m_tabs), Order({-1, crew, drivers, -2}));
    EXPECT_EQ(m_tabs.Caption(1), QStringLiteral("Crew"));
}

}  // namespace
