#pragma once

/// Whether the session has a message bus that can be asked. Looking for one where there is none would make
/// the bus library start a daemon, which takes its time; so nobody touches the bus without having asked here.
[[nodiscard]] bool HasSessionBus();
