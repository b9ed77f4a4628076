#include "common/ExitCode.h"
#include "common/ProgressBar.h"
#include "core/Numbers.h"
#include "larkspan-data/Commands.h"
#include "platform/Drives.h"
#include "store/engine/Error.h"
#include "store/engine/sqlite/OfficeFiles.h"
#include "store/office/NewOffice.h"

#include <QFileInfo>

namespace {

QString Size(const QString& path) {
    return Numbers::FileSize(QFileInfo(path).size());
}

/// Every file that a failure does not keep from it is compacted.
int CompactFiles(const QString& folder, const CommandContext& context) {
    ProgressBar bar(context.Error, context.IsErrorTerminal);
    const QStringList names{NewOffice::OutboxName, NewOffice::PhonebookName};
    int code = ExitCode::Fine;
    for (qsizetype i = 0; i < names.size(); ++i) {
        if (context.IsStopped && context.IsStopped()) {
            context.Error << QStringLiteral("larkspan-data: stopped\n");
            return ExitCode::Stopped;
        }
        bar.Show(names[i], static_cast<int>(i), static_cast<int>(names.size()));
        const QString path = NativePath(folder + u'/' + names[i]);
        const QString before = Size(path);
        try {
            OfficeFiles::CompactFile(path);
            context.Out << names[i] << QStringLiteral(": ") << before << QStringLiteral(" before, ")
                        << Size(path) << QStringLiteral(" now\n");
        } catch (const engine::Failure& failure) {
            context.Error << QStringLiteral("larkspan-data: ") << names[i] << QStringLiteral(": ")
                          << failure.Item().Description << QStringLiteral("; it is as it was\n");
            code = ExitCode::CannotOpen;
        }
    }
    return code;
}

int Run(const CommandLine& line, const CommandContext& context) {
    const QString folder = OnlyFolder(line);
    if (!QFileInfo(NativePath(folder)).isDir()) {
        context.Error << QStringLiteral("larkspan-data: there is no folder ") << folder << QChar(u'\n');
        return ExitCode::CannotOpen;
    }
    return CompactFiles(folder, context);
}

}  // namespace

Command CompactCommand() {
    return {
        QStringLiteral("compact"),
        QStringLiteral("FOLDER"),
        QStringLiteral("give back the room of deleted rows"),
        QStringLiteral(
            "Compacts both database files in FOLDER where they are. Clients and gateways may go on; they\n"
            "wait while their file is being written anew. A file that cannot be compacted, as when another\n"
            "program keeps it, stays as it was.\n"),
        {},
        Run};
}
