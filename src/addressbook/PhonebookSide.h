#pragma once

#include <QString>

class Clock;
class ContactList;
class EventPump;
class Log;
class MessageBoxes;
class ModalDoor;
class PhonebookHost;
class Settings;
class Sound;
struct PhonebookServices;

/// What the panels of the phonebook side work with. Everything outlives them.
struct PhonebookSide {
    PhonebookServices& Phonebook;
    /// Always the contacts now shown in the contact list.
    ContactList& AddressContacts;
    /// 0 by surname, 1 by first name.
    qint32& SortBy;
    /// ISO country of the user's locale.
    QString LocaleCountry;
    /// True while the window loads: the tabs and the sort button then refill nothing.
    const bool& IsInitialising;
    PhonebookHost& Host;
    ModalDoor& Door;
    MessageBoxes& Boxes;
    EventPump& Pump;
    Log& AppLog;
    Clock& Time;
    Sound& Speaker;
    Settings& AppSettings;

    /// "Favorite" in the United States, "Favourite" everywhere else.
    [[nodiscard]] QString FavouriteWord() const {
        return LocaleCountry == QStringLiteral("US") ? QStringLiteral("Favorite")
                                                     : QStringLiteral("Favourite");
    }
};
