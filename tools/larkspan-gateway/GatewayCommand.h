#pragma once

#include "common/CommandLine.h"
#include "larkspan-gateway/Gateway.h"

#include <QTextStream>

#include <functional>

/// What the program works with.
struct GatewayContext {
    DBServices Services;
    QTextStream& Out;
    QTextStream& Error;
    std::function<bool()> IsStopped;
};

/// The options, as the parser, the help text and the man page have them.
[[nodiscard]] QList<CommandOption> GatewayOptions();

/// Throws CommandLineError for a value that makes no sense.
[[nodiscard]] GatewaySettings ReadGatewaySettings(const CommandLine& line);

/// Runs a whole command line (without the program's name) and returns an ExitCode.
[[nodiscard]] int RunGatewayCommand(const QStringList& arguments, const GatewayContext& context);
