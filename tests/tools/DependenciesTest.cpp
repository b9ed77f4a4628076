#include <QProcess>
#include <QString>

#include <gtest/gtest.h>

namespace {

/// Everything that the loader maps for a program, libraries of libraries too.
QString Libraries(const QString& program) {
    QProcess ldd;
    ldd.start(QStringLiteral("ldd"), {program});
    EXPECT_TRUE(ldd.waitForFinished());
    EXPECT_EQ(ldd.exitCode(), 0);
    return QString::fromUtf8(ldd.readAllStandardOutput());
}

class ToolDependencies : public ::testing::TestWithParam<const char*> {};

}  // namespace

TEST_P(ToolDependencies, NoWindowSystemIsLinked) {
    const QString libraries = Libraries(QString::fromUtf8(GetParam()));
    EXPECT_TRUE(libraries.contains(QStringLiteral("libQt6Core.so"))) << libraries.toStdString();
    EXPECT_TRUE(libraries.contains(QStringLiteral("libsqlite3.so"))) << libraries.toStdString();
    for (const QString& unwanted :
         {QStringLiteral("Widgets"), QStringLiteral("Gui"), QStringLiteral("libX11"), QStringLiteral("xcb"),
          QStringLiteral("Qt6Network"), QStringLiteral("not found")}) {
        EXPECT_FALSE(libraries.contains(unwanted)) << libraries.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Programs, ToolDependencies,
                         ::testing::Values(LARKSPAN_DATA_PROGRAM, LARKSPAN_GATEWAY_PROGRAM),
                         [](const auto& program) { return program.index == 0 ? "Data" : "Gateway"; });
