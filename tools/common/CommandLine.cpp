#include "common/CommandLine.h"

#include <algorithm>

namespace {

constexpr int HelpColumn = 24;
constexpr int HelpWidth = 80;

bool IsWholeNumber(const QString& text) {
    bool isNumber = false;
    text.toInt(&isNumber);
    return isNumber;
}

const CommandOption& FindOption(const QList<CommandOption>& options, const QString& name) {
    const auto found = std::find_if(options.begin(), options.end(),
                                    [&](const CommandOption& option) { return option.Name == name; });
    if (found == options.end()) {
        throw CommandLineError(QStringLiteral("unknown option --%1").arg(name));
    }
    return *found;
}

/// The value of the option at `index`, which moves on if the value is an argument of its own.
QString TakeValue(const CommandOption& option, const QStringList& arguments, qsizetype& index) {
    const QString& argument = arguments[index];
    const qsizetype equals = argument.indexOf(u'=');
    if (equals >= 0) {
        if (option.Value.isEmpty()) {
            throw CommandLineError(QStringLiteral("--%1 takes no value").arg(option.Name));
        }
        return argument.mid(equals + 1);
    }
    const bool hasNext = index + 1 < arguments.size();
    if (option.Value.isEmpty() ||
        (option.IsValueOptional && !(hasNext && IsWholeNumber(arguments[index + 1])))) {
        return {};
    }
    if (!hasNext) {
        throw CommandLineError(QStringLiteral("--%1 needs a value").arg(option.Name));
    }
    return arguments[++index];
}

QString Form(const CommandOption& option) {
    QString name = QStringLiteral("  --") + option.Name;
    if (option.Value.isEmpty()) {
        return name;
    }
    return option.IsValueOptional ? name + QStringLiteral("[=%1]").arg(option.Value)
                                  : name + u' ' + option.Value;
}

}  // namespace

CommandLine CommandLine::Parse(const QStringList& arguments, const QList<CommandOption>& options) {
    CommandLine line;
    bool isOptionsOver = false;
    for (qsizetype index = 0; index < arguments.size(); ++index) {
        const QString& argument = arguments[index];
        if (isOptionsOver || !argument.startsWith(u'-') || argument == u"-") {
            line.Arguments.append(argument);
        } else if (argument == u"--") {
            isOptionsOver = true;
        } else if (!argument.startsWith(u"--")) {
            throw CommandLineError(QStringLiteral("unknown option %1").arg(argument));
        } else {
            const CommandOption& option = FindOption(options, argument.mid(2).section(u'=', 0, 0));
            line.m_values[option.Name].append(TakeValue(option, arguments, index));
        }
    }
    return line;
}

QString CommandLine::Value(const QString& name, const QString& fallback) const {
    const QStringList values = m_values.value(name);
    return values.isEmpty() || values.constLast().isEmpty() ? fallback : values.constLast();
}

int CommandLine::Number(const QString& name, int fallback, int lowest, int highest) const {
    const QString text = Value(name);
    if (text.isEmpty()) {
        return fallback;
    }
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber || number < lowest || number > highest) {
        throw CommandLineError(QStringLiteral("--%1 takes a whole number from %2 to %3, not \"%4\"")
                                   .arg(name)
                                   .arg(lowest)
                                   .arg(highest)
                                   .arg(text));
    }
    return number;
}

QString OptionsHelp(const QList<CommandOption>& options) {
    QString help;
    for (const CommandOption& option : options) {
        QString line = Form(option);
        line = line.size() + 2 > HelpColumn ? line + u'\n' + QString(HelpColumn, u' ')
                                            : line.leftJustified(HelpColumn);
        qsizetype column = HelpColumn;
        for (const QString& word : option.Help.split(u' ')) {
            if (column > HelpColumn && column + 1 + word.size() > HelpWidth) {
                line += u'\n' + QString(HelpColumn, u' ');
                column = HelpColumn;
            }
            const QString piece = column > HelpColumn ? u' ' + word : word;
            line += piece;
            column += piece.size();
        }
        help += line + u'\n';
    }
    return help;
}
