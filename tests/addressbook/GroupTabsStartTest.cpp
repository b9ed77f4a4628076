#include "PhonebookOffice.h"

#include <QRegularExpression>

namespace {

class GroupTabsStart : public PhonebookOffice {
protected:
    GroupTabsStart() { Office.PhonebookValues.cfgAllowPrivateGroup = false; }
    void Store(const QString& order) {
        Office.AppSettings.SetValue(QStringLiteral("Display"), QStringLiteral("TabOrder"), order);
    }
    QString Stored() {
        return Office.AppSettings.GetValue(QStringLiteral("Display"), QStringLiteral("TabOrder"), QString());
    }
    QStringList Letters() {
        QStringList letters;
        for (int tab = 0; tab < tabAlpha().Count(); ++tab) {
            letters.append(tabAlpha().Caption(tab));
        }
        return letters;
    }
    void AddGroups(std::initializer_list<QStringView> names) {
        for (QStringView name : names) {
            m_ids.append(Office.AddGroup(name.toString()));
        }
    }

    QList<qint16> m_ids;
};

const QString Star = QStringLiteral("*");
const QString Favourite = QStringLiteral("Favourite");

TEST_F(GroupTabsStart, WithNoStoredOrderTheTabsStandInTheFixedOrder) {
    AddGroups({u"Kitchen", u"Drivers"});
    Start();
    EXPECT_EQ(TabCaptions(),
              QStringList({Star, QStringLiteral("Drivers"), QStringLiteral("Kitchen"), Favourite}));
    EXPECT_EQ(TabTags(), QStringList({QStringLiteral("G-1"), QStringLiteral("G%1").arg(m_ids[1]),
                                      QStringLiteral("G%1").arg(m_ids[0]), QStringLiteral("G-2")}));
    EXPECT_EQ(tabGroup().Selected(), 0);
}

TEST_F(GroupTabsStart, ThePrivateTabIsThereOnlyWhereItIsAllowed) {
    Office.PhonebookValues.cfgAllowPrivateGroup = true;
    Start();
    EXPECT_EQ(TabCaptions(), QStringList({Star, Favourite, QStringLiteral("Private")}));
    EXPECT_EQ(TabTags().last(), QStringLiteral("G-3"));
}

TEST_F(GroupTabsStart, InTheUnitedStatesTheTabIsSpeltFavorite) {
    LocaleCountry = QStringLiteral("US");
    Start();
    EXPECT_EQ(TabCaptions().last(), QStringLiteral("Favorite"));
}

TEST_F(GroupTabsStart, AStoredOrderOfFavouritesAndEveryonePutsThemFirstAndTheGroupsBehind) {
    AddGroups({u"Drivers", u"Kitchen"});
    Store(QStringLiteral("-2,-1"));
    Start();
    EXPECT_EQ(TabCaptions(),
              QStringList({Favourite, Star, QStringLiteral("Drivers"), QStringLiteral("Kitchen")}));
}

TEST_F(GroupTabsStart, AGroupAddedByAnotherStationIsFoundBehindTheFavouritesTabAfterRestart) {
    AddGroups({u"Drivers", u"Kitchen"});
    Start();
    Area->SaveTabOrder();
    AddGroups({u"Crew"});
    Start();
    EXPECT_EQ(TabCaptions(), QStringList({Star, QStringLiteral("Drivers"), QStringLiteral("Kitchen"),
                                          Favourite, QStringLiteral("Crew")}));
}

TEST_F(GroupTabsStart, AfterTheGroupAtPosition2WasDeletedTheOthersKeepASensibleOrder) {
    AddGroups({u"A", u"B", u"C", u"D"});
    Start();
    Store(QStringLiteral("-1,%1,%2,%3,%4,-2").arg(m_ids[3]).arg(m_ids[2]).arg(m_ids[1]).arg(m_ids[0]));
    Office.ExecuteOnPhonebook(QStringLiteral("DELETE FROM ContactGroup WHERE grpID = %1").arg(m_ids[2]));
    Start();
    EXPECT_EQ(TabCaptions(),
              QStringList({Star, QStringLiteral("D"), QStringLiteral("B"), QStringLiteral("A"), Favourite}));
}

TEST_F(GroupTabsStart, TheOrderIsWrittenOnlyWhenItIsSaved) {
    AddGroups({u"Drivers"});
    Store(QStringLiteral("77,-2,-1"));
    Start();
    EXPECT_EQ(Stored(), QStringLiteral("77,-2,-1"));
    Area->SaveTabOrder();
    EXPECT_EQ(Stored(), QStringLiteral("-2,%1,-1").arg(m_ids[0]));
}

TEST_F(GroupTabsStart, GroupsThatCannotBeReadAreToldToTheLogAndTheOtherTabsAreThere) {
    AddGroups({u"Drivers"});
    Office.PhonebookDB().CloseDatabase();
    Start();
    EXPECT_EQ(TabCaptions(), QStringList({Star, Favourite}));
    EXPECT_TRUE(LogText().contains(QRegularExpression(QStringLiteral("InitGrouptabs_Error : -?\\d+ \\S"))))
        << LogText().toStdString();
}

TEST_F(GroupTabsStart, TheLettersEndInASharpOnlyFromTheSecondVersionOfThePhonebookOn) {
    Office.PhonebookValues.cfgVersion = 2;
    Start();
    EXPECT_EQ(Letters().size(), 28);
    EXPECT_EQ(Letters().first(), Star);
    EXPECT_EQ(Letters().at(1), QStringLiteral("A"));
    EXPECT_EQ(Letters().at(26), QStringLiteral("Z"));
    EXPECT_EQ(Letters().last(), QStringLiteral("#"));
    EXPECT_EQ(tabAlpha().Selected(), 0);
    Office.PhonebookValues.cfgVersion = 1;
    Start();
    EXPECT_EQ(Letters().size(), 27);
    EXPECT_EQ(Letters().last(), QStringLiteral("Z"));
}

TEST_F(GroupTabsStart, InitialisingAgainRebuildsTheTabs) {
    Start();
    AddGroups({u"Drivers"});
    Area->InitGroupTabs();
    EXPECT_EQ(TabCaptions(), QStringList({Star, QStringLiteral("Drivers"), Favourite}));
}

TEST_F(GroupTabsStart, WhileTheWindowLoadsAClickOnATabFillsNothing) {
    Office.AddContact(QStringLiteral("Ahern"), QStringLiteral("Aoife"), QStringLiteral("+3531"));
    AddGroups({u"Drivers"});
    Start();
    IsInitialising = true;
    ClickTab(QStringLiteral("Drivers"));
    EXPECT_EQ(Names().size(), 1) << "the list is still the one before";
    ClickLetter(QStringLiteral("B"));
    EXPECT_EQ(Names().size(), 1);
    EXPECT_EQ(tabGroup().Selected(), 1) << "a letter does not lead back either";
}

TEST_F(GroupTabsStart, ALetterSelectsTheFirstTabWhateverStandsThere) {
    Office.AddContact(QStringLiteral("Ahern"), QStringLiteral("Aoife"), QStringLiteral("+3531"));
    AddGroups({u"Drivers"});
    Store(QStringLiteral("-2,-1"));
    Start();
    ClickTab(QStringLiteral("Drivers"));
    ClickLetter(QStringLiteral("A"));
    EXPECT_EQ(tabGroup().Selected(), 0);
    EXPECT_EQ(tabGroup().Caption(0), Favourite);
    EXPECT_TRUE(Names().isEmpty());
}

}  // namespace
