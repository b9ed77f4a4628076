#pragma once

#include "larkspan-data/Command.h"

/// Every command, in the order of the help text.
[[nodiscard]] QList<Command> AllCommands();

/// Runs a whole command line (without the program's name) and returns an ExitCode.
[[nodiscard]] int RunCommandLine(const QStringList& arguments, const CommandContext& context);

/// The commands "create", "check" and "compact".
[[nodiscard]] Command CreateCommand();
[[nodiscard]] Command CheckCommand();
[[nodiscard]] Command CompactCommand();
