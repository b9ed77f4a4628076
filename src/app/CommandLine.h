#pragma once

#include <QString>
#include <QStringList>

/// The command line. Three switches are looked for anywhere in it: "/error", "/wizard", "/tipoftheday".
/// Beside them it takes the options that people expect of a program; what else stands there is passed over.
/// Values of options do not count when the switches are looked for: a folder may be called "errors".
class CommandLine {
public:
    /// `arguments` without the program's own name.
    explicit CommandLine(const QStringList& arguments);

    [[nodiscard]] bool IsErrorLog() const { return HasSwitch(QStringLiteral("/error")); }
    [[nodiscard]] bool IsTipOfTheDay() const { return HasSwitch(QStringLiteral("/tipoftheday")); }
    /// The setup wizard is forced in any case of letters, the phonebook wizard in lower case only.
    [[nodiscard]] bool IsSetupWizard() const { return HasSwitch(QStringLiteral("/wizard")); }
    [[nodiscard]] bool IsPhonebookWizard() const { return Text.contains(QStringLiteral("/wizard")); }

    /// Everything but the options and their values, as typed, with single blanks between.
    QString Text;
    bool IsHelp = false;
    bool IsVersion = false;
    /// The value of --data, made absolute; empty without it.
    QString DataFolder;
    /// The value of --palette: "light", "dark" or empty for the desktop's own.
    QString Palette;
    /// What is wrong with the options, for the person who typed them; empty if nothing is.
    QString Problem;

    /// What --help prints; lines closed by "\n".
    [[nodiscard]] static QString HelpText();

private:
    [[nodiscard]] bool HasSwitch(const QString& name) const { return Text.toLower().contains(name); }
    void TakeDataFolder(const QString& value);
    void TakePalette(const QString& value);
};
