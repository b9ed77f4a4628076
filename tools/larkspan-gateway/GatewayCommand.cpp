#include "larkspan-gateway/GatewayCommand.h"

#include "common/ExitCode.h"
#include "larkspan-gateway/HandOver.h"
#include "larkspan-gateway/MessageStatus.h"
#include "platform/Clock.h"
#include "platform/Drives.h"
#include "store/Outbox.h"
#include "store/office/OfficeCheck.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

const QString Program = QStringLiteral("larkspan-gateway");

constexpr int LongestDelay = 24 * 60 * 60 * 1000;  // ms
constexpr int HighestRate = 100000;
constexpr int HighestTariff = 1000000;

FailureRule ReadRule(const QString& text) {
    const QString status = text.section(u'=', 0, 0);
    const QString digits = text.section(u'=', 1);
    const bool isStatus = status == u"4" || status == u"6" || status == u"7";
    const bool isDigits = !digits.isEmpty() && std::all_of(digits.begin(), digits.end(), [](QChar character) {
        return character >= u'0' && character <= u'9';
    });
    if (!isStatus || !isDigits) {
        throw CommandLineError(
            QStringLiteral("--fail-suffix takes \"none\" or a status and digits as \"4=004\", not \"%1\"")
                .arg(text));
    }
    return {digits, status.toInt()};
}

QList<FailureRule> ReadRules(const QStringList& values) {
    if (values.isEmpty()) {
        return Outcomes::DefaultRules();
    }
    QList<FailureRule> rules;
    for (const QString& value : values) {
        if (value != u"none") {
            rules.append(ReadRule(value));
        }
    }
    return rules;
}

double ReadPercent(const CommandLine& line, const QString& name) {
    const QString text = line.Value(name, QStringLiteral("0"));
    bool isNumber = false;
    const double percent = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(percent) || percent < 0 || percent > 100) {
        throw CommandLineError(
            QStringLiteral("--%1 takes a number from 0 to 100, not \"%2\"").arg(name, text));
    }
    return percent;
}

GatewaySettings::RunMode ReadMode(const CommandLine& line) {
    const bool isOnce = line.Has(QStringLiteral("once"));
    const bool isUntilIdle = line.Has(QStringLiteral("until-idle"));
    if (isOnce && isUntilIdle) {
        throw CommandLineError(QStringLiteral("--once and --until-idle exclude each other"));
    }
    using RunMode = GatewaySettings::RunMode;
    return isOnce ? RunMode::Once : isUntilIdle ? RunMode::UntilIdle : RunMode::Forever;
}

QString Help() {
    return QStringLiteral(
               "usage: larkspan-gateway FOLDER [option ...]\n\n"
               "A stand-in for the gateway of an office: takes the messages that are due from the outbox in\n"
               "FOLDER and moves their status along, as if they were sent. Nothing leaves this machine.\n"
               "Runs until it is stopped (Ctrl+C, SIGTERM) unless told otherwise.\n\nOptions:\n") +
           OptionsHelp(GatewayOptions()) +
           QStringLiteral(
               "\nExit status: 0 fine, also after a stop, 1 the outbox could not be written any more,\n"
               "2 the command line was not understood, 3 the folder or a file cannot be opened.\n");
}

/// The outbox file of the one argument FOLDER, which may also be the file itself.
QString OutboxOf(const CommandLine& line) {
    if (line.Arguments.isEmpty() || line.Arguments.constFirst().isEmpty()) {
        throw CommandLineError(QStringLiteral("the FOLDER is missing"));
    }
    if (line.Arguments.size() > 1) {
        throw CommandLineError(QStringLiteral("only one FOLDER, not also \"%1\"").arg(line.Arguments[1]));
    }
    QString file = NativePath(mdlOutbox::OutboxFile(line.Arguments.constFirst()));
    if (!QFileInfo(file).isFile()) {
        throw std::runtime_error(QStringLiteral("there is no outbox %1").arg(file).toStdString());
    }
    return file;
}

std::unique_ptr<HandOver> MakeHandOver(const CommandLine& line) {
    const QString journal = line.Value(QStringLiteral("journal"));
    if (journal.isEmpty()) {
        return std::make_unique<NoHandOver>();
    }
    return std::make_unique<JournalHandOver>(journal);
}

/// Says what happens, one line a message, unless it is to be quiet.
Gateway::Listener MakeListener(const GatewayContext& context, bool isQuiet) {
    Gateway::Listener listener;
    listener.OnTrouble = [&context](const QString& text) {
        context.Error << Program << QStringLiteral(": ") << text << QStringLiteral("; trying again\n");
        context.Error.flush();
    };
    if (!isQuiet) {
        listener.OnEnd = [&context](qint32 id, qint32 status, int fragments) {
            context.Out << context.Services.Clock.Now().toString(u"hh:mm:ss") << QStringLiteral(" message ")
                        << id << QChar(u' ') << StatusName(status);
            if (fragments > 0) {
                context.Out << QStringLiteral(", ") << fragments
                            << (fragments == 1 ? QStringLiteral(" part") : QStringLiteral(" parts"));
            }
            context.Out << QChar(u'\n');
            context.Out.flush();
        };
    }
    return listener;
}

void Sum(const Gateway& gateway, const GatewayContext& context) {
    const Gateway::Counts& done = gateway.Done();
    context.Out << done.HandedOver << QStringLiteral(" handed over, ") << done.Recovered
                << QStringLiteral(" taken on from an earlier run, ") << done.Ended
                << QStringLiteral(" ended, ") << gateway.InFlight() << QStringLiteral(" on their way\n");
}

int Work(const CommandLine& line, const GatewayContext& context) {
    const GatewaySettings settings = ReadGatewaySettings(line);
    const QString file = OutboxOf(line);
    const auto handOver = MakeHandOver(line);
    GatewayLock lock(QFileInfo(file).path());
    const bool isQuiet = line.Has(QStringLiteral("quiet"));
    Gateway gateway(settings, context.Services, file, lock, *handOver, MakeListener(context, isQuiet));
    gateway.CheckOutbox();
    try {
        gateway.Run(context.IsStopped);
    } catch (const OutboxFailure& failure) {
        context.Error << Program << QStringLiteral(": ") << QString::fromUtf8(failure.what()) << QChar(u'\n');
        return ExitCode::Problem;
    }
    if (!isQuiet) {
        Sum(gateway, context);
    }
    return ExitCode::Fine;
}

}  // namespace

QList<CommandOption> GatewayOptions() {
    const auto name = [](const char16_t* text) { return QString::fromUtf16(text); };
    return {
        {name(u"once"), {}, name(u"take what is due now, see it to its end, and stop")},
        {name(u"until-idle"),
         {},
         name(u"stop when nothing is due and nothing is on its way; what is scheduled for later is "
              u"not waited for")},
        {name(u"rate"), name(u"N"),
         name(u"hand over at most N messages a second (0: no limit, which is the default)")},
        {name(u"delay"), name(u"MS"), name(u"both delays in one, in milliseconds")},
        {name(u"delay-operator"), name(u"MS"), name(u"from the hand-over to the operator's answer (1000)")},
        {name(u"delay-delivery"), name(u"MS"), name(u"from that answer to the delivery report (3000)")},
        {name(u"poll"), name(u"MS"), name(u"between two looks at an outbox where nothing is due (500)")},
        {name(u"fail-suffix"), name(u"STATUS=DIGITS"),
         name(u"numbers that end in DIGITS end in STATUS 4 (could not be sent), 6 (unconfirmed) or 7 (not "
              u"delivered); can be "
              u"repeated, takes the place of 4=004, 6=006 and 7=007; \"none\" for no such numbers")},
        {name(u"failure-rate"), name(u"PERCENT"),
         name(u"let so many of the others fail, evenly with 4, 6 and 7 (0)")},
        {name(u"tariff"), name(u"N"), name(u"cost of one part, in hundredths of the currency unit (9)")},
        {name(u"seed"), name(u"N"), name(u"start of the random numbers behind --failure-rate (1)")},
        {name(u"journal"), name(u"FILE"),
         name(u"append a line \"NUMBER sent\" for every message handed over")},
        {name(u"quiet"), {}, name(u"print nothing but errors")},
        {name(u"help"), {}, name(u"print this text")},
        {name(u"version"), {}, name(u"print the version")},
    };
}

GatewaySettings ReadGatewaySettings(const CommandLine& line) {
    GatewaySettings settings;
    settings.Mode = ReadMode(line);
    const QString delay = QStringLiteral("delay");
    settings.DelayOperator = line.Number(delay, settings.DelayOperator, 0, LongestDelay);
    settings.DelayDelivery = line.Number(delay, settings.DelayDelivery, 0, LongestDelay);
    settings.DelayOperator =
        line.Number(QStringLiteral("delay-operator"), settings.DelayOperator, 0, LongestDelay);
    settings.DelayDelivery =
        line.Number(QStringLiteral("delay-delivery"), settings.DelayDelivery, 0, LongestDelay);
    settings.Poll = line.Number(QStringLiteral("poll"), settings.Poll, 1, LongestDelay);
    settings.Rate = line.Number(QStringLiteral("rate"), settings.Rate, 0, HighestRate);
    settings.Tariff = line.Number(QStringLiteral("tariff"), settings.Tariff, 0, HighestTariff);
    settings.Seed = static_cast<quint32>(
        line.Number(QStringLiteral("seed"), static_cast<int>(settings.Seed), 0, 0x7FFFFFFF));
    settings.FailureRules = ReadRules(line.Values(QStringLiteral("fail-suffix")));
    settings.FailureRate = ReadPercent(line, QStringLiteral("failure-rate"));
    return settings;
}

int RunGatewayCommand(const QStringList& arguments, const GatewayContext& context) {
    try {
        const CommandLine line = CommandLine::Parse(arguments, GatewayOptions());
        if (line.Has(QStringLiteral("help"))) {
            context.Out << Help();
            return ExitCode::Fine;
        }
        if (line.Has(QStringLiteral("version"))) {
            context.Out << Program << QChar(u' ') << QStringLiteral(LARKSPAN_VERSION) << QChar(u'\n');
            return ExitCode::Fine;
        }
        return Work(line, context);
    } catch (const CommandLineError& error) {
        context.Error << Program << QStringLiteral(": ") << error.Text() << QStringLiteral("\nTry \"")
                      << Program << QStringLiteral(" --help\".\n");
        return ExitCode::Usage;
    } catch (const std::exception& error) {
        context.Error << Program << QStringLiteral(": ") << QString::fromUtf8(error.what()) << QChar(u'\n');
        return ExitCode::CannotOpen;
    }
}
