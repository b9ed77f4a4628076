#include "larkspan-data/Commands.h"

#include "common/ExitCode.h"

#include <algorithm>
#include <exception>

namespace {

const QString Program = QStringLiteral("larkspan-data");

const QList<CommandOption> CommonOptions = {
    {QStringLiteral("help"), {}, QStringLiteral("print a help text")},
    {QStringLiteral("version"), {}, QStringLiteral("print the version")},
};

QString ProgramHelp() {
    QString help = QStringLiteral(
                       "usage: %1 COMMAND ...\n\nMakes, checks and compacts the data folder that the "
                       "workstations of an office "
                       "share.\n\nCommands:\n")
                       .arg(Program);
    for (const Command& command : AllCommands()) {
        help += QStringLiteral("  %1%2\n").arg(command.Name.leftJustified(22), command.Summary);
    }
    help += QStringLiteral("\nOptions:\n") + OptionsHelp(CommonOptions);
    help += QStringLiteral("\n\"%1 COMMAND --help\" tells more about a command.\n").arg(Program);
    help += QStringLiteral(
        "\nExit status: 0 fine, 1 a problem was found, 2 the command line was not understood,\n"
        "3 a file or folder cannot be opened or made, 4 stopped by a signal.\n");
    return help;
}

QString CommandHelp(const Command& command) {
    return QStringLiteral("usage: %1 %2 %3\n\n%4\n\nOptions:\n%5")
        .arg(Program, command.Name, command.Synopsis, command.Details.trimmed(),
             OptionsHelp(command.Options + CommonOptions));
}

int PrintVersion(const CommandContext& context) {
    context.Out << Program << QChar(u' ') << QStringLiteral(LARKSPAN_VERSION) << QChar(u'\n');
    return ExitCode::Fine;
}

int RunCommand(const Command& command, const QStringList& arguments, const CommandContext& context) {
    const CommandLine line = CommandLine::Parse(arguments, command.Options + CommonOptions);
    if (line.Has(QStringLiteral("help"))) {
        context.Out << CommandHelp(command);
        return ExitCode::Fine;
    }
    if (line.Has(QStringLiteral("version"))) {
        return PrintVersion(context);
    }
    return command.Run(line, context);
}

int Dispatch(const QStringList& arguments, const CommandContext& context) {
    const QString first = arguments.value(0);
    if (first == u"--help") {
        context.Out << ProgramHelp();
        return ExitCode::Fine;
    }
    if (first == u"--version") {
        return PrintVersion(context);
    }
    if (first.isEmpty()) {
        throw CommandLineError(QStringLiteral("a command is missing"));
    }
    const QList<Command> commands = AllCommands();
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&](const Command& command) { return command.Name == first; });
    if (found == commands.end()) {
        throw CommandLineError(QStringLiteral("there is no command \"%1\"").arg(first));
    }
    return RunCommand(*found, arguments.mid(1), context);
}

}  // namespace

QList<Command> AllCommands() {
    return {CreateCommand(), CheckCommand(), CompactCommand()};
}

QString OnlyFolder(const CommandLine& line) {
    if (line.Arguments.isEmpty() || line.Arguments.constFirst().isEmpty()) {
        throw CommandLineError(QStringLiteral("the FOLDER is missing"));
    }
    if (line.Arguments.size() > 1) {
        throw CommandLineError(QStringLiteral("only one FOLDER, not also \"%1\"").arg(line.Arguments[1]));
    }
    return line.Arguments.constFirst();
}

int RunCommandLine(const QStringList& arguments, const CommandContext& context) {
    try {
        return Dispatch(arguments, context);
    } catch (const CommandLineError& error) {
        context.Error << Program << QStringLiteral(": ") << error.Text() << QStringLiteral("\nTry \"")
                      << Program << QStringLiteral(" --help\".\n");
        return ExitCode::Usage;
    } catch (const std::exception& error) {
        context.Error << Program << QStringLiteral(": ") << QString::fromUtf8(error.what()) << QChar(u'\n');
        return ExitCode::CannotOpen;
    }
}
