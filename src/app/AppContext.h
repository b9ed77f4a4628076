#pragma once

#include "addressbook/ContactList.h"
#include "core/BusyState.h"
#include "core/Settings.h"
#include "store/Outbox.h"
#include "store/Phonebook.h"
#include "tracking/DeliveryNotifier.h"
#include "tracking/History.h"
#include "tracking/MessageTracker.h"

#include <QString>

struct Machine;

/// What is global to the process, under its fixed names: made once by the program's one main.cpp, handed to
/// the entry routine and the shell. Below them a class gets the two or three things that it needs. The
/// members are created in the order in which they stand here, after OutboxDB, MaxMessageSize, PhonebookDB and
/// the cfg values of the two base classes, and destroyed in the reverse.
class AppContext : public OutboxState, public PhonebookState {
public:
    explicit AppContext(const Machine& machine);
    AppContext(const AppContext&) = delete;
    AppContext& operator=(const AppContext&) = delete;

    Settings AppSettings;
    BusyState AppBusyState;
    /// 0 by surname, 1 by first name.
    qint32 SortBy = 0;
    /// Two letters of ISO 3166; decides the spelling of Favourite.
    QString LocaleCountry;
    /// The help file of the application; empty while none is bound.
    QString HelpFile;
    ContactList AddressContacts;
    ContactList RecipientContacts;
    mdlHistory History;
    ::MessageTracker MessageTracker;
    DeliveryNotifier Notifier;

    /// The two stores as their operations take them.
    DBServices Database;
    OutboxServices Outbox;
    PhonebookServices Phonebook;

    /// The country of the user's locale; "IE" if it names none.
    void ReadLocaleCountry();
    /// From the settings; the number that the value begins with, 0 if it begins with none. Throws
    /// OverflowError for more than 32 bits.
    void LoadSortBy();
    /// Written in decimal.
    void SaveSortBy();
    /// Makes the tracker ready for work: the tray's icon and the popup that it tells people by, and the
    /// user's settings. Both outlive ReleaseTracker.
    void CreateTracker(TrayBalloon* trayIcon, PopupSurface* popup);
    /// The tracker tells nobody any more.
    void ReleaseTracker();
};
