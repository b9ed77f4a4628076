#include "common/ExitCode.h"
#include "common/ProgressBar.h"
#include "larkspan-data/Commands.h"
#include "store/office/NewOffice.h"

namespace {

std::optional<SampleOffice::Plan> PlanOf(const CommandLine& line) {
    const QString sample = QStringLiteral("sample");
    if (!line.Has(sample)) {
        return std::nullopt;
    }
    SampleOffice::Plan plan;
    plan.Contacts = line.Number(sample, SampleOffice::DefaultContacts, 0, SampleOffice::MaxContacts);
    return plan;
}

void Tell(const CommandContext& context, const QString& folder,
          const std::optional<SampleOffice::Plan>& plan) {
    context.Out << QStringLiteral("Made ") << NewOffice::OutboxName << QStringLiteral(" and ")
                << NewOffice::PhonebookName << QStringLiteral(" in ") << folder;
    if (plan) {
        context.Out << QStringLiteral(" with ") << plan->Contacts << QStringLiteral(" contacts, ")
                    << SampleOffice::Groups().size() << QStringLiteral(" groups and ")
                    << SampleOffice::Tails().size() << QStringLiteral(" message tails");
    }
    context.Out << QStringLiteral(".\n");
}

int Run(const CommandLine& line, const CommandContext& context) {
    const QString folder = OnlyFolder(line);
    const auto plan = PlanOf(line);
    try {
        ProgressBar bar(context.Error, context.IsErrorTerminal);
        const bool isDone = NewOffice::Create(folder, plan, context.Engines, [&](int done, int total) {
            bar.Show(QStringLiteral("contacts"), done, total);
            return !context.IsStopped || !context.IsStopped();
        });
        if (!isDone) {
            context.Error << QStringLiteral("larkspan-data: stopped; nothing was made\n");
            return ExitCode::Stopped;
        }
    } catch (const OfficeError& error) {
        context.Error << QStringLiteral("larkspan-data: ") << error.Text()
                      << QStringLiteral("; nothing was changed\n");
        return ExitCode::CannotOpen;
    }
    Tell(context, folder, plan);
    return ExitCode::Fine;
}

}  // namespace

Command CreateCommand() {
    return {
        QStringLiteral("create"),
        QStringLiteral("FOLDER [--sample[=N]]"),
        QStringLiteral("make the two database files of an office"),
        QStringLiteral(
            "Makes the outbox (smsmessages.mdb) and the phonebook (smscontacts.mdb) in FOLDER. FOLDER\n"
            "is made if it is missing; files that are there already are never touched.\n"),
        {{QStringLiteral("sample"), QStringLiteral("N"),
          QStringLiteral(
              "fill the phonebook with an invented office of N contacts (250 unless told, at most 32767)"),
          true}},
        Run};
}
