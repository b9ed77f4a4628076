#include "app/CommandLine.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImageReader>
#include <QProcess>
#include <QRegularExpression>
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

TEST(Packaging, TheNewestReleaseIsTheSameInTheMetainfoAndTheChangelog) {
    const auto release = QRegularExpression(Q("<release version=\"([^\"]+)\" date=\"([^\"]+)\"/>"))
                             .match(Read("larkspan.metainfo.xml"));
    ASSERT_TRUE(release.hasMatch());
    const QString changes = Read("../CHANGELOG.md");
    const auto newest = QRegularExpression(Q("\n## ([0-9.]+) \\(([0-9-]+)\\)\n")).match(changes);
    EXPECT_EQ(newest.captured(1), release.captured(1));
    EXPECT_EQ(newest.captured(2), release.captured(2));
}

TEST(Packaging, TheIconIsThereAsADrawingAndInTheSizesThatDesktopsAskFor) {
    EXPECT_TRUE(QSvgRenderer(Packaging.filePath(Q("larkspan.svg"))).isValid());
    for (const int side : {16, 24, 32, 48, 64, 128, 256}) {
        const QImageReader icon(Packaging.filePath(Q("larkspan-%1.png").arg(side)));
        EXPECT_EQ(icon.size(), QSize(side, side)) << side;
    }
}

TEST(Packaging, TheWindowsIconFilesHoldThePictureThatTheirNameTells) {
    for (const int side : {16, 24, 32, 48}) {
        const QString path = Packaging.filePath(Q("Icons/larkspan%1x%1x256.ico").arg(side));
        QImageReader icon(path);
        EXPECT_EQ(icon.format(), QByteArray("ico")) << side;
        EXPECT_EQ(icon.read(), QImage(Packaging.filePath(Q("larkspan-%1.png").arg(side)))) << side;
    }
}

TEST(Packaging, TheTraysIconFileHasEverySizeThatPanelsAskFor) {
    QImageReader icon(Packaging.filePath(Q("Icons/larkspantray.ico")));
    QList<int> sides;
    do {
        const QImage picture = icon.read();
        sides.append(picture.width());
        EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0) << "no ground of its own";
        EXPECT_EQ(picture.pixelColor(picture.rect().center()).alpha(), 255);
    } while (icon.jumpToNextImage());
    EXPECT_EQ(sides, QList<int>({16, 22, 24, 32, 48}));
}

TEST(Packaging, TheSymbolicIconIsADrawingInOneColour) {
    const QString drawing = Read("larkspan-symbolic.svg");
    EXPECT_TRUE(QSvgRenderer(drawing.toUtf8()).isValid());
    EXPECT_EQ(drawing.count(u'#'), 1);
}

TEST(Packaging, TheSoundsAreShortQuietAndDifferent) {
    constexpr int HeaderSize = 44;
    constexpr int Rate = 22050;
    QList<QByteArray> sounds;
    for (const char* name : {"smsnotify.wav", "smserror.wav"}) {
        QFile file(Packaging.filePath(Q(name)));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        const QByteArray bytes = file.readAll();
        const auto number = [&bytes](int at, int count) {
            quint32 value = 0;
            for (int index = count - 1; index >= 0; --index) {
                value = value << 8 | static_cast<quint8>(bytes[at + index]);
            }
            return value;
        };
        ASSERT_TRUE(bytes.startsWith("RIFF") && bytes.mid(8, 8) == "WAVEfmt ") << name;
        EXPECT_EQ(number(22, 2), 1U) << "channels of " << name;
        EXPECT_EQ(number(24, 4), quint32{Rate}) << name;
        EXPECT_EQ(number(34, 2), 16U) << "bits of " << name;
        const qsizetype samples = (bytes.size() - HeaderSize) / 2;
        EXPECT_LT(samples, Rate * 6 / 10) << name << " is too long";
        EXPECT_GT(samples, Rate / 10) << name;
        int loudest = 0;
        for (int at = HeaderSize; at + 1 < bytes.size(); at += 2) {
            loudest = qMax(loudest, qAbs(static_cast<int>(static_cast<qint16>(number(at, 2)))));
        }
        EXPECT_LT(loudest, 32767 / 3) << name;
        EXPECT_GT(loudest, 32767 / 20) << name;
        sounds.append(bytes);
    }
    EXPECT_NE(sounds[0], sounds[1]);
}

TEST(Packaging, WhatComesWithTheProgramLiesWhereTheBuiltProgramLooksForIt) {
    const QDir share(QFileInfo(Q(LARKSPAN)).dir().filePath(Q("../share/larkspan-messenger")));
    for (const char* name :
         {"Icons/larkspan16x16x256.ico", "Icons/larkspan24x24x256.ico", "Icons/larkspan32x32x256.ico",
          "Icons/larkspan48x48x256.ico", "Icons/larkspantray.ico", "smsnotify.wav", "smserror.wav"}) {
        QFile copy(share.filePath(Q(name)));
        QFile kept(Packaging.filePath(Q(name)));
        ASSERT_TRUE(copy.open(QIODevice::ReadOnly) && kept.open(QIODevice::ReadOnly)) << name;
        EXPECT_EQ(copy.readAll(), kept.readAll()) << name;
    }
}

TEST(Packaging, TheManualNamesEveryOptionAndEverySettingOfTheProgram) {
    const QString manual = Read("../docs/man/larkspan.1").remove(u'\\');
    QStringList names;
    const auto take = [&names](const QString& text, const char* pattern) {
        for (const QRegularExpressionMatch& match : QRegularExpression(Q(pattern)).globalMatch(text)) {
            names.append(match.captured(1));
        }
    };

    take(CommandLine::HelpText(), "\\n  (--?[a-z]+|/[a-z]+)");
    take(Read("../src/core/Settings.h"), "QStringLiteral\\(\"(\\w+)\"\\)");
    EXPECT_GE(names.size(), 16) << names.join(u' ').toStdString();
    for (const QString& name : names) {
        EXPECT_TRUE(manual.contains(QRegularExpression(Q("\\W%1\\b").arg(name)))) << name.toStdString();
    }
}
