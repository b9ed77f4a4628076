#pragma once

#include <QtGlobal>

class BusyState;
class Clock;
class ComposeHost;
class ContactList;
class EventPump;
class KeyState;
class Log;
class MessageTracker;
class ModalDoor;
class Settings;
class Sound;
class mdlHistory;
struct OutboxServices;
struct PhonebookServices;

/// What the composing side works with. All of it outlives the area.
struct ComposeServices {
    const OutboxServices& Outbox;
    const PhonebookServices& Phonebook;
    ContactList& AddressContacts;
    ContactList& RecipientContacts;
    mdlHistory& History;
    MessageTracker& Tracker;
    BusyState& Busy;
    /// 0 by surname, 1 by first name: the form of the names in the recipient list.
    const qint32& SortBy;
    ComposeHost& Host;
    ModalDoor& Door;
    const KeyState& Keys;
    Sound& Beeper;
    EventPump& Pump;
    Log& AppLog;
    Clock& Time;
    Settings& AppSettings;
};
