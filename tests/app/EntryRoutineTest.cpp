#include "app/EntryStart.h"

#include "support/BrokenDisk.h"
#include "support/Environment.h"

#include <QDir>
#include <QFile>
#include <QLocale>

#include <gtest/gtest.h>

TEST(EntryRoutine, HasNineteenStepsInThisOrder) {
    TestMachine machine;
    Start start(machine);
    EntryRoutine entry(start.Context, start.Seams, start.Screens, start.Arguments);
    EXPECT_EQ(
        StepNames(entry.Steps()),
        (QStringList{Q("StartFileLog"), Q("CheckPreviousInstance"), Q("SetBusyStartingUp"),
                     Q("ReadLocaleCountry"), Q("CreateSettings"), Q("CheckSetupWizard"), Q("ProcessEvents"),
                     Q("ShowSplash"), Q("OpenOutbox"), Q("RepaintSplash"), Q("LoadSortBy"),
                     Q("OpenPhonebook"), Q("CheckPhonebookWizard"), Q("BindHelpFile"), Q("LoadMain"),
                     Q("WriteInstanceHandle"), Q("DropSplash"), Q("SetBusyIdle"), Q("ShowMain")}));
}

TEST(EntryRoutine, AConfiguredStartGoesFromSplashToMainWindowAndEndsIdle) {
    TestMachine machine;
    machine.StoreOffice();
    Start start(machine);
    EXPECT_TRUE(start.Run());
    EXPECT_EQ(start.Screens.Calls, Start::Whole());
    EXPECT_EQ(start.Context.AppBusyState.Value(), Busy::Idle);
    EXPECT_TRUE(start.Context.PhonebookDB->IsConnected());
    EXPECT_FALSE(start.Context.OutboxDB->IsConnected()) << "the outbox is not left open";
}

TEST(EntryRoutine, EventsAreLetThroughInTheSmallFixedCounts) {
    TestMachine machine;
    machine.StoreOffice();
    machine.Office.Pump.Calls.clear();
    Start start(machine);
    ASSERT_TRUE(start.Run());
    EXPECT_EQ(machine.Office.Pump.Calls, (QList<int>{4, 2, 3, 4, 2, 2}));
}

TEST(EntryRoutine, AStepThatFailsIsSkippedAndTheNextOneRuns) {
    for (const QString& failing : {Q("ShowSplash"), Q("RepaintSplash"), Q("HideSplash"), Q("ShowMain"),
                                   Q("ContactListFocus home"), Q("RepaintMain")}) {
        TestMachine machine;
        machine.StoreOffice();
        Start start(machine);
        start.Screens.Failing = failing;
        EXPECT_TRUE(start.Run());
        EXPECT_EQ(start.Screens.Calls, Start::Whole()) << failing.toStdString();
        EXPECT_EQ(start.Context.AppBusyState.Value(), Busy::Idle);
    }
}

TEST(EntryRoutine, WithoutAMainWindowTheProgramSaysSoAndEnds) {
    TestMachine machine;
    machine.StoreOffice();
    machine.Office.Boxes.Expect();
    Start start(machine);
    start.Screens.Failing = Q("LoadMain");
    EXPECT_FALSE(start.Run());
    ASSERT_EQ(machine.Office.Boxes.Shown.size(), 1);
    EXPECT_EQ(machine.Office.Boxes.Shown.first().Icon, BoxIcon::Critical);
    EXPECT_TRUE(machine.Office.Boxes.Shown.first().Text.contains(Q("main window could not be opened")));
    EXPECT_TRUE(start.Screens.Calls.contains(Q("DropSplash 2")))
        << "the splash does not stand in front of it";
    EXPECT_EQ(start.ExitStatus, 1);
}

TEST(EntryRoutine, AMainWindowClosedWhileEventsAreLetThroughEndsTheProcessAtOnce) {
    // Passes of the pump behind the loading of the main window: splash dropped, window shown, focus set.
    for (const auto& [pass, calls] : {std::pair(4, 6), std::pair(5, 7), std::pair(6, 9)}) {
        TestMachine machine;
        machine.StoreOffice();
        Start start(machine);
        int passes = 0;
        machine.Office.Pump.OnProcess = [&, last = pass](int) {
            if (++passes == last) {
                start.Screens.State = MainState::Unloaded;
            }
        };
        EXPECT_FALSE(start.Run()) << pass;
        EXPECT_EQ(start.ExitStatus, 0) << pass;
        EXPECT_EQ(start.Screens.Calls, Start::Whole().first(calls)) << pass;
    }
}

TEST(EntryRoutine, ErrorSwitchInCapitalsTurnsTheFileLogOn) {
    TestMachine machine;
    machine.StoreOffice();
    Start start(machine, {Q("/ERROR")});
    ASSERT_TRUE(start.Run());
    const auto log = machine.Office.Files.Read(machine.Office.Folders.ApplicationFolder() + Q("applog.txt"));
    ASSERT_TRUE(log);
    EXPECT_TRUE(log->contains("Application started at 07/Mar/2026 14:30:15")) << log->constData();
}

TEST(EntryRoutine, WithoutTheErrorSwitchThereIsNoFileLog) {
    TestMachine machine;
    machine.StoreOffice();
    Start start(machine, {Q("--data"), machine.Office.DataFolder.path()});
    ASSERT_TRUE(start.Run());
    EXPECT_FALSE(machine.Office.Files.Exists(machine.Office.Folders.ApplicationFolder() + Q("applog.txt")));
}

TEST(EntryRoutine, AFullDiskUnderTheLogDoesNotStopTheStart) {
    TestMachine machine;
    machine.StoreOffice();
    machine.Office.Files.WritesLeft = 0;
    Start start(machine, {Q("/error")});
    EXPECT_TRUE(start.Run());
    EXPECT_EQ(start.Screens.Calls, Start::Whole());
}

TEST(EntryRoutine, AFolderInWhichNothingCanBeMadeIsToldInTheLogOnceAndWhyItMatters) {
    const OrdinaryUser user;
    TestMachine machine;
    machine.StoreOffice();
    machine.KeepLog();
    const QTemporaryDir closed;
    machine.Office.Folders.Temp = closed.filePath(Q("not/there/yet/"));
    {
        Start writable(machine);
        EXPECT_TRUE(writable.Run());
        EXPECT_TRUE(machine.LogLines().isEmpty()) << machine.LogLines().toStdString();
    }
    const ReadOnlyFolder readOnly(closed.path());
    Start start(machine);
    EXPECT_TRUE(start.Run());
    EXPECT_EQ(start.Screens.Calls, Start::Whole());
    EXPECT_EQ(machine.LogLines().section(u' ', 2),
              Q("The temporary folder cannot be written: a second start may not find this window (") +
                  closed.filePath(Q("not/there/yet")) + Q(")\n"));
}

TEST(EntryRoutine, ASecondStartActivatesTheFirstAndEndsAtOnce) {
    TestMachine machine;
    machine.StoreOffice();
    machine.OneCopy.IsPrevious = true;
    machine.Desktop.Add(12, Q("LarkspanMainForm"), Q("Larkspan Messenger"));
    Start start(machine);
    EXPECT_FALSE(start.Run());
    EXPECT_TRUE(start.Screens.Calls.isEmpty());
    EXPECT_EQ(machine.Desktop.Calls, (QStringList{Q("show request to 12"), Q("foreground 12")}));
    EXPECT_EQ(start.Context.PhonebookDB, nullptr) << "nothing was opened";
    EXPECT_EQ(start.ExitStatus, 0);
}

TEST(EntryRoutine, ASecondStartWithAnotherDataFolderRaisesTheFirstAndSaysThatItKeepsItsFolder) {
    TestMachine machine;
    machine.StoreOffice();
    machine.OneCopy.IsPrevious = true;
    machine.Desktop.Add(12, Q("LarkspanMainForm"), Q("Larkspan Messenger"));
    machine.KeepLog();
    const QTemporaryDir other;
    ASSERT_TRUE(QFile::copy(machine.Office.OutboxPath(), other.filePath(Q("smsmessages.mdb"))));
    Start start(machine, {Q("--data"), other.path()});
    EXPECT_FALSE(start.Run());
    EXPECT_EQ(start.ExitStatus, 2);
    EXPECT_EQ(machine.LogLines().section(u' ', 2),
              Q("--data is not used: the running copy keeps the folder it works with.\n"));
    EXPECT_EQ(machine.Desktop.Calls, (QStringList{Q("show request to 12"), Q("foreground 12")}));
}

TEST(EntryRoutine, ASecondStartWithTheErrorSwitchLogsItsStartFirst) {
    TestMachine machine;
    machine.StoreOffice();
    machine.OneCopy.IsPrevious = true;
    const QTemporaryDir other;
    ASSERT_TRUE(QFile::copy(machine.Office.OutboxPath(), other.filePath(Q("smsmessages.mdb"))));
    Start start(machine, {Q("--data"), other.path(), Q("/error")});
    EXPECT_FALSE(start.Run());
    const auto log = machine.Office.Files.Read(machine.Office.Folders.ApplicationFolder() + Q("applog.txt"));
    ASSERT_TRUE(log);
    const QList<QByteArray> lines = log->trimmed().split('\n');
    EXPECT_TRUE(lines.first().contains("Application started at 07/Mar/2026 14:30:15")) << log->constData();
    EXPECT_EQ(lines.size(), 2) << "and then that --data is not used";
}

TEST(EntryRoutine, ASecondStartWithTheDataFolderInUseIsNoFailure) {
    TestMachine machine;
    machine.StoreOffice();
    machine.OneCopy.IsPrevious = true;
    machine.KeepLog();
    Start start(machine, {Q("--data"), machine.Office.DataFolder.path()});
    EXPECT_FALSE(start.Run());
    EXPECT_EQ(start.ExitStatus, 0);
    EXPECT_EQ(machine.LogLines(), QString());
}

TEST(EntryRoutine, ASecondStartDoesNotTouchTheSettingsOfTheFirst) {
    TestMachine machine;
    machine.StoreOffice();
    machine.OneCopy.IsPrevious = true;
    Start start(machine, {Q("--data"), machine.Office.DataFolder.path()});
    TestMachine::Store(SettingNames::SectionDB, SettingNames::Outbox, Q("elsewhere"));
    EXPECT_FALSE(start.Run());
    EXPECT_EQ(TestMachine::Stored(SettingNames::SectionDB, SettingNames::Outbox), Q("elsewhere"));
}

TEST(EntryRoutine, AfterACrashTheStaleHandleIsNotUsed) {
    TestMachine machine;
    machine.StoreOffice();
    ASSERT_TRUE(machine.Office.Files.Replace(machine.Office.Folders.TempFolder() + Q("hwnd.sms"), "99\r\n"));
    Start start(machine);
    EXPECT_TRUE(start.Run());
    EXPECT_TRUE(machine.Desktop.Calls.isEmpty()) << "no window was asked for anything";
}

TEST(EntryRoutine, TheCountryIsThatOfTheUsersLocaleOrIE) {
    TestMachine machine;
    Start start(machine);
    const QLocale before;
    for (const auto& [locale, country] : {std::pair(Q("en_US"), Q("US")), std::pair(Q("en_GB"), Q("GB")),
                                          std::pair(Q("de_CH"), Q("CH")), std::pair(Q("C"), Q("IE"))}) {
        QLocale::setDefault(QLocale(locale));
        start.Context.ReadLocaleCountry();
        EXPECT_EQ(start.Context.LocaleCountry, country);
    }
    QLocale::setDefault(before);
}

TEST(EntryRoutine, AnOutboxThatCannotBeOpenedIsPassedOverInSilence) {
    TestMachine machine;
    machine.StoreOffice();
    ASSERT_TRUE(QFile::remove(machine.Office.OutboxPath()));
    Start start(machine);
    EXPECT_TRUE(start.Run());
    EXPECT_EQ(start.Screens.Calls, Start::Whole());
    EXPECT_EQ(start.Context.MaxMessageSize, 160);
    EXPECT_TRUE(machine.Office.Boxes.Shown.isEmpty());
}

TEST(EntryRoutine, APhonebookThatCannotBeOpenedShowsItsBoxAndTheStartGoesOn) {
    TestMachine machine;
    machine.StoreOffice();
    machine.Office.PhonebookDB().CloseDatabase();
    QFile file(machine.Office.PhonebookPath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("this is no phonebook, and long enough to have no header of one");
    file.close();
    machine.Office.Boxes.Expect();
    Start start(machine);
    EXPECT_TRUE(start.Run());
    ASSERT_EQ(machine.Office.Boxes.Shown.size(), 1);
    const BoxRequest& box = machine.Office.Boxes.Shown.first();
    EXPECT_EQ(box.Title, Q("Larkspan Messenger"));
    EXPECT_EQ(box.Icon, BoxIcon::Critical);
    EXPECT_TRUE(box.Text.startsWith(Q("The Phonebook could not be opened.\r\nGE:0x80004005")))
        << box.Text.toStdString();
    EXPECT_EQ(start.Screens.Calls, Start::Whole());
    EXPECT_EQ(start.Context.cfgVersion, 1);
    EXPECT_TRUE(start.Context.cfgCompany.isEmpty());
}

TEST(EntryRoutine, TheSortOrderComesFromTheSettings) {
    for (const auto& [stored, order] :
         {std::pair(Q("1"), 1), std::pair(Q("0"), 0), std::pair(Q("x"), 0), std::pair(Q("40000"), 40000)}) {
        TestMachine machine;
        machine.StoreOffice();
        TestMachine::Store(SettingNames::SectionDefaults, SettingNames::SortBy, stored);
        Start start(machine);
        ASSERT_TRUE(start.Run());
        EXPECT_EQ(start.Context.SortBy, order);
    }
}

TEST(EntryRoutine, ASortOrderBeyond32BitsIsNoneAndTheStartGoesOn) {
    for (const char* stored : {"2147483648", "-2147483649", "99999999999"}) {
        TestMachine machine;
        machine.StoreOffice();
        TestMachine::Store(SettingNames::SectionDefaults, SettingNames::SortBy, Q(stored));
        Start start(machine);
        EXPECT_TRUE(start.Run());
        EXPECT_EQ(start.Context.SortBy, 0) << stored;
        EXPECT_EQ(start.Screens.Calls, Start::Whole()) << stored;
    }
}

TEST(EntryRoutine, AHelpFileInTheApplicationFolderIsBoundAndAMissingOneIsNot) {
    TestMachine machine;
    machine.StoreOffice();
    Start without(machine);
    ASSERT_TRUE(without.Run());
    EXPECT_TRUE(without.Context.HelpFile.isEmpty());
    const QString path = machine.Office.Folders.ApplicationFolder() + Q("larkspan.chm");
    ASSERT_TRUE(machine.Office.Files.Replace(QDir::fromNativeSeparators(path), "help"));
    Start with(machine);
    ASSERT_TRUE(with.Run());
    EXPECT_FALSE(with.Context.HelpFile.isEmpty());
}

TEST(EntryRoutine, AnInstalledHelpFileIsBoundFromTheShareFolder) {
    TestMachine machine;
    machine.StoreOffice();
    const QString path = machine.Office.Folders.ShareFolder() + Q("larkspan.chm");
    ASSERT_TRUE(QDir().mkpath(machine.Office.Folders.ShareFolder()));
    ASSERT_TRUE(machine.Office.Files.Replace(path, "help"));
    Start start(machine);
    ASSERT_TRUE(start.Run());
    EXPECT_EQ(start.Context.HelpFile, path);
}

TEST(EntryRoutine, TheHandleOfTheMainWindowIsWrittenToTheTemporaryFolder) {
    TestMachine machine;
    machine.StoreOffice();
    const QTemporaryDir temp;
    machine.Office.Folders.Temp = temp.path() + u'/';
    Start start(machine);
    ASSERT_TRUE(start.Run());
    EXPECT_EQ(machine.Office.Files.Read(temp.filePath(Q("hwnd.sms"))), QByteArray("4711\r\n"));
}

TEST(EntryRoutine, WithTempUnsetTheHandleIsWrittenToTheApplicationFolder) {
    TestMachine machine;
    machine.StoreOffice();
    const EnvironmentVariable temp("TEMP");
    const EnvironmentVariable home("LARKSPAN_HOME", machine.Office.Folders.Root.path().toLocal8Bit());
    SystemFolders folders;
    Start start(machine);
    Machine seams = start.Seams;
    const Machine real{
        seams.Time,    seams.Pump,    seams.Keys,   seams.Beeper, seams.Notices,       seams.NotificationArea,
        seams.Web,     seams.Boxes,   seams.Door,   folders,      seams.NetworkDrives, seams.Files,
        seams.Desktop, seams.OneCopy, seams.Engine, seams.Page,   seams.AppLog};
    ASSERT_TRUE(EntryRoutine(start.Context, real, start.Screens, start.Arguments).Run());
    EXPECT_EQ(machine.Office.Files.Read(machine.Office.Folders.Root.filePath(Q("hwnd.sms"))),
              QByteArray("4711\r\n"));
}

TEST(EntryRoutine, TheDataOptionConfiguresTheFolderAndNoWizardIsNeeded) {
    TestMachine machine;
    TestMachine::Store(SettingNames::SectionDB, SettingNames::Contacts, Q("/somewhere/else.mdb"));
    Start start(machine, {Q("--data"), machine.Office.DataFolder.path()});
    EXPECT_TRUE(start.Run());
    EXPECT_EQ(start.Screens.Calls, Start::Whole());
    EXPECT_EQ(TestMachine::Stored(SettingNames::SectionDB, SettingNames::Outbox),
              machine.Office.DataFolder.path());
    EXPECT_EQ(start.Context.PhonebookDB->IsConnected(), true);
}
