#pragma once

#include "platform/Clock.h"
#include "platform/Drives.h"
#include "platform/EventPump.h"
#include "platform/Folders.h"
#include "store/DB.h"

/// The real machine, as a DB needs it.
struct ToolMachine {
    engine::FileConnectionFactory Engines;
    SystemClock Time;
    ApplicationEventPump Pump;
    SystemDrives MappedDrives;
    SystemFolders LocalFolders;

    [[nodiscard]] DBServices Services() { return {Engines, Time, Pump, MappedDrives, LocalFolders}; }
};
