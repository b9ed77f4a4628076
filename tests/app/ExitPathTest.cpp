#include "app/AppContext.h"
#include "app/ExitPath.h"
#include "app/TestMachine.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

}  // namespace

TEST(ExitPath, ClosesInTheFixedOrder) {
    TestMachine machine;
    ExitPath exit(
        machine.Office.PhonebookValues, machine.AppLog, [] {}, [] {});
    EXPECT_EQ(StepNames(exit.Steps()),
              (QStringList{Q("UnloadForms"), Q("ClosePhonebook"), Q("LogTerminated"), Q("EndProcess")}));
}

TEST(ExitPath, UnloadsTheFormsWhileThePhonebookIsOpenAndEndsTheProcessWhenItIsClosed) {
    TestMachine machine;
    machine.KeepLog();
    QStringList seen;
    const auto note = [&](const char* what) {
        seen.append(Q(what) + (machine.Office.PhonebookDB().IsConnected() ? Q(" open") : Q(" closed")));
    };
    ExitPath exit(
        machine.Office.PhonebookValues, machine.AppLog, [&] { note("forms"); }, [&] { note("end"); });
    exit.ApplicationTerminate();
    EXPECT_EQ(seen, (QStringList{Q("forms open"), Q("end closed")}));
    EXPECT_TRUE(machine.LogLines().trimmed().endsWith(Q("Application Terminated")));
    exit.ApplicationTerminate();
    EXPECT_EQ(seen.size(), 2) << "there is one end";
}

TEST(ExitPath, AFormThatFailsToCloseDoesNotKeepTheProcessAlive) {
    TestMachine machine;
    bool isEnded = false;
    ExitPath exit(
        machine.Office.PhonebookValues, machine.AppLog, [] { throw std::runtime_error("made to fail"); },
        [&] { isEnded = true; });
    exit.ApplicationTerminate();
    EXPECT_TRUE(isEnded);
}

TEST(ExitPath, WithoutAPhonebookThereIsNothingToClose) {
    TestMachine machine;
    PhonebookState none;
    bool isEnded = false;
    ExitPath exit(
        none, machine.AppLog, [] {}, [&] { isEnded = true; });
    exit.ApplicationTerminate();
    EXPECT_TRUE(isEnded);
}

TEST(AppContext, IsCreatedAndDestroyedAHundredTimes) {
    TestMachine machine;
    const Machine seams = machine.Seams();
    for (int i = 0; i < 100; ++i) {
        AppContext context(seams);
        context.AppSettings.SetApplication(Q("Larkspan Messenger"));
        context.AppSettings.SetValue(SettingNames::SectionDB, SettingNames::Outbox,
                                     machine.Office.DataFolder.path());
        ASSERT_TRUE(mdlOutbox::OpenOutbox(context.Outbox));
        ASSERT_TRUE(mdlPhonebook::OpenPhonebook(context.Phonebook));
        context.CreateTracker(nullptr, nullptr);
    }
}

TEST(AppContext, OpeningAPhonebookStartsBothContactListsAnew) {
    TestMachine machine;
    machine.StoreOffice();
    AppContext context(machine.Seams());
    context.AppSettings.SetApplication(Q("Larkspan Messenger"));
    Contact contact;
    contact.SetID(7);
    context.AddressContacts.Add(contact);
    context.RecipientContacts.Add(contact);
    ASSERT_TRUE(mdlPhonebook::OpenPhonebook(context.Phonebook));
    EXPECT_EQ(context.AddressContacts.Count(), 0);
    EXPECT_EQ(context.RecipientContacts.Count(), 0);
}

TEST(AppContext, TheSortOrderIsStoredInDecimal) {
    TestMachine machine;
    AppContext context(machine.Seams());
    context.AppSettings.SetApplication(Q("Larkspan Messenger"));
    context.SortBy = 1;
    context.SaveSortBy();
    EXPECT_EQ(TestMachine::Stored(SettingNames::SectionDefaults, SettingNames::SortBy), Q("1"));
}

TEST(AppContext, CreateTrackerTakesTheUsersSettings) {
    TestMachine machine;
    TestMachine::Store(SettingNames::SectionNotify, SettingNames::Enabled, Q("0"));
    TestMachine::Store(SettingNames::SectionNotify, SettingNames::Interval, Q("15"));
    AppContext context(machine.Seams());
    context.AppSettings.SetApplication(Q("Larkspan Messenger"));
    context.CreateTracker(nullptr, nullptr);
    EXPECT_FALSE(context.MessageTracker.Enabled());
    EXPECT_EQ(context.MessageTracker.RefreshInterval, 15);
}
