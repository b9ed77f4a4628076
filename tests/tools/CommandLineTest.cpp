#include "common/CommandLine.h"

#include <gtest/gtest.h>

namespace {

const QString Sample = QStringLiteral("sample");
const QString File = QStringLiteral("file");
const QString Quiet = QStringLiteral("quiet");

QList<CommandOption> Options() {
    return {{Sample, QStringLiteral("N"), QStringLiteral("so many"), true},
            {File, QStringLiteral("FILE"), QStringLiteral("a file"), false},
            {Quiet, {}, QStringLiteral("say nothing"), false}};
}

CommandLine Parse(const QString& words) {
    return CommandLine::Parse(words.split(u' ', Qt::SkipEmptyParts), Options());
}

QString ErrorOf(const QString& words) {
    try {
        static_cast<void>(Parse(words));
    } catch (const CommandLineError& error) {
        return error.Text();
    }
    return QStringLiteral("no error");
}

}  // namespace

TEST(CommandLine, OptionsMayStandBeforeAndBehindArguments) {
    const CommandLine line = Parse(QStringLiteral("--quiet here --file there"));
    EXPECT_EQ(line.Arguments, QStringList{QStringLiteral("here")});
    EXPECT_TRUE(line.Has(Quiet));
    EXPECT_EQ(line.Value(File), QStringLiteral("there"));
}

TEST(CommandLine, AnOptionalValueComesBehindAnEqualsSignOrAsTheNextNumber) {
    EXPECT_EQ(Parse(QStringLiteral("x --sample=12")).Number(Sample, 250, 0, 100), 12);
    EXPECT_EQ(Parse(QStringLiteral("x --sample 12")).Number(Sample, 250, 0, 100), 12);
    EXPECT_EQ(Parse(QStringLiteral("x --sample")).Number(Sample, 250, 0, 1000), 250);
    const CommandLine line = Parse(QStringLiteral("--sample folder"));
    EXPECT_EQ(line.Number(Sample, 250, 0, 1000), 250);
    EXPECT_EQ(line.Arguments, QStringList{QStringLiteral("folder")});
}

TEST(CommandLine, ANegativeNumberIsTakenAsTheValueAndRefusedByItsRange) {
    const CommandLine line = Parse(QStringLiteral("x --sample -5"));
    EXPECT_THROW(static_cast<void>(line.Number(Sample, 250, 0, 100)), CommandLineError);
}

TEST(CommandLine, TwoDashesEndTheOptions) {
    const CommandLine line = Parse(QStringLiteral("-- --quiet"));
    EXPECT_FALSE(line.Has(Quiet));
    EXPECT_EQ(line.Arguments, QStringList{QStringLiteral("--quiet")});
}

TEST(CommandLine, ARepeatedOptionKeepsAllItsValues) {
    const CommandLine line = Parse(QStringLiteral("--file a --file=b"));
    EXPECT_EQ(line.Values(File), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(line.Value(File), QStringLiteral("b"));
}

TEST(CommandLine, WhatIsWrongIsNamed) {
    EXPECT_EQ(ErrorOf(QStringLiteral("--loud")), QStringLiteral("unknown option --loud"));
    EXPECT_EQ(ErrorOf(QStringLiteral("-q")), QStringLiteral("unknown option -q"));
    EXPECT_EQ(ErrorOf(QStringLiteral("--file")), QStringLiteral("--file needs a value"));
    EXPECT_EQ(ErrorOf(QStringLiteral("--quiet=1")), QStringLiteral("--quiet takes no value"));
}

TEST(CommandLine, ANumberThatIsNoneOrOutOfRangeIsRefusedWithTheRange) {
    for (const QString& words : {QStringLiteral("--sample=many"), QStringLiteral("--sample=101"),
                                 QStringLiteral("--sample=99999999999"), QStringLiteral("--sample=1.5")}) {
        try {
            static_cast<void>(Parse(words).Number(Sample, 250, 0, 100));
            ADD_FAILURE() << words.toStdString();
        } catch (const CommandLineError& error) {
            EXPECT_TRUE(
                error.Text().startsWith(QStringLiteral("--sample takes a whole number from 0 to 100, not")))
                << error.what();
        }
    }
}

TEST(CommandLine, TheHelpNamesEveryOptionOnceAndFitsIntoEightyColumns) {
    QList<CommandOption> options = Options();
    options.append({QStringLiteral("a-name-that-is-rather-long"), QStringLiteral("VALUE"),
                    QStringLiteral("word ").repeated(40).trimmed(), false});
    const QString help = OptionsHelp(options);
    for (const QString& line : help.split(u'\n')) {
        EXPECT_LE(line.size(), 80) << line.toStdString();
    }
    EXPECT_EQ(help.count(QStringLiteral("--")), 4);
    EXPECT_TRUE(help.contains(QStringLiteral("--sample[=N] ")));
    EXPECT_TRUE(help.contains(QStringLiteral("--file FILE ")));
    EXPECT_EQ(help.count(QStringLiteral("word")), 40);
}
