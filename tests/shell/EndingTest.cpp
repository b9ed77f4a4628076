#include "shell/MainWindow.h"
#include "shell/StatusPoll.h"
#include "support/LockedFile.h"

#include "controls/PopupControl.h"

#include <QLineEdit>

#include <gtest/gtest.h>

#include <utility>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

using StoredSettings = QMap<std::pair<QString, QString>, QString>;

/// What a user has set, none of it as a program without settings has it.
StoredSettings OwnSettings() {
    const QString& notify = SettingNames::SectionNotify;
    return {{{SettingNames::SectionDefaults, SettingNames::EndWith}, Q("Front Desk")},
            {{notify, SettingNames::Enabled}, Q("0")},
            {{notify, SettingNames::PlaySound}, Q("1")},
            {{notify, SettingNames::Interval}, Q("45")},
            {{notify, SettingNames::Desktop}, Q("1")},
            {{notify, SettingNames::DesktopDetails}, Q("1")},
            {{SettingNames::SectionDisplay, SettingNames::TabOrder}, Q("-2,-1,1")}};
}

StoredSettings SettingsNow() {
    StoredSettings now = OwnSettings();
    for (auto value = now.begin(); value != now.end(); ++value) {
        *value = TestMachine::Stored(value.key().first, value.key().second);
    }
    return now;
}

/// The main window of a user who has set everything, on an office with a group; not loaded yet.
class EndingWindow : public MainWindow {
public:
    EndingWindow() : MainWindow(&EndingWindow::Prepare) {}

    [[nodiscard]] TempOffice& Office() { return Machine.Office; }
    /// As the tray's entry does it.
    void EndTheProgram() {
        Find<QAbstractButton>("cmdExit")->click();
        EXPECT_TRUE(Form->IsUnloaded());
    }
    /// A message that the tracker waits for and that was not delivered.
    void TrackAFailure() {
        const qint32 id = Office().AddMessageRow({{Q("msgStatus"), 7}});
        Context.MessageTracker.SetEnabled(true);
        Context.MessageTracker.PlaySound = true;
        Context.MessageTracker.Track(id, Q("Ann"), Q("+353865550142"), Q("Hello"));
    }

private:
    static void Prepare(TestMachine& machine) {
        const StoredSettings own = OwnSettings();
        for (auto value = own.begin(); value != own.end(); ++value) {
            TestMachine::Store(value.key().first, value.key().second, *value);
        }
        machine.Office.AddGroup(Q("Drivers"));
    }
};

}  // namespace

TEST(Ending, InTheMiddleOfTheLoadLeavesEverySettingThatWasNotLoadedAsTheUserHasIt) {
    const std::pair tabs(SettingNames::SectionDisplay, SettingNames::TabOrder);
    for (const char* step : {"InitGroupTabs", "InitUserHeaders", "InitMessageTails"}) {
        EndingWindow window;
        for (const NamedStep& load : window.Form->InitMainWindowSteps()) {
            if (load.Name == Q(step)) {
                const LockedFile phonebook(window.Office(), window.Office().PhonebookPath(),
                                           [&] { window.EndTheProgram(); });
                load.Run();
                break;
            }
            load.Run();
        }
        StoredSettings now = SettingsNow();
        if (Q(step) != Q("InitGroupTabs")) {
            EXPECT_TRUE(now[tabs].startsWith(Q("-2,-1,"))) << "the tabs stand in the window by then";
            now[tabs] = OwnSettings()[tabs];
        }
        EXPECT_EQ(now, OwnSettings()) << step;
    }
}

TEST(Ending, InTheMiddleOfTheLoadEndsTheLoadAndShowsNoTip) {
    EndingWindow window;
    ASSERT_TRUE(window.Office().Files.Replace(window.Office().Folders.ApplicationFolder() + Q("tips.txt"),
                                              "Drag.\r\n"));
    {
        const LockedFile phonebook(window.Office(), window.Office().PhonebookPath(),
                                   [&] { window.EndTheProgram(); });
        window.Form->Load();
    }
    EXPECT_TRUE(window.Machine.Door.Dialogs.isEmpty());
    EXPECT_FALSE(window.Machine.OneCopy.OnShow);
    EXPECT_TRUE(window.Find<QLineEdit>("txtEndWidth")->text().isEmpty()) << "a later step of the load";
    EXPECT_EQ(SettingsNow(), OwnSettings());
}

TEST(Ending, AfterTheLoadSavesWhatStandsInTheWindow) {
    EndingWindow window;
    window.Open();
    window.Find<QLineEdit>("txtEndWidth")->setText(Q("Back Office"));
    window.Context.MessageTracker.RefreshInterval = 30;
    window.EndTheProgram();
    StoredSettings expected = OwnSettings();
    expected[{SettingNames::SectionDefaults, SettingNames::EndWith}] = Q("Back Office");
    expected[{SettingNames::SectionNotify, SettingNames::Interval}] = Q("30");
    const std::pair tabs(SettingNames::SectionDisplay, SettingNames::TabOrder);
    expected[tabs] = SettingsNow()[tabs];
    EXPECT_EQ(SettingsNow(), expected);
}

TEST(Ending, WhileAPollWaitsTellsNothingAnyMore) {
    EndingWindow window;
    window.Open();
    window.TrackAFailure();
    {
        const LockedFile outbox(window.Office(), window.Office().OutboxPath(),
                                [&] { window.EndTheProgram(); });
        window.Form->findChild<StatusPoll*>()->Check();
    }
    EXPECT_EQ(window.Context.MessageTracker.SlotAt(0).status, 7) << "the poll itself came to its end";
    EXPECT_TRUE(window.Office().Sound.Played.isEmpty());
    EXPECT_FALSE(window.Find("pucFeedback")->isVisible());
    EXPECT_FALSE(window.Find("lblFailureWarning")->isVisible());
    EXPECT_TRUE(window.Machine.Notices.Shown.isEmpty());
}

TEST(Ending, WhileAPollWaitsMakesWayForTheNextStartAtOnce) {
    EndingWindow window;
    window.Open();
    window.TrackAFailure();
    int atTheEnd = 0;
    {
        const LockedFile outbox(window.Office(), window.Office().OutboxPath(), [&] {
            window.EndTheProgram();
            atTheEnd = window.Machine.OneCopy.Releases;
        });
        window.Form->findChild<StatusPoll*>()->Check();
    }
    EXPECT_EQ(atTheEnd, 1) << "long before the wait is over";
}

TEST(Ending, GivesTheClaimOfTheOneCopyBackWhenAllIsSavedAndLogged) {
    EndingWindow window;
    window.Open();
    window.Find<QLineEdit>("txtEndWidth")->setText(Q("Back Office"));
    QStringList seen;
    window.Machine.OneCopy.OnRelease = [&] {
        seen.append(TestMachine::Stored(SettingNames::SectionDefaults, SettingNames::EndWith));
        seen.append(window.Machine.LogLines().trimmed().section(u'\n', -1));
    };
    window.EndTheProgram();
    ASSERT_EQ(seen.size(), 2);
    EXPECT_EQ(seen[0], Q("Back Office"));
    EXPECT_TRUE(seen[1].endsWith(Q("Application Terminated"))) << seen[1].toStdString();
}
