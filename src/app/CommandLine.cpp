#include "app/CommandLine.h"

#include "core/TextRules.h"
#include "platform/Drives.h"

#include <QDir>
#include <QFileInfo>

namespace {

/// The value of the option `name` at `index`, as "--name VALUE" or "--name=VALUE"; moves `index` on. False if
/// another argument stands there.
bool TakeOption(const QStringList& arguments, qsizetype& index, const QString& name, QString& value) {
    const QString& argument = arguments[index];
    if (argument.startsWith(name + u'=')) {
        value = argument.mid(name.size() + 1);
        return true;
    }
    if (argument != name) {
        return false;
    }
    ++index;
    value = arguments.value(index);
    return true;
}

/// "X:..." or "\\server...": a name that holds wherever the program is started, and on other machines too.
bool IsDriveOrShare(const QString& path) {
    return path.startsWith(QStringLiteral("\\\\")) || path.startsWith(QStringLiteral("//")) ||
           (path.size() >= 2 && path.at(0).isLetter() && path.at(1) == u':');
}

}  // namespace

CommandLine::CommandLine(const QStringList& arguments) {
    QStringList others;
    for (qsizetype index = 0; index < arguments.size(); ++index) {
        const QString& argument = arguments[index];
        QString value;
        if (argument == QStringLiteral("--help") || argument == QStringLiteral("-h")) {
            IsHelp = true;
        } else if (argument == QStringLiteral("--version")) {
            IsVersion = true;
        } else if (TakeOption(arguments, index, QStringLiteral("--data"), value)) {
            TakeDataFolder(value);
        } else if (TakeOption(arguments, index, QStringLiteral("--palette"), value)) {
            TakePalette(value);
        } else {
            others.append(argument);
        }
    }
    Text = others.join(u' ');
}

void CommandLine::TakeDataFolder(const QString& value) {
    if (value.isEmpty()) {
        Problem = QStringLiteral("--data needs the folder in which the office's data lies.");
        return;
    }
    const QString native = NativePath(value);
    if (!QFileInfo(NativePath(Text::WithBackslash(value) + QStringLiteral("smsmessages.mdb"))).isFile()) {
        Problem =
            QStringLiteral(
                "There is no smsmessages.mdb in %1.\nA new data folder is made by: larkspan-data create %1")
                .arg(value);
        return;
    }
    // A path of this machine must not depend on the folder in which the program was started.
    DataFolder = IsDriveOrShare(value) ? value : QDir(native).absolutePath();
}

void CommandLine::TakePalette(const QString& value) {
    if (value != QStringLiteral("light") && value != QStringLiteral("dark")) {
        Problem = QStringLiteral("--palette takes light or dark.");
        return;
    }
    Palette = value;
}

QString CommandLine::HelpText() {
    return QStringLiteral(
        "Usage: larkspan [OPTION]... [SWITCH]...\n"
        "Sends text messages to the people of an office.\n"
        "\n"
        "Options:\n"
        "  --data FOLDER         work with the data folder FOLDER, now and at later starts\n"
        "  --palette light|dark  use these colours instead of the desktop's\n"
        "  --help                show this text and end\n"
        "  --version             show the version and end\n"
        "\n"
        "Switches:\n"
        "  /error        write a log to applog.txt in the application's folder\n"
        "  /wizard       ask for the setup, which cannot be run from here yet\n"
        "  /tipoftheday  show the tip of the day whatever the settings say, if there is a tips.txt\n"
        "\n"
        "A data folder is made by: larkspan-data create FOLDER\n");
}
