#include "app/EntryStart.h"

#include "app/mdlSetupWizard.h"

#include <QFile>

#include <gtest/gtest.h>

TEST(EntryRoutine, AFirstRunWithoutSettingsRunsTheSetupWizard) {
    TestMachine machine;
    Start start(machine);
    start.Screens.IsSetupFinished = false;
    EXPECT_FALSE(start.Run());
    EXPECT_EQ(start.Screens.Calls, QStringList{Q("RunSetupWizard 1")}) << "in busy state 1";
    EXPECT_EQ(start.Context.PhonebookDB, nullptr) << "the process ends before any database was opened";
    EXPECT_EQ(start.ExitStatus, 1);
    EXPECT_EQ(TestMachine::Stored(SettingNames::SectionSetup, SettingNames::RunWizard), Q("(none)"));
}

TEST(EntryRoutine, AFinishedSetupWizardIsNotedAndTheStartGoesOn) {
    TestMachine machine;
    TestMachine::Store(SettingNames::SectionDB, SettingNames::Outbox, machine.Office.DataFolder.path());
    Start start(machine);
    EXPECT_TRUE(start.Run());
    EXPECT_EQ(start.Screens.Calls, QStringList(Q("RunSetupWizard 1")) + Start::Whole())
        << "1 during the wizard, 2 again while the program starts up";
    EXPECT_EQ(TestMachine::Stored(SettingNames::SectionSetup, SettingNames::RunWizard), Q("0"));
}

TEST(EntryRoutine, ASetupWizardThatFailsIsPassedOverAndStaysDue) {
    TestMachine machine;
    machine.StoreOffice();
    Start start(machine, {Q("/WIZARD")});
    start.Screens.Failing = Q("RunSetupWizard");
    TestMachine::Store(SettingNames::SectionSetup, SettingNames::RunWizard, Q("-1"));
    EXPECT_TRUE(start.Run());
    EXPECT_EQ(start.Screens.Calls, QStringList(Q("RunSetupWizard 1")) + Start::Whole());
    EXPECT_EQ(TestMachine::Stored(SettingNames::SectionSetup, SettingNames::RunWizard), Q("-1"));
}

TEST(EntryRoutine, APhonebookWizardThatFailsIsPassedOver) {
    TestMachine machine;
    machine.StoreOffice();
    machine.Office.ExecuteOnPhonebook(Q("UPDATE Config SET cfgRunWizard = 1"));
    Start start(machine);
    start.Screens.Failing = Q("RunPhonebookWizard");
    EXPECT_TRUE(start.Run());
    QStringList whole = Start::Whole();
    whole.insert(whole.indexOf(Q("LoadMain 2")), Q("RunPhonebookWizard 2"));
    EXPECT_EQ(start.Screens.Calls, whole);
}

TEST(EntryRoutine, AfterTheWizardADeletedPhonebookFileMakesItRunAgain) {
    TestMachine machine;
    machine.StoreOffice();
    machine.Office.PhonebookDB().CloseDatabase();
    ASSERT_TRUE(QFile::remove(machine.Office.PhonebookPath()));
    Start start(machine);
    start.Screens.IsSetupFinished = false;
    EXPECT_FALSE(start.Run());
    EXPECT_EQ(start.Screens.Calls, QStringList{Q("RunSetupWizard 1")});
}

TEST(EntryRoutine, WithoutAnyConfiguredFolderTheSetupWizardRuns) {
    TestMachine machine;
    TestMachine::Store(SettingNames::SectionSetup, SettingNames::RunWizard, Q("0"));
    Start start(machine);
    start.Screens.IsSetupFinished = false;
    EXPECT_FALSE(start.Run());
}

TEST(EntryRoutine, WizardInCapitalsForcesTheSetupWizardButNotByItselfThePhonebookWizard) {
    TestMachine machine;
    machine.StoreOffice();
    Start capitals(machine, {Q("/WIZARD")});
    EXPECT_TRUE(capitals.Run());
    EXPECT_TRUE(capitals.Screens.Calls.contains(Q("RunSetupWizard 1")));
    EXPECT_FALSE(capitals.Screens.Calls.join(u' ').contains(Q("RunPhonebookWizard")));
    Start lower(machine, {Q("/wizard")});
    EXPECT_TRUE(lower.Run());
    EXPECT_TRUE(lower.Screens.Calls.contains(Q("RunSetupWizard 1")));
    EXPECT_TRUE(lower.Screens.Calls.join(u' ').contains(Q("RunPhonebookWizard")));
}

TEST(EntryRoutine, TheConfigRowCanAskForThePhonebookWizard) {
    TestMachine machine;
    machine.StoreOffice();
    machine.Office.ExecuteOnPhonebook(Q("UPDATE Config SET cfgRunWizard = 1"));
    machine.Office.Pump.Calls.clear();
    Start start(machine);
    EXPECT_TRUE(start.Run());
    EXPECT_TRUE(start.Screens.Calls.join(u' ').contains(Q("RunPhonebookWizard")));
    EXPECT_EQ(machine.Office.Pump.Calls, (QList<int>{4, 2, 3, 3, 4, 2, 2}));
}

TEST(EntryRoutine, WithoutAConfigRowNoPhonebookWizardRuns) {
    TestMachine machine;
    machine.StoreOffice();
    machine.Office.ExecuteOnPhonebook(Q("DROP TABLE Config"));
    Start start(machine, {Q("/wizard")});
    EXPECT_TRUE(start.Run());
    EXPECT_FALSE(start.Screens.Calls.join(u' ').contains(Q("RunPhonebookWizard")));
}

TEST(EntryRoutine, AConfigWithoutARowDoesNotAskButTheCommandLineStillCan) {
    TestMachine machine;
    machine.StoreOffice();
    machine.Office.ExecuteOnPhonebook(Q("DELETE FROM Config"));
    Start plain(machine);
    EXPECT_TRUE(plain.Run());
    EXPECT_EQ(plain.Screens.Calls, Start::Whole());
    Start forced(machine, {Q("/wizard")});
    EXPECT_TRUE(forced.Run());
    EXPECT_TRUE(forced.Screens.Calls.contains(Q("RunPhonebookWizard 2")));
}

TEST(EntryRoutine, ASetupThatIsStillDueRunsThePhonebookWizardAsWell) {
    TestMachine machine;
    machine.StoreOffice();
    AppContext context(machine.Seams());
    context.AppSettings.SetApplication(Q("Larkspan Messenger"));
    ASSERT_TRUE(mdlPhonebook::OpenPhonebook(context.Phonebook));
    const CommandLine plain{QStringList()};
    EXPECT_FALSE(mdlSetupWizard::IsPhonebookWizardDue(context, context.AppSettings, plain));
    for (const auto& [value, isDue] : {std::pair(Q("1"), true), std::pair(Q("-1"), false),
                                       std::pair(Q("True"), false), std::pair(Q("0"), false)}) {
        TestMachine::Store(SettingNames::SectionSetup, SettingNames::RunWizard, value);
        EXPECT_EQ(mdlSetupWizard::IsPhonebookWizardDue(context, context.AppSettings, plain), isDue)
            << value.toStdString();
    }
}

TEST(EntryRoutine, TheSetupWizardIsDueWhereItsSettingReadsAsTrue) {
    for (const auto& [value, isDue] :
         {std::pair(Q("1"), true), std::pair(Q("True"), true), std::pair(Q("-1"), true),
          std::pair(Q("0"), false), std::pair(Q("False"), false), std::pair(Q("x"), false)}) {
        TestMachine machine;
        machine.StoreOffice();
        TestMachine::Store(SettingNames::SectionSetup, SettingNames::RunWizard, value);
        Start start(machine);
        EXPECT_TRUE(start.Run());
        EXPECT_EQ(start.Screens.Calls.contains(Q("RunSetupWizard 1")), isDue) << value.toStdString();
    }
}
