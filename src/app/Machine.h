#pragma once

class Clock;
class CodePage;
class DesktopNotices;
class Drives;
class EventPump;
class Folders;
class Instance;
class KeyState;
class LocalFiles;
class Log;
class MessageBoxes;
class ModalDoor;
class Sound;
class Tray;
class UrlOpener;
class Windows;

namespace engine {
class ConnectionFactory;
}

/// Everything that the program reaches of the machine it runs on, one seam each. The program installs the
/// real ones (RealMachine), a test those that record.
struct Machine {
    Clock& Time;
    EventPump& Pump;
    const KeyState& Keys;
    Sound& Beeper;
    DesktopNotices& Notices;
    Tray& NotificationArea;
    UrlOpener& Web;
    MessageBoxes& Boxes;
    ModalDoor& Door;
    Folders& Places;
    Drives& NetworkDrives;
    LocalFiles& Files;
    Windows& Desktop;
    Instance& OneCopy;
    engine::ConnectionFactory& Engine;
    const CodePage& Page;
    Log& AppLog;
};
