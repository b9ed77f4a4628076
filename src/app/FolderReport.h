#pragma once

#include <QString>

struct Machine;

/// Says in the log, in one line each, in which of the program's own folders nothing can be made, and what the
/// user loses by it. Later on every write that fails there is passed over in silence.
namespace FolderReport {

/// Looks at the application folder, the temporary folder and the one of `settingsFile` (empty: no settings).
/// Only permissions are asked for; nothing is written. A folder that does not exist yet counts as the nearest
/// one above it, which is where it would be made.
void Write(const Machine& machine, const QString& settingsFile);

}  // namespace FolderReport
