#include "common/ExitCode.h"
#include "common/ProgressBar.h"
#include "larkspan-data/Commands.h"
#include "platform/Drives.h"
#include "store/office/OfficeCheck.h"

#include <QFileInfo>
#include <QJsonDocument>

namespace {

std::optional<OfficeReport> Look(const QString& folder, const CommandContext& context) {
    ProgressBar bar(context.Error, context.IsErrorTerminal);
    return OfficeCheck(context.Engines).Run(folder, [&](const QString& step, int done, int total) {
        bar.Show(step, done, total);
        return !context.IsStopped || !context.IsStopped();
    });
}

int Run(const CommandLine& line, const CommandContext& context) {
    const QString folder = OnlyFolder(line);
    if (!QFileInfo(NativePath(folder)).isDir()) {
        context.Error << QStringLiteral("larkspan-data: there is no folder ") << folder << QChar(u'\n');
        return ExitCode::CannotOpen;
    }
    const auto report = Look(folder, context);
    if (!report) {
        context.Error << QStringLiteral("larkspan-data: stopped\n");
        return ExitCode::Stopped;
    }
    if (line.Has(QStringLiteral("json"))) {
        context.Out << QString::fromUtf8(QJsonDocument(report->ToJson()).toJson());
    } else {
        context.Out << report->ToText();
    }
    return report->IsFine() ? ExitCode::Fine : ExitCode::Problem;
}

}  // namespace

Command CheckCommand() {
    return {
        QStringLiteral("check"),
        QStringLiteral("FOLDER [--json]"),
        QStringLiteral("look a data folder over"),
        QStringLiteral(
            "Looks at both database files in FOLDER: whether they are sound, what they hold, memberships\n"
            "without a contact or group, rows that are missing or stand twice, and how near the record\n"
            "numbers are to 32767, the last one that works. Changes nothing.\n"),
        {{QStringLiteral("json"), {}, QStringLiteral("print the report as JSON")}},
        Run};
}
