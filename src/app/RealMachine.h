#pragma once

#include "app/Machine.h"
#include "controls/ModalDoor.h"
#include "core/Log.h"
#include "platform/Clock.h"
#include "platform/Drives.h"
#include "platform/EventPump.h"
#include "platform/Folders.h"
#include "platform/LocalFiles.h"
#include "platform_ui/DBusNotices.h"
#include "platform_ui/Instance.h"
#include "platform_ui/QtKeyState.h"
#include "platform_ui/QtMessageBoxes.h"
#include "platform_ui/QtSound.h"
#include "platform_ui/QtTray.h"
#include "platform_ui/QtUrlOpener.h"
#include "platform_ui/Windows.h"
#include "store/engine/Connection.h"

#include <memory>

/// The machine itself. Made once, after the QApplication and before everything else.
class RealMachine {
public:
    RealMachine();
    /// References to its members: valid as long as it lives.
    [[nodiscard]] Machine Seams();

private:
    SystemClock m_clock;
    ApplicationEventPump m_pump;
    QtKeyState m_keys;
    ScreenModalDoor m_door;
    QtMessageBoxes m_boxes{m_door};
    SystemFolders m_folders;
    SystemDrives m_drives;
    DiskFiles m_files;
    Log m_log{m_files, m_clock};
    QtSound m_sound{m_log};
    DBusNotices m_notices{m_log};
    QtTray m_tray;
    QtUrlOpener m_web;
    std::unique_ptr<Windows> m_windows;
    LocalInstance m_instance;
    engine::FileConnectionFactory m_engine;
};
