#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImageReader>
#include <QProcess>
#include <QStandardPaths>
#include <QSvgRenderer>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

const QDir Packaging(Q(PACKAGING_FOLDER));

QString Read(const char* name) {
    QFile file(Packaging.filePath(Q(name)));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return QString::fromUtf8(file.readAll());
}

/// True if the validator is not there, or is content.
::testing::AssertionResult Validate(const QString& program, const QStringList& arguments) {
    if (QStandardPaths::findExecutable(program).isEmpty()) {
        return ::testing::AssertionSuccess() << program.toStdString() << " is not installed";
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    process.waitForFinished();
    const QByteArray said = process.readAll();
    return process.exitCode() == 0 ? ::testing::AssertionSuccess()
                                   : ::testing::AssertionFailure() << said.constData();
}

}  // namespace

TEST(Packaging, TheDesktopFileNamesTheProgramItsIconAndItsWindow) {
    const QString desktop = Read("larkspan.desktop");
    for (const char* line :
         {"[Desktop Entry]", "Type=Application", "Name=Larkspan Messenger", "Exec=larkspan", "Icon=larkspan",
          "StartupWMClass=LarkspanMainForm", "Terminal=false"}) {
        EXPECT_TRUE(desktop.split(u'\n').contains(Q(line))) << line;
    }
    EXPECT_TRUE(Validate(Q("desktop-file-validate"), {Packaging.filePath(Q("larkspan.desktop"))}));
}

TEST(Packaging, TheMetainfoIsWellFormedAndPointsToTheDesktopFile) {
    QXmlStreamReader reader(Read("larkspan.metainfo.xml"));
    QStringList launchables;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == Q("launchable")) {
            launchables.append(reader.readElementText());
        }
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    EXPECT_EQ(launchables, QStringList{Q("larkspan.desktop")});
    EXPECT_TRUE(Validate(Q("appstreamcli"),
                         {Q("validate"), Q("--no-net"), Packaging.filePath(Q("larkspan.metainfo.xml"))}));
}

TEST(Packaging, TheIconIsThereAsADrawingAndInTheSizesThatDesktopsAskFor) {
    EXPECT_TRUE(QSvgRenderer(Packaging.filePath(Q("larkspan.svg"))).isValid());
    for (const int side : {16, 24, 32, 48, 64, 128, 256}) {
        const QImageReader icon(Packaging.filePath(Q("larkspan-%1.png").arg(side)));
        EXPECT_EQ(icon.size(), QSize(side, side)) << side;
    }
}
