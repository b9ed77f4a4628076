#include "store/office/SampleOffice.h"

#include "core/PatternMatcher.h"
#include "larkspan-gateway/Outcomes.h"
#include "store/Outbox.h"
#include "store/engine/Connection.h"
#include "store/office/SampleNames.h"
#include "store/office/SampleNumbers.h"
#include "tools/TestOffice.h"

#include <QSet>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

SampleOffice Office(int contacts = SampleOffice::DefaultContacts, quint32 seed = 1) {
    return SampleOffice({contacts, seed});
}

template <typename Test>
int CountOf(const SampleOffice& office, Test&& test) {
    const auto& people = office.People();
    return static_cast<int>(
        std::count_if(people.begin(), people.end(), [&](const auto& person) { return test(person.Fields); }));
}

bool IsPlain(const QString& text) {
    return std::all_of(text.begin(), text.end(), [](QChar character) { return character.unicode() < 0x80; });
}

QString Everything(const SampleOffice& office) {
    QString all;
    for (const auto& person : office.People()) {
        const ContactFields& fields = person.Fields;
        all += fields.Surname + u'|' + fields.Firstnames + u'|' + fields.Phone + u'|' + fields.Note + u'|' +
               fields.UserFields[0] + u'|' + fields.UserFields[1] + u'|' + fields.UserFields[2] + u'|' +
               QString::number(fields.ConfirmSend) + QString::number(fields.IsPrivate);
        for (const int group : person.Groups) {
            all += u'g' + QString::number(group);
        }
        all += u'\n';
    }
    return all;
}

}  // namespace

TEST(SampleOffice, HasAsManyContactsAsAsked) {
    for (const int count : {0, 1, 3, 10, 49, 50, 51, 250, 1000}) {
        EXPECT_EQ(Office(count).People().size(), count);
    }
}

TEST(SampleOffice, TheSamePlanGivesTheSameOfficeAndAnotherSeedAnother) {
    EXPECT_EQ(Everything(Office(300, 5)), Everything(Office(300, 5)));
    EXPECT_NE(Everything(Office(300, 5)), Everything(Office(300, 6)));
}

TEST(SampleOffice, MoreThan32767ContactsAreRefused) {
    EXPECT_EQ(Office(32767).People().size(), 32767);
    EXPECT_THROW(Office(32768), std::invalid_argument);
    EXPECT_THROW(Office(-1), std::invalid_argument);
}

TEST(SampleOffice, NamesHaveApostrophesAccentsDigitsAndAreSometimesSingle) {
    const SampleOffice office = Office();
    EXPECT_GE(CountOf(office, [](const auto& f) { return f.Surname.contains(u'\''); }), 5);
    EXPECT_GE(CountOf(office, [](const auto& f) { return !IsPlain(f.Surname + f.Firstnames); }), 100);
    EXPECT_GE(CountOf(office, [](const auto& f) { return f.Surname == u"2nd Floor Desk"; }), 1);
    EXPECT_GE(CountOf(office, [](const auto& f) { return f.Firstnames.isEmpty(); }), 2);
    EXPECT_GE(CountOf(office, [](const auto& f) { return f.Surname.isEmpty(); }), 1);
    EXPECT_GE(CountOf(office, [](const auto& f) { return (f.Firstnames + u' ' + f.Surname).size() > 30; }),
              1);
}

TEST(SampleOffice, PeopleOfEveryLanguageWorkThere) {
    const SampleOffice office = Office();
    for (const SampleLanguage& language : SampleNames::Languages()) {
        const QStringView name = language.Name;
        const auto isOfLanguage = [&](const ContactFields& fields) {
            return std::find(language.Surnames.begin(), language.Surnames.end(), fields.Surname) !=
                       language.Surnames.end() &&
                   std::find(language.Firstnames.begin(), language.Firstnames.end(), fields.Firstnames) !=
                       language.Firstnames.end();
        };
        EXPECT_GE(CountOf(office, isOfLanguage), 3) << name.toString().toStdString();
    }
    EXPECT_GE(SampleNames::Languages().size(), 11U);
}

TEST(SampleOffice, SomeNumbersArePrivateSomeContactsWantConfirmationAndSomeHaveNotes) {
    const SampleOffice office = Office();
    EXPECT_GE(CountOf(office, [](const auto& f) { return f.IsPrivate; }), 5);
    EXPECT_GE(CountOf(office, [](const auto& f) { return f.ConfirmSend; }), 5);
    EXPECT_GE(CountOf(office, [](const auto& f) { return !f.Note.isEmpty(); }), 20);
    EXPECT_GE(CountOf(office, [](const auto& f) { return f.Note.contains(u'\n'); }), 1);
    EXPECT_LT(CountOf(office, [](const auto& f) { return f.IsPrivate; }), 40);
}

TEST(SampleOffice, EveryContactHasAValidNumberOfItsOwn) {
    const SampleOffice office = Office(32767);
    const PatternMatcher matcher;
    QSet<QString> numbers;
    for (const auto& person : office.People()) {
        ASSERT_TRUE(matcher.IsInternationalPhone(person.Fields.Phone)) << person.Fields.Phone.toStdString();
        numbers.insert(person.Fields.Phone);
    }
    EXPECT_EQ(numbers.size(), office.People().size());
}

TEST(SampleOffice, EveryNumberIsFromARangeThatIsKeptFreeForFiction) {
    const QStringList ranges{QStringLiteral("+3532091"), QStringLiteral("+447700900"),
                             QStringLiteral("+3363998"), QStringLiteral("+493023125"),
                             QStringLiteral("+467017406")};
    const SampleOffice office = Office(5000);
    for (const auto& person : office.People()) {
        const QString& phone = person.Fields.Phone;
        EXPECT_TRUE(std::any_of(ranges.begin(), ranges.end(), [&](const QString& range) {
            return phone.startsWith(range);
        })) << phone.toStdString();
    }
    for (const QString& range : ranges) {
        EXPECT_GE(CountOf(office, [&](const auto& f) { return f.Phone.startsWith(range); }), 10)
            << range.toStdString();
    }
}

TEST(SampleOffice, OnlyTheTestLinesHaveNumbersOnWhichTheGatewayFails) {
    const SampleOffice office = Office(32767);
    QStringList failing;
    for (const auto& person : office.People()) {
        for (const FailureRule& rule : Outcomes::DefaultRules()) {
            if (person.Fields.Phone.endsWith(rule.Digits)) {
                failing.append(person.Fields.Surname);
                EXPECT_TRUE(person.Groups.isEmpty());
            }
        }
    }
    EXPECT_EQ(failing, QStringList(SampleOffice::FailingContacts, QStringLiteral("Testline")));
}

TEST(SampleOffice, ThereAreEightGroupsWithShortNamesAndMembersInEach) {
    const QStringList groups = SampleOffice::Groups();
    EXPECT_EQ(groups.size(), 8);
    for (const QString& name : groups) {
        EXPECT_LE(name.size(), 10) << name.toStdString();
    }
    EXPECT_EQ(QSet<QString>(groups.begin(), groups.end()).size(), 8);
    QList<int> members(8);
    const SampleOffice office = Office();
    for (const auto& person : office.People()) {
        for (const int group : person.Groups) {
            ++members[group];
        }
    }
    for (int group = 0; group < 8; ++group) {
        EXPECT_GE(members[group], 5) << groups[group].toStdString();
    }
}

TEST(SampleOffice, StandsInThePhonebookToTheLetter) {
    const SampleOffice::Plan plan{250, 9};
    const TestOffice office(plan);
    const SampleOffice expected(plan);
    QVariantList surnames;
    QVariantList notes;
    QVariantList keys;
    for (const auto& person : expected.People()) {
        surnames.append(person.Fields.Surname);
        notes.append(person.Fields.Note);
        keys.append(mdlPhonebook::GetAlphaKey(person.Fields.Surname));
    }
    const auto column = [&](const QString& name) {
        return office.Column(office.Phonebook(),
                             QStringLiteral("SELECT %1 FROM Contact ORDER BY cntID").arg(name));
    };
    EXPECT_EQ(column(QStringLiteral("cntSurname")), surnames);
    EXPECT_EQ(column(QStringLiteral("cntNote")), notes);
    EXPECT_EQ(column(QStringLiteral("cntAlphaSurname")), keys);
    EXPECT_EQ(column(QStringLiteral("cntID")).constLast().toInt(), 250);
}

TEST(SampleOffice, GroupsTailsCaptionsAndCompanyStandInThePhonebook) {
    const SampleOffice::Plan plan{100, 9};
    const TestOffice office(plan);
    int memberships = 0;
    for (const auto& person : SampleOffice(plan).People()) {
        memberships += static_cast<int>(person.Groups.size());
    }
    const auto all = [&](const QString& sql) { return office.Column(office.Phonebook(), sql); };
    EXPECT_EQ(all(QStringLiteral("SELECT grpName FROM ContactGroup")).size(), 8);
    EXPECT_EQ(all(QStringLiteral("SELECT grpID FROM GroupMember")).size(), memberships);
    EXPECT_EQ(all(QStringLiteral("SELECT mtlText FROM MessageTail")).size(), 3);
    EXPECT_EQ(all(QStringLiteral("SELECT mtlText FROM MessageTail WHERE mtlDefault = TRUE")),
              QVariantList{SampleOffice::Tails().constFirst()});
    EXPECT_EQ(all(QStringLiteral("SELECT hdrFieldCaption FROM UserFields ORDER BY hdrFieldID")),
              (QVariantList{QStringLiteral("Department"), QStringLiteral("Room"), QStringLiteral("Badge")}));
    EXPECT_EQ(all(QStringLiteral("SELECT cfgCompany FROM Config")), QVariantList{SampleOffice::Company()});
    EXPECT_EQ(all(QStringLiteral("SELECT cfgNumberPrefix FROM Config")),
              QVariantList{QStringLiteral("+353")});
    EXPECT_EQ(all(QStringLiteral("SELECT cfgRunWizard FROM Config")).constFirst().toBool(), false);
    EXPECT_EQ(all(QStringLiteral("SELECT cfgAllowPrivateGroup FROM Config")).constFirst().toBool(), true);
}

TEST(SampleOffice, AStopInTheMiddleLeavesThePhonebookAsItWas) {
    const TestOffice office;
    const auto connection = office.Machine.Engines.NewConnection();
    connection->Mode = engine::Mode::ReadWriteShared;
    connection->Open(office.Phonebook());
    EXPECT_FALSE(Office().WriteTo(*connection, [](int done, int) { return done < 100; }));
    EXPECT_FALSE(Office().WriteTo(*connection, [](int done, int total) { return done < total; }));
    connection->Close();
    EXPECT_TRUE(office.Column(office.Phonebook(), QStringLiteral("SELECT cntID FROM Contact")).isEmpty());
    EXPECT_TRUE(
        office.Column(office.Phonebook(), QStringLiteral("SELECT grpID FROM ContactGroup")).isEmpty());
}

TEST(SampleNumbers, GoesOnWithIrishNumbersWhereALanguageHasFew) {
    SampleNumbers numbers;
    QSet<QString> seen;
    for (int i = 0; i < 200; ++i) {
        seen.insert(numbers.Next(u"Swedish"));
    }
    EXPECT_EQ(seen.size(), 200);
    EXPECT_EQ(std::count_if(seen.begin(), seen.end(),
                            [](const QString& number) { return number.startsWith(u"+467017406"); }),
              95);
}
