#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <stdexcept>

/// One option, "--name". The same table feeds the parser, the help text and, in a test, the man page.
struct CommandOption {
    QString Name;   // without the dashes
    QString Value;  // what its value is called in the help, "N"; empty for an option without value
    QString Help;
    /// "--name", "--name=N" and, if what follows is a whole number, "--name N".
    bool IsValueOptional = false;
};

/// A command line that cannot be understood, in words for people.
class CommandLineError : public std::runtime_error {
public:
    explicit CommandLineError(const QString& text) : std::runtime_error(text.toStdString()), m_text(text) {}
    [[nodiscard]] const QString& Text() const { return m_text; }

private:
    QString m_text;
};

/// A command line taken apart.
class CommandLine {
public:
    /// `arguments` come without the program's name. "--" ends the options. Throws CommandLineError for an
    /// unknown option and for a value that is missing or not wanted.
    [[nodiscard]] static CommandLine Parse(const QStringList& arguments, const QList<CommandOption>& options);

    /// What is not an option, in order.
    QStringList Arguments;

    [[nodiscard]] bool Has(const QString& name) const { return m_values.contains(name); }
    /// All values of a repeated option, in order; an empty text where an optional value was left out.
    [[nodiscard]] QStringList Values(const QString& name) const { return m_values.value(name); }
    /// The last value, or `fallback` if the option is missing or came without its value.
    [[nodiscard]] QString Value(const QString& name, const QString& fallback = {}) const;
    /// The last value as a whole number. Throws CommandLineError if it is none or out of range.
    [[nodiscard]] int Number(const QString& name, int fallback, int lowest, int highest) const;

private:
    QMap<QString, QStringList> m_values;
};

/// "  --sample[=N]        text", one option a line or more, at most 80 columns.
[[nodiscard]] QString OptionsHelp(const QList<CommandOption>& options);
