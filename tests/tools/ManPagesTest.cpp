#include "tools/ToolProcess.h"

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

namespace {

/// A manual page as its source, with "\-" as the dash that it stands for.
QString ManPage(const QString& name) {
    QFile file(QStringLiteral(LARKSPAN_MAN_FOLDER "/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return QString::fromUtf8(file.readAll()).replace(QStringLiteral("\\-"), QStringLiteral("-"));
}

QSet<QString> OptionsIn(const QString& text) {
    static const QRegularExpression option(QStringLiteral("--[a-z][a-z-]*"));
    QSet<QString> options;
    for (auto match = option.globalMatch(text); match.hasNext();) {
        options.insert(match.next().captured());
    }
    return options;
}

std::string Sorted(const QSet<QString>& names) {
    QStringList list(names.begin(), names.end());
    list.sort();
    return list.join(u' ').toStdString();
}

QString DataHelp() {
    const QString help = QStringLiteral("--help");
    return RunData({help}).Out + RunData({QStringLiteral("create"), help}).Out +
           RunData({QStringLiteral("check"), help}).Out + RunData({QStringLiteral("compact"), help}).Out;
}

QString GatewayHelp() {
    return RunGateway({QStringLiteral("--help")}).Out;
}

/// The statuses that the help promises: "0 fine, 1 ...".
QSet<QString> StatusesIn(const QString& text, const QString& pattern) {
    const QRegularExpression status(pattern, QRegularExpression::MultilineOption);
    QSet<QString> statuses;
    for (auto match = status.globalMatch(text); match.hasNext();) {
        statuses.insert(match.next().captured(1));
    }
    return statuses;
}

QString ExitPart(const QString& help) {
    return help.mid(help.indexOf(QStringLiteral("Exit status:")));
}

void ExpectRenders(const QString& name) {
    QProcess groff;
    // The reader's terminal and a language that is not installed are no fault of the page.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("MANWIDTH"), QStringLiteral("80"));
    environment.remove(QStringLiteral("COLUMNS"));
    groff.setProcessEnvironment(environment);
    groff.start(QStringLiteral("man"), {QStringLiteral("--warnings"), QStringLiteral("-l"),
                                        QStringLiteral(LARKSPAN_MAN_FOLDER "/") + name});
    ASSERT_TRUE(groff.waitForStarted()) << "there is no man on this machine";
    ASSERT_TRUE(groff.waitForFinished());
    EXPECT_EQ(groff.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(groff.exitCode(), 0);
    EXPECT_EQ(groff.readAllStandardError().toStdString(), "");
}

}  // namespace

TEST(ManPages, HaveEveryOptionOfTheHelpAndNoOther) {
    EXPECT_EQ(Sorted(OptionsIn(ManPage(QStringLiteral("larkspan-data.1")))), Sorted(OptionsIn(DataHelp())));
    EXPECT_EQ(Sorted(OptionsIn(ManPage(QStringLiteral("larkspan-gateway.1")))),
              Sorted(OptionsIn(GatewayHelp())));
}

TEST(ManPages, HaveEveryExitStatusOfTheHelpAndNoOther) {
    const QString inHelp = QStringLiteral("(?:: |, |,\\n|^)([0-9]) [a-z]");
    const QString inPage = QStringLiteral("^\\.B ([0-9])$");
    EXPECT_EQ(Sorted(StatusesIn(ManPage(QStringLiteral("larkspan-data.1")), inPage)),
              Sorted(StatusesIn(ExitPart(RunData({QStringLiteral("--help")}).Out), inHelp)));
    EXPECT_EQ(Sorted(StatusesIn(ManPage(QStringLiteral("larkspan-gateway.1")), inPage)),
              Sorted(StatusesIn(ExitPart(GatewayHelp()), inHelp)));
    EXPECT_EQ(Sorted(StatusesIn(ManPage(QStringLiteral("larkspan-data.1")), inPage)), "0 1 2 3 4");
}

TEST(ManPages, HaveTheSectionsThatReadersLookFor) {
    for (const QString& name : {QStringLiteral("larkspan-data.1"), QStringLiteral("larkspan-gateway.1")}) {
        const QString page = ManPage(name);
        for (const QString& section :
             {QStringLiteral("NAME"), QStringLiteral("SYNOPSIS"), QStringLiteral("DESCRIPTION"),
              QStringLiteral("OPTIONS"), QStringLiteral("EXIT STATUS"), QStringLiteral("FILES"),
              QStringLiteral("EXAMPLES"), QStringLiteral("SEE ALSO")}) {
            EXPECT_TRUE(page.contains(QStringLiteral("\n.SH ") + section))
                << name.toStdString() << ' ' << section.toStdString();
        }
    }
}

TEST(ManPages, AreUnderstoodByMan) {
    ExpectRenders(QStringLiteral("larkspan.1"));
    ExpectRenders(QStringLiteral("larkspan-data.1"));
    ExpectRenders(QStringLiteral("larkspan-gateway.1"));
}
