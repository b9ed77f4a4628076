#pragma once

#include "addressbook/PhonebookArea.h"
#include "compose/ComposeArea.h"
#include "controls/ListView.h"
#include "controls/TabControl.h"
#include "shell/AdBanner.h"
#include "shell/AlertStrip.h"
#include "shell/CommandStrip.h"
#include "shell/FormTable.h"

#include <QComboBox>
#include <QLineEdit>

/// A control of the main window as the rest of the system finds it: name, type, the area that owns it, and
/// the key by which the focus gets there (0: by Tab; NoFocus: it takes none).
struct MainControl {
    static constexpr int NoFocus = -1;

    const char* Name;
    FormTypes::Test IsType;
    FormTypes::Test IsOwner;
    int Key;
};

/// All of them, as the eye reads.
inline const std::vector<MainControl>& MainControls() {
    using namespace FormTypes;
    constexpr auto NoFocus = MainControl::NoFocus;
    constexpr Test Book = &Is<PhonebookArea>;
    constexpr Test Compose = &Is<ComposeArea>;
    constexpr Test Commands = &Is<CommandStrip>;
    constexpr Test Alert = &Is<AlertStrip>;
    static const std::vector<MainControl> controls = {
        {"cmdHistory", Button, Commands, 0},
        {"cmdReports", Button, Commands, 0},
        {"cmdConfig", Button, Commands, 0},
        {"imgAd", &Is<AdBanner>, Commands, NoFocus},
        {"cmdAbout", Button, Commands, 0},
        {"cmdMinimize", Button, Commands, 0},
        {"cmdExit", Button, Commands, 0},
        {"fraPhoneBook", IsFrame, Book, NoFocus},
        {"tabGroup", &Is<TabControl>, Book, 0},
        {"tabAlpha", &Is<TabControl>, Book, 0},
        {"lvContacts", &Is<ListView>, Book, Qt::Key_C},
        {"cmdSortBy", Button, Book, 0},
        {"cmdAddContact", Button, Book, 0},
        {"cmdEditContact", Button, Book, 0},
        {"cmdDeleteContact", Button, Book, 0},
        {"cmdSearch", Button, Book, 0},
        {"cmdPrint", Button, Book, 0},
        {"fraContactDetail", IsFrame, Book, NoFocus},
        {"lblPhoneCaption", Label, Book, NoFocus},
        {"lblPhone", Label, Book, NoFocus},
        {"lblNoteCaption", Label, Book, NoFocus},
        {"lblNote", Label, Book, NoFocus},
        {"lblUserHeader0", Label, Book, NoFocus},
        {"UserData0", Label, Book, NoFocus},
        {"lblUserHeader1", Label, Book, NoFocus},
        {"UserData1", Label, Book, NoFocus},
        {"lblUserHeader2", Label, Book, NoFocus},
        {"UserData2", Label, Book, NoFocus},
        {"fraRecipients", IsFrame, Compose, NoFocus},
        {"lvRecipients", &Is<ListView>, Compose, Qt::Key_R},
        {"cmdClearRecipients", Button, Compose, 0},
        {"fraMessage", IsFrame, Compose, NoFocus},
        {"cmdQBPrevious", Button, Compose, 0},
        {"cmdQuickFire0", Button, Compose, 0},
        {"cmdQuickFire1", Button, Compose, 0},
        {"cmdQuickFire2", Button, Compose, 0},
        {"cmdQuickFire3", Button, Compose, 0},
        {"cmdQuickFire4", Button, Compose, 0},
        {"cmdQuickFire5", Button, Compose, 0},
        {"cmdQuickFire6", Button, Compose, 0},
        {"cmdQuickFire7", Button, Compose, 0},
        {"cmdQuickFire8", Button, Compose, 0},
        {"cmdQuickFire9", Button, Compose, 0},
        {"cmdNextQBPage", Button, Compose, 0},
        {"txtMessage", IsTextBox, Compose, Qt::Key_M},
        {"pbMsgSize", &Is<QWidget>, Compose, NoFocus},
        {"lblUsed", Label, Compose, NoFocus},
        {"lblSMSPageCount", Label, Compose, NoFocus},
        {"lblCharsRemaining", Label, Compose, NoFocus},
        {"cmdClearMessage", Button, Compose, 0},
        {"fraTail", IsFrame, Compose, NoFocus},
        {"txtEndWidth", &Is<QLineEdit>, Compose, 0},
        {"cbTails", &Is<QComboBox>, Compose, 0},
        {"fraSendButtons", IsFrame, Compose, NoFocus},
        {"cmdSendLater", Button, Compose, 0},
        {"cmdSendNow", Button, Compose, 0},
        {"lblFailureWarning", Button, Alert, 0},
    };
    return controls;
}
