#pragma once

#include "common/CommandLine.h"

#include <QTextStream>

#include <functional>

namespace engine {
class ConnectionFactory;
}

/// What a command of larkspan-data works with.
struct CommandContext {
    engine::ConnectionFactory& Engines;
    QTextStream& Out;
    QTextStream& Error;
    bool IsErrorTerminal = false;
    /// Asked between two steps of a long work.
    std::function<bool()> IsStopped;
};

/// One command, "larkspan-data NAME ...". Each has a file of its own; Commands.cpp lists them.
struct Command {
    QString Name;
    QString Synopsis;  // behind the name, "FOLDER [--sample[=N]]"
    QString Summary;   // one line
    QString Details;   // lines closed by "\n"
    QList<CommandOption> Options;
    /// Returns an ExitCode; throws CommandLineError.
    std::function<int(const CommandLine&, const CommandContext&)> Run;
};

/// The one argument FOLDER. Throws CommandLineError if there is none, or more.
[[nodiscard]] QString OnlyFolder(const CommandLine& line);
