#include "larkspan-gateway/GatewayCommand.h"

#include "common/ExitCode.h"
#include "larkspan-gateway/MessageStatus.h"
#include "support/FakeMachine.h"
#include "tools/TestOffice.h"

#include <gtest/gtest.h>

namespace {

GatewaySettings Read(const QString& words) {
    return ReadGatewaySettings(CommandLine::Parse(words.split(u' ', Qt::SkipEmptyParts), GatewayOptions()));
}

struct Answer {
    int Code = 0;
    QString Out;
    QString Error;
};

Answer RunLine(TestOffice& office, const QStringList& arguments) {
    Answer answer;
    QTextStream out(&answer.Out);
    QTextStream error(&answer.Error);
    answer.Code = RunGatewayCommand(arguments, {office.Machine.Services(), out, error, [] { return false; }});
    return answer;
}

}  // namespace

TEST(GatewayOptions, WithoutOptionsItRunsForeverWithSensibleDelays) {
    const GatewaySettings settings = Read(QString());
    EXPECT_EQ(settings.Mode, GatewaySettings::RunMode::Forever);
    EXPECT_EQ(settings.DelayOperator, 1000);
    EXPECT_EQ(settings.DelayDelivery, 3000);
    EXPECT_EQ(settings.Rate, 0);
    EXPECT_EQ(settings.FailureRules, Outcomes::DefaultRules());
    EXPECT_EQ(settings.FailureRate, 0);
}

TEST(GatewayOptions, OneDelayStandsForBothAndEachOfThemForItself) {
    EXPECT_EQ(Read(QStringLiteral("--delay 20")).DelayOperator, 20);
    EXPECT_EQ(Read(QStringLiteral("--delay 20")).DelayDelivery, 20);
    const GatewaySettings settings = Read(QStringLiteral("--delay-delivery 7 --delay 20"));
    EXPECT_EQ(settings.DelayOperator, 20);
    EXPECT_EQ(settings.DelayDelivery, 7);
}

TEST(GatewayOptions, EveryValueReachesTheSettings) {
    const GatewaySettings settings =
        Read(QStringLiteral("--rate 5 --poll 9 --tariff 11 --seed 3 --failure-rate 12.5"));
    EXPECT_EQ(settings.Rate, 5);
    EXPECT_EQ(settings.Poll, 9);
    EXPECT_EQ(settings.Tariff, 11);
    EXPECT_EQ(settings.Seed, 3U);
    EXPECT_EQ(settings.FailureRate, 12.5);
    EXPECT_EQ(Read(QStringLiteral("--once")).Mode, GatewaySettings::RunMode::Once);
    EXPECT_EQ(Read(QStringLiteral("--until-idle")).Mode, GatewaySettings::RunMode::UntilIdle);
}

TEST(GatewayOptions, FailingSuffixesTakeThePlaceOfTheDefaults) {
    const QList<FailureRule> expected{{QStringLiteral("99"), MessageStatus::NotSent},
                                      {QStringLiteral("1"), MessageStatus::NotDelivered}};
    EXPECT_EQ(Read(QStringLiteral("--fail-suffix 4=99 --fail-suffix=7=1")).FailureRules, expected);
    EXPECT_TRUE(Read(QStringLiteral("--fail-suffix none")).FailureRules.isEmpty());
}

TEST(GatewayOptions, ValuesThatMakeNoSenseAreRefused) {
    for (const QString& words :
         {QStringLiteral("--rate -1"), QStringLiteral("--rate fast"), QStringLiteral("--delay -5"),
          QStringLiteral("--delay 1e3"), QStringLiteral("--poll 0"), QStringLiteral("--failure-rate 101"),
          QStringLiteral("--failure-rate -1"), QStringLiteral("--failure-rate nan"),
          QStringLiteral("--failure-rate x"), QStringLiteral("--fail-suffix 5=1"),
          QStringLiteral("--fail-suffix 4="), QStringLiteral("--fail-suffix 4=a"),
          QStringLiteral("--fail-suffix 4"), QStringLiteral("--once --until-idle"),
          QStringLiteral("--tariff -1"), QStringLiteral("--seed -1")}) {
        EXPECT_THROW(static_cast<void>(Read(words)), CommandLineError) << words.toStdString();
    }
}

TEST(GatewayCommand, HelpNamesEveryOptionAndVersionTheVersion) {
    TestOffice office;
    const Answer help = RunLine(office, {QStringLiteral("--help")});
    EXPECT_EQ(help.Code, ExitCode::Fine);
    for (const CommandOption& option : GatewayOptions()) {
        EXPECT_TRUE(help.Out.contains(QStringLiteral("  --") + option.Name)) << option.Name.toStdString();
    }
    EXPECT_EQ(RunLine(office, {QStringLiteral("--version")}).Out,
              QStringLiteral("larkspan-gateway " LARKSPAN_VERSION "\n"));
}

TEST(GatewayCommand, TheFolderIsAskedFor) {
    TestOffice office;
    for (const QStringList& line :
         {QStringList{}, QStringList{QString()}, QStringList{office.Folder(), office.Folder()}}) {
        const Answer answer = RunLine(office, line);
        EXPECT_EQ(answer.Code, ExitCode::Usage);
        EXPECT_TRUE(answer.Error.contains(QStringLiteral("Try \"larkspan-gateway --help\".")));
    }
}

TEST(GatewayCommand, AFolderWithoutOutboxEndsWith3AndMakesNothing) {
    TestOffice office;
    ASSERT_TRUE(QFile::remove(office.Outbox()));
    const Answer answer = RunLine(office, {office.Folder(), QStringLiteral("--once")});
    EXPECT_EQ(answer.Code, ExitCode::CannotOpen);
    EXPECT_EQ(answer.Error, QStringLiteral("larkspan-gateway: there is no outbox %1\n").arg(office.Outbox()));
    EXPECT_FALSE(QFile::exists(office.Outbox()));
}

TEST(GatewayCommand, AnOutboxThatIsNoDatabaseEndsWith3) {
    TestOffice office;
    QFile file(office.Outbox());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("a letter");
    file.close();
    const Answer answer = RunLine(office, {office.Folder(), QStringLiteral("--once")});
    EXPECT_EQ(answer.Code, ExitCode::CannotOpen);
    EXPECT_TRUE(answer.Error.contains(QStringLiteral("cannot be opened"))) << answer.Error.toStdString();
}

TEST(GatewayCommand, TheOutboxFileItselfWillDoForTheFolder) {
    TestOffice office;
    EXPECT_EQ(RunLine(office, {office.Outbox(), QStringLiteral("--once")}).Code, ExitCode::Fine);
}

TEST(GatewayCommand, AJournalThatCannotBeOpenedEndsWith3BeforeAnythingIsSent) {
    TestOffice office;
    const qint32 id = office.AddMessage(QDateTime::currentDateTime().addSecs(-5));
    const Answer answer =
        RunLine(office, {office.Folder(), QStringLiteral("--once"), QStringLiteral("--journal=/nowhere/j")});
    EXPECT_EQ(answer.Code, ExitCode::CannotOpen);
    EXPECT_TRUE(
        answer.Error.contains(QStringLiteral("the journal /nowhere/j cannot be written: No such file")));
    EXPECT_EQ(office.Status(id), MessageStatus::Waiting);
}
