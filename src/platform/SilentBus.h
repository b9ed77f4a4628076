#pragma once

/// Passes over a session bus at a local socket that takes a call and says nothing for a second: the bus
/// library, which the toolkit uses as well, would wait for it without an end. The environment then names a
/// bus that does not exist. Before the application object is made; waits only for a silent bus.
void PassOverSilentSessionBus();
