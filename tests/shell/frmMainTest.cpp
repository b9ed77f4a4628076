#include "shell/MainWindow.h"

#include "addressbook/PhonebookArea.h"
#include "controls/ListView.h"
#include "controls/TabControl.h"

#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

void TwoContacts(TestMachine& machine) {
    machine.Office.AddContact(Q("Byrne"), Q("Declan"), Q("+353865550101"));
    machine.Office.AddContact(Q("Ahern"), Q("Aoife"), Q("+353865550102"));
}

QStringList Names(const ListView& list) {
    QStringList names;
    for (int row = 0; row < list.Rows().Count(); ++row) {
        names.append(list.Rows().At(row).Text);
    }
    return names;
}

void ClickTab(MainWindow& window, int position, Qt::MouseButton button = Qt::LeftButton) {
    auto* tabs = window.Find<TabControl>("tabGroup");
    QTest::mouseClick(tabs, button, Qt::NoModifier, tabs->TabRect(position).center());
}

QString Words(const QWidget* control) {
    return control->property("plainText").isValid() ? control->property("plainText").toString()
                                                    : control->property("text").toString();
}

}  // namespace

TEST(FrmMain, LoadsInThisOrder) {
    MainWindow window;
    EXPECT_EQ(StepNames(window.Form->LoadSteps()),
              (QStringList{Q("SetCaption"), Q("InitTrayIcon"), Q("ExpandPlaceholders"),
                           Q("SetAppWindowStyle"), Q("InitMainWindow"), Q("CreateTracker"), Q("SetAdCursor"),
                           Q("ShowTipOfTheDay"), Q("SubclassMainWindow")}));
}

TEST(FrmMain, InitMainWindowHasTheseStepsInThisOrder) {
    MainWindow window;
    EXPECT_EQ(StepNames(window.Form->InitMainWindowSteps()),
              (QStringList{Q("LayoutControls"), Q("InitColours"), Q("InitAlphaTabs"), Q("InitGroupTabs"),
                           Q("InitUserHeaders"), Q("InitMessageSize"), Q("InitMessageTails"), Q("InitSortBy"),
                           Q("LoadSignature"), Q("HideAlert"), Q("Reset"), Q("EndInitialising"),
                           Q("ShowGroup"), Q("UpdateStateDisplay")}));
}

TEST(FrmMain, QueryUnloadSavesAndClosesInThisOrder) {
    MainWindow window;
    EXPECT_EQ(StepNames(window.Form->QueryUnloadSteps()),
              (QStringList{Q("DisableTimers"), Q("UnsubclassMainWindow"), Q("SaveSignature"), Q("SaveSortBy"),
                           Q("SaveTracker"), Q("DeleteInstanceMarker"), Q("RestoreIcons"), Q("SaveTabOrder"),
                           Q("SaveLayout"), Q("Hide"), Q("ProcessEvents")}));
}

TEST(FrmMain, ComesUpWithItsTitleTheContactsAndTheFocusInTheList) {
    MainWindow window(TwoContacts);
    window.Open();
    EXPECT_EQ(window.Form->windowTitle(), Q("Larkspan Messenger"));
    auto* contacts = window.Find<ListView>("lvContacts");
    ASSERT_EQ(contacts->Rows().Count(), 2);
    EXPECT_EQ(contacts->Rows().At(0).Text, Q("Ahern, Aoife"));
    EXPECT_TRUE(contacts->hasFocus());
    EXPECT_FALSE(window.Form->IsInitialising);
    EXPECT_FALSE(window.Find("lblFailureWarning")->isVisible());
    EXPECT_EQ(window.Form->AdCursor.shape(), Qt::ArrowCursor);
}

TEST(FrmMain, TheWindowGetsItsClassNameAndATaskBarEntry) {
    MainWindow window;
    window.Open();
    const QString handle = QString::number(window.Form->winId());
    EXPECT_TRUE(window.Machine.Desktop.Calls.contains(Q("task bar entry of ") + handle + Q(" 1")));
    EXPECT_TRUE(window.Machine.Desktop.Calls.contains(Q("class of ") + handle + Q(" is LarkspanMainForm")));
}

TEST(FrmMain, AFailureWhileItLoadsIsLoggedAndLoadingContinues) {
    MainWindow window(TwoContacts);
    const StepTable steps = window.Form->LoadSteps();
    window.Machine.Desktop.OnSetAppWindowStyle = [] { throw std::runtime_error("made to fail"); };
    window.Open();
    EXPECT_TRUE(window.Machine.LogLines().contains(Q("frmMain_Load Error:made to fail")))
        << window.Machine.LogLines().toStdString();
    EXPECT_EQ(window.Find<ListView>("lvContacts")->Rows().Count(), 2);
}

TEST(FrmMain, APhonebookThatFailedToOpenLeavesTheListsEmptyAndSaysNothingHere) {
    MainWindow window([](TestMachine& machine) {
        machine.Office.PhonebookDB().CloseDatabase();
        ASSERT_TRUE(QFile::remove(machine.Office.PhonebookPath()));
        machine.Office.Boxes.Expect();  // the box of the opening
    });
    window.Open();
    EXPECT_EQ(window.Find<ListView>("lvContacts")->Rows().Count(), 0);
    EXPECT_EQ(window.Find<TabControl>("tabGroup")->Count(), 2) << "everyone and the favourites";
    EXPECT_TRUE(window.Form->isEnabled());
}

TEST(FrmMain, ShowAlertShowsAndHidesTheWarningAndAClickTakesItAway) {
    MainWindow window;
    window.Open();
    auto* label = window.Find<QAbstractButton>("lblFailureWarning");
    auto* shape = window.Find("shaAlert");
    window.Form->ShowAlert(true);
    EXPECT_TRUE(label->isVisible());
    EXPECT_TRUE(shape->isVisible());
    EXPECT_EQ(label->text(), Q("One or more messags were not delivered. Click here to clear alert."));
    EXPECT_EQ(label->toolTip(), Q(" Click here to clear this warning "));
    QTest::mouseClick(label, Qt::LeftButton);
    EXPECT_FALSE(label->isVisible());
    EXPECT_FALSE(shape->isVisible());
    window.Form->ShowAlert(true);
    label->setFocus();
    QTest::keyClick(label, Qt::Key_Space);
    EXPECT_FALSE(label->isVisible()) << "by keyboard as well";
}

TEST(FrmMain, AWarningSetWhileTheWindowIsAwayIsWaitingWhenItReturns) {
    MainWindow window;
    window.Machine.Tray.HasArea = true;
    window.Open();
    window.Form->ToTray(true);
    EXPECT_FALSE(window.Form->isVisible());
    EXPECT_TRUE(window.Form->IsInTray());
    window.Form->ShowAlert(true);
    window.Form->ToTray(false);
    EXPECT_FALSE(window.Form->IsInTray());
    EXPECT_TRUE(window.Find("lblFailureWarning")->isVisible());
}

TEST(FrmMain, ClosedOverTheTipOfTheDayItHearsNoSecondStartAndIsNotShown) {
    MainWindow window;
    window.Machine.Tray.HasArea = true;
    ASSERT_TRUE(window.Machine.Office.Files.Replace(
        window.Machine.Office.Folders.ApplicationFolder() + Q("tips.txt"), "Drag a name.\r\n"));
    window.Machine.Door.ExpectDialog([&window](QDialog& dialog) {
        window.Machine.Tray.HostMenu->actions().constLast()->trigger();
        dialog.hide();
    });
    window.Form->Load();
    EXPECT_TRUE(window.Form->IsUnloaded());
    EXPECT_TRUE(window.Machine.LogLines().contains(Q("Application Terminated")));
    EXPECT_FALSE(window.Machine.OneCopy.OnShow);
    window.Form->ToTray(false);
    EXPECT_FALSE(window.Form->isVisible());
}

TEST(FrmMain, WhenItIsGoneNobodyHearsASecondStart) {
    MainWindow window;
    window.Open();
    ASSERT_TRUE(window.Machine.OneCopy.OnShow);
    window.Form = nullptr;
    EXPECT_FALSE(window.Machine.OneCopy.OnShow);
}

TEST(FrmMain, ASecondStartBringsAMinimisedWindowBackToTheFront) {
    MainWindow window;
    window.Open();
    window.Form->ToTray(true);
    ASSERT_TRUE(window.Form->isMinimized());
    ASSERT_TRUE(window.Machine.OneCopy.OnShow);
    window.Machine.Desktop.Calls.clear();
    window.Machine.OneCopy.OnShow();
    EXPECT_FALSE(window.Form->isMinimized());
    EXPECT_TRUE(window.Form->isVisible());
    EXPECT_FALSE(window.Form->IsInTray());
    EXPECT_TRUE(window.Machine.Desktop.Calls.contains(Q("foreground %1").arg(window.Form->winId())));
}

TEST(FrmMain, TheColoursOfTheTabControlAreThoseOfTheWholeForm) {
    MainWindow window;
    window.Open();
    const QColor colour = window.Find("tabGroup")->palette().color(QPalette::Window);
    EXPECT_EQ(window.Form->palette().color(QPalette::Window), colour);
    for (const char* name :
         {"fraPhoneBook", "fraContactDetail", "lblPhoneCaption", "lblPhone",       "lblNoteCaption",
          "lblNote",      "lblUserHeader0",   "lblUserHeader1",  "lblUserHeader2", "UserData0",
          "UserData1",    "UserData2",        "fraRecipients",   "fraMessage",     "fraTail",
          "txtEndWidth",  "cbTails",          "fraSendButtons",  "pbMsgSize",      "lblCharsRemaining"}) {
        EXPECT_EQ(window.Find(name)->palette().color(QPalette::Window), colour) << name;
    }
    EXPECT_EQ(window.Find("txtEndWidth")->palette().color(QPalette::Base), colour);
    Look::Apply(Q("dark"));
    QCoreApplication::processEvents();
    EXPECT_EQ(window.Find("lblPhone")->palette().color(QPalette::Window),
              window.Find("tabGroup")->palette().color(QPalette::Window));
    EXPECT_NE(window.Find("lblPhone")->palette().color(QPalette::Window), colour)
        << "follows a change to dark";
    Look::Apply(Q("light"));
}

TEST(FrmMain, TheSignatureTheSortOrderTheTrackerAndTheTabsAreSavedOnClosing) {
    MainWindow window(TwoContacts);
    window.Open();
    window.Find<QLineEdit>("txtEndWidth")->setText(Q("  Front Desk "));
    QTest::mouseClick(window.Find<QAbstractButton>("cmdSortBy"), Qt::LeftButton);
    window.Context.MessageTracker.RefreshInterval = 30;
    window.Form->close();
    EXPECT_EQ(TestMachine::Stored(SettingNames::SectionDefaults, SettingNames::EndWith), Q("Front Desk"));
    EXPECT_EQ(TestMachine::Stored(SettingNames::SectionDefaults, SettingNames::SortBy), Q("1"));
    EXPECT_EQ(TestMachine::Stored(SettingNames::SectionNotify, SettingNames::Interval), Q("30"));
    EXPECT_EQ(TestMachine::Stored(SettingNames::SectionDisplay, SettingNames::TabOrder), Q("-1,-2,-3"));
}

TEST(FrmMain, ClosingStopsTheTimersDeletesTheMarkerAndClosesThePhonebook) {
    MainWindow window;
    window.Open();
    window.Form->StartTracking();
    auto* banner = window.Form->findChild<QTimer*>(Q("tmrAdupdate"));
    banner->start();
    const QString marker = window.Machine.Office.Folders.TempFolder() + Q("hwnd.app");
    ASSERT_TRUE(window.Machine.Office.Files.Replace(marker, "1"));
    EXPECT_TRUE(window.Form->close());
    EXPECT_FALSE(window.Form->findChild<QTimer*>(Q("tmrCheckMsgStatus"))->isActive());
    EXPECT_FALSE(banner->isActive());
    EXPECT_FALSE(window.Machine.Office.Files.Exists(marker));
    EXPECT_FALSE(window.Form->isVisible());
    EXPECT_FALSE(window.Context.PhonebookDB->IsConnected());
    EXPECT_FALSE(window.Machine.OneCopy.OnShow) << "a late second start must not bring a dying window back";
    EXPECT_TRUE(window.Machine.LogLines().trimmed().endsWith(Q("Application Terminated")));
}

TEST(FrmMain, ExitTheKeyAndTheCloseButtonAllTakeTheSameWayOut) {
    for (int way = 0; way < 3; ++way) {
        MainWindow window;
        window.Open();
        if (way == 0) {
            QTest::mouseClick(window.Find<QAbstractButton>("cmdExit"), Qt::LeftButton);
        } else if (way == 1) {
            window.AltKey(Qt::Key_F4);
        } else {
            window.Form->close();
        }
        EXPECT_FALSE(window.Form->isVisible()) << way;
        EXPECT_EQ(window.Machine.LogLines().count(Q("Application Terminated")), 1) << way;
    }
}

TEST(FrmMain, AnOpenDialogGoesWithTheMainWindow) {
    MainWindow window;
    window.Open();
    QDialog dialog(window.Form.get());
    dialog.show();
    window.Form->close();
    EXPECT_FALSE(dialog.isVisible());
}

TEST(FrmMain, ClosedWhileASendAsksItEndsAndNothingIsSent) {
    for (const char* button : {"cmdSendNow", "cmdSendLater"}) {
        qint32 contact = 0;
        MainWindow window([&](TestMachine& machine) {
            contact = machine.Office.AddContact(Q("Ahern"), Q("Aoife"), Q("+353865550142"));
            machine.Office.ExecuteOnPhonebook(Q("UPDATE Contact SET cntConfirmSend=1"));
        });
        window.Open();
        window.Form->ShowGroup();
        window.Form->AddKeysToRecipients({Keys::ContactKey(contact)});
        window.Find<QWidget>("txtMessage")->setProperty("plainText", Q("Hello"));
        window.Form->UpdateStateDisplay();
        window.Machine.Door.ExpectDialog([&](QDialog& dialog) {
            EXPECT_EQ(dialog.objectName(), Q("frmConfirmRecipient"));
            window.Form->close();  // as the entry of the tray's menu does
            EXPECT_TRUE(window.Machine.LogLines().contains(Q("Application Terminated"))) << button;
        });
        QTest::mouseClick(window.Find<QAbstractButton>(button), Qt::LeftButton);
        EXPECT_FALSE(window.Form->isVisible()) << button;
        EXPECT_TRUE(window.Machine.Office.MessageRows().isEmpty()) << button;
    }
}

TEST(FrmMain, ItsPlaceAndItsDivisionAreRememberedForTheUser) {
    {
        MainWindow window;
        window.Open();
        window.Form->resize(1000, 700);
        window.Form->close();
        EXPECT_NE(TestMachine::Stored(SettingNames::SectionDisplay, Q("Window")), Q("(none)"));
        const QString place = TestMachine::Stored(SettingNames::SectionDisplay, Q("Window"));
        const QString parts = TestMachine::Stored(SettingNames::SectionDisplay, Q("Splitter"));
        MainWindow again([&](TestMachine&) {
            TestMachine::Store(SettingNames::SectionDisplay, Q("Window"), place);
            TestMachine::Store(SettingNames::SectionDisplay, Q("Splitter"), parts);
        });
        EXPECT_EQ(again.Form->size(), QSize(1000, 700));
    }
    MainWindow fresh([](TestMachine&) {
        TestMachine::Store(SettingNames::SectionDisplay, Q("Window"), Q("no place"));
        TestMachine::Store(SettingNames::SectionDisplay, Q("Splitter"), Q("nothing"));
    });
    EXPECT_EQ(fresh.Form->size(), QSize(1100, 740));
}

TEST(FrmMain, IsCreatedAndDestroyedAHundredTimes) {
    TestMachine machine;
    machine.StoreOffice();
    const Machine seams = machine.Seams();
    const CommandLine arguments{QStringList()};
    for (int i = 0; i < 100; ++i) {
        AppContext context(seams);
        context.AppSettings.SetApplication(Q("Larkspan Messenger"));
        mdlPhonebook::OpenPhonebook(context.Phonebook);
        frmMain form(context, seams, arguments);
        form.Load();
    }
}

TEST(FrmMain, ItsPublicMembersEndInTheirPanels) {
    MainWindow window(TwoContacts);
    window.Open();
    frmMain& form = *window.Form;
    auto* contacts = window.Find<ListView>("lvContacts");
    auto* recipients = window.Find<ListView>("lvRecipients");
    auto* message = window.Find("txtMessage");

    form.ShowAlphaGroup(Q("B"));
    EXPECT_EQ(contacts->Rows().Count(), 1);
    form.ShowGroup();
    EXPECT_EQ(contacts->Rows().Count(), 2);
    form.AddKeysToRecipients(contacts->Rows().KeyList());
    EXPECT_EQ(recipients->Rows().Count(), 2);
    form.AddKeyToRecipients(contacts->Rows().At(1).Key, true);
    EXPECT_EQ(recipients->Rows().Count(), 2) << "is there already";
    recipients->Rows().RemoveKeys({contacts->Rows().At(1).Key});
    form.AddKeyToRecipients(contacts->Rows().At(1).Key, true);
    EXPECT_EQ(recipients->SelectedKeys(), QStringList(contacts->Rows().At(1).Key));
    form.UpdateStateDisplay();
    EXPECT_EQ(window.Find("fraRecipients")->property("title").toString(), Q("Recipient List [2]"));
    EXPECT_EQ(form.GetTailText(), Q(" - "));
    EXPECT_EQ(frmMain::CountChar(Q("a-b-c"), u'-'), 2);
    EXPECT_EQ(frmMain::SMSLength(Q("Hello") + QChar(0x20AC)), 7);
    window.Context.MaxMessageSize = 200;
    form.ShowRemainingChars();
    EXPECT_EQ(Words(window.Find("lblCharsRemaining")), Q("196"));
    message->setProperty("plainText", Q("Hello"));
    form.EnableButtons();
    EXPECT_TRUE(window.Find("cmdSendNow")->isEnabled());
    form.Reset();
    EXPECT_EQ(recipients->Rows().Count(), 0);
    EXPECT_TRUE(Words(message).isEmpty());
    EXPECT_FALSE(window.Find("cmdSendNow")->isEnabled());
    message->setFocus();
    form.ContactListFocus(true);
    EXPECT_TRUE(contacts->hasFocus());
    form.InitAlphaTabs();
    EXPECT_EQ(window.Find<TabControl>("tabAlpha")->Selected(), 0);
    form.InitGroupTabs();
    EXPECT_EQ(window.Find<TabControl>("tabGroup")->Caption(0), Q("*"));
    form.InitMessageTails();
    EXPECT_EQ(window.Find<QComboBox>("cbTails")->count(), 0);
    form.InitMessageSize();
    form.InitSortBy();
    EXPECT_EQ(window.Find<QAbstractButton>("cmdSortBy")->text(), Q("F"));
    form.InitUserHeaders();
    EXPECT_TRUE(Words(window.Find("lblUserHeader0")).endsWith(Q(" :")));
    EXPECT_TRUE(form.IsPasswordOK(false)) << "no password is set";
    EXPECT_TRUE(form.PublicHistoryPasswordCheck());
    EXPECT_TRUE(form.ReportPasswordCheck());
}

TEST(FrmMain, AfterSendingTheFirstContactHasTheCursorAndItsDetailsAreShown) {
    MainWindow window(TwoContacts);
    window.Open();
    auto* contacts = window.Find<ListView>("lvContacts");
    window.Form->AddKeysToRecipients({contacts->Rows().At(1).Key});
    window.Find("txtMessage")->setProperty("plainText", Q("Hello"));
    window.Form->UpdateStateDisplay();
    contacts->SelectKey(contacts->Rows().At(1).Key);
    QTest::mouseClick(window.Find("cmdSendNow"), Qt::LeftButton);
    ASSERT_EQ(window.Machine.Office.MessageRows().size(), 1);
    EXPECT_EQ(contacts->CurrentKey(), contacts->Rows().At(0).Key);
    EXPECT_EQ(contacts->SelectedKeys(), QStringList(contacts->Rows().At(0).Key));
    EXPECT_EQ(Words(window.Find("lblPhone")), Q("+353865550102"));
    EXPECT_TRUE(contacts->hasFocus());
}

TEST(FrmMain, TheSortButtonChangesTheNamesInBothLists) {
    MainWindow window(TwoContacts);
    window.Open();
    auto* contacts = window.Find<ListView>("lvContacts");
    auto* recipients = window.Find<ListView>("lvRecipients");
    window.Form->AddKeysToRecipients({contacts->Rows().At(1).Key});
    EXPECT_EQ(Names(*recipients), QStringList(Q("Byrne, Declan")));
    QTest::mouseClick(window.Find("cmdSortBy"), Qt::LeftButton);
    EXPECT_EQ(Names(*contacts), QStringList({Q("Aoife Ahern"), Q("Declan Byrne")}));
    EXPECT_EQ(Names(*recipients), QStringList(Q("Declan Byrne")));
    QTest::mouseClick(window.Find("cmdSortBy"), Qt::LeftButton);
    EXPECT_EQ(Names(*contacts), QStringList({Q("Ahern, Aoife"), Q("Byrne, Declan")}));
    EXPECT_EQ(Names(*recipients), QStringList(Q("Byrne, Declan")));
}

TEST(FrmMain, AnEditedContactIsShownInBothLists) {
    MainWindow window(TwoContacts);
    window.Open();
    const QString key = window.Find<ListView>("lvContacts")->Rows().At(0).Key;
    window.Form->AddKeysToRecipients({key});
    Contact edited = *window.Context.AddressContacts.ContactByKey(key);
    edited.Surname = Q("Aherne");
    edited.IsConfirmSend = true;
    window.Find<PhonebookArea>("fraPhoneBook")->UpdateContactItems(edited);
    const ListRow row = window.Find<ListView>("lvRecipients")->Rows().At(0);
    EXPECT_EQ(row.Text, Q("Aherne, Aoife"));
    EXPECT_EQ(row.ToolTip, Q(" +353865550102  (requires confirmation) "));
    EXPECT_EQ(row, window.Find<ListView>("lvContacts")->Rows().At(0));
    EXPECT_EQ(window.Context.RecipientContacts.ContactByKey(key)->Surname, Q("Aherne"));
}

TEST(FrmMain, ARecipientWhoIsEditedWhileAnotherLetterIsOnShowKeepsTheRowAndGetsTheNewName) {
    MainWindow window(TwoContacts);
    window.Open();
    const QString key = window.Find<ListView>("lvContacts")->Rows().At(0).Key;
    window.Form->AddKeysToRecipients({key});
    Contact edited = *window.Context.AddressContacts.ContactByKey(key);
    edited.Surname = Q("Aherne");
    window.Form->ShowAlphaGroup(Q("B"));
    window.Find<PhonebookArea>("fraPhoneBook")->UpdateContactItems(edited);
    EXPECT_EQ(Names(*window.Find<ListView>("lvRecipients")), QStringList(Q("Ahern, Aoife")));
    EXPECT_EQ(window.Context.RecipientContacts.ContactByKey(key)->Surname, Q("Aherne"));
}

TEST(FrmMain, ContactsThatGoOverBringTheRecipientsToTheSamePlaceAndNeitherListIsRedrawnMeanwhile) {
    MainWindow window([](TestMachine& machine) {
        for (int i = 0; i < 120; ++i) {
            machine.Office.AddContact(Q("Name%1").arg(i, 3, 10, QLatin1Char('0')), Q("Al"), Q("+35311"));
        }
    });
    window.Open();
    auto* contacts = window.Find<ListView>("lvContacts");
    auto* recipients = window.Find<ListView>("lvRecipients");
    QStringList keys = contacts->Rows().KeyList();
    const QString last = keys.takeAt(60);
    window.Form->AddKeysToRecipients(keys);
    recipients->scrollToTop();
    ASSERT_EQ(recipients->TopRow(), 0);
    int redrawn = 2;
    QObject::connect(&recipients->Rows(), &QAbstractItemModel::rowsInserted, window.Form.get(),
                     [&] { redrawn = int{contacts->updatesEnabled()} + int{recipients->updatesEnabled()}; });
    contacts->SelectKey(last);
    QTest::keyClick(contacts, Qt::Key_Return);
    EXPECT_EQ(recipients->Rows().Count(), 120);
    EXPECT_EQ(recipients->TopRow(), 60) << "the place that the contact has in its own list";
    EXPECT_EQ(redrawn, 0);
    EXPECT_TRUE(contacts->updatesEnabled() && recipients->updatesEnabled());
}

TEST(FrmMain, ADoubleClickOnAGroupsTabMakesItsMembersRecipients) {
    MainWindow window([](TestMachine& machine) {
        const qint32 byrne = machine.Office.AddContact(Q("Byrne"), Q("Declan"), Q("+353865550101"));
        machine.Office.AddContact(Q("Ahern"), Q("Aoife"), Q("+353865550102"));
        machine.Office.AddGroup(Q("Drivers"), {byrne});
    });
    window.Open();
    auto* tabs = window.Find<TabControl>("tabGroup");
    ASSERT_EQ(tabs->Caption(1), Q("Drivers"));
    ClickTab(window, 1);
    QTest::mouseDClick(tabs, Qt::LeftButton, Qt::NoModifier, tabs->TabRect(1).center());
    EXPECT_EQ(Names(*window.Find<ListView>("lvRecipients")), QStringList(Q("Byrne, Declan")));
    EXPECT_EQ(window.Find("fraRecipients")->property("title").toString(), Q("Recipient List [1]"));
}

TEST(FrmMain, AGroupIsMadeOfAllRecipientsByTheirMenu) {
    MainWindow window(TwoContacts);
    window.Open();
    auto* recipients = window.Find<ListView>("lvRecipients");
    window.Form->AddKeysToRecipients(window.Find<ListView>("lvContacts")->Rows().KeyList());
    recipients->SelectKey(recipients->Rows().At(0).Key);
    window.Machine.Door.ExpectMenu(Q("Create New Group From Recipients"));
    window.Machine.Door.ExpectDialog([](QDialog& dialog) {
        auto* name = dialog.findChild<QLineEdit*>(Q("txtName"));
        QTest::keyClicks(name, Q("Crew"));
        QTest::keyClick(name, Qt::Key_Return);
    });
    QTest::mouseClick(recipients->viewport(), Qt::RightButton, Qt::NoModifier, QPoint(8, 8));
    EXPECT_EQ(window.Machine.Door.Owner, window.Form.get());
    auto* tabs = window.Find<TabControl>("tabGroup");
    ASSERT_EQ(tabs->Count(), 4);
    EXPECT_EQ(tabs->Caption(2), Q("Crew"));
    ClickTab(window, 2);
    EXPECT_EQ(Names(*window.Find<ListView>("lvContacts")),
              QStringList({Q("Ahern, Aoife"), Q("Byrne, Declan")}));
}
