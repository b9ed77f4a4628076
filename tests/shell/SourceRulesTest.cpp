#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <iostream>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

const QDir Sources(Q(SOURCE_FOLDER));

QString Read(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

/// Code without comments and texts: a word there is no use of it.
QString CodeOf(const QString& path) {
    QString code = Read(path);
    code.remove(QRegularExpression(Q("//[^\n]*")));
    code.replace(QRegularExpression(Q(R"("([^"\\\n]|\\.)*")")), Q("\"\""));
    return code;
}

/// All sources below src/, relative to it.
QStringList AllSources() {
    QStringList files;
    QDirIterator walk(Sources.path(), {Q("*.h"), Q("*.cpp")}, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        files.append(Sources.relativeFilePath(walk.next()));
    }
    files.sort();
    EXPECT_GT(files.size(), 100);
    return files;
}

QStringList FilesWith(const QString& pattern) {
    QStringList found;
    const QRegularExpression expression(pattern);
    for (const QString& file : AllSources()) {
        if (CodeOf(Sources.filePath(file)).contains(expression)) {
            found.append(file);
        }
    }
    return found;
}

struct FunctionSizes {
    int Count = 0;
    int Longest = 0;
    QString LongestName;
    int Constructor = 0;
};

/// Functions of a formatted source begin and end in the first column.
FunctionSizes MeasureFunctions(const QString& path) {
    FunctionSizes sizes;
    const QStringList lines = Read(path).split(u'\n');
    const QRegularExpression head(Q(R"(^(?:[A-Za-z].* )?frmMain::(~?\w+)\()"));
    QString name;
    int start = 0;
    for (int line = 0; line < lines.size(); ++line) {
        const auto match = head.match(lines[line]);
        if (match.hasMatch()) {
            name = match.captured(1);
            start = line;
            ++sizes.Count;
        }
        if (lines[line] == Q("}") && !name.isEmpty()) {
            const int length = line - start + 1;
            if (name == Q("frmMain")) {
                sizes.Constructor = length;
            } else if (length > sizes.Longest) {
                sizes.Longest = length;
                sizes.LongestName = name;
            }
            name.clear();
        }
    }
    return sizes;
}

void Budget(const char* what, qsizetype value, qsizetype limit) {
    std::cout << "  " << what << ": " << value << " (limit " << limit << ")\n";
    EXPECT_LE(value, limit) << what;
}

}  // namespace

TEST(SourceRules, TheMainWindowKeepsItsBudget) {
    const QString source = Sources.filePath(Q("shell/frmMain.cpp"));
    const QString header = Sources.filePath(Q("shell/frmMain.h"));
    const QString code = CodeOf(source);
    const FunctionSizes functions = MeasureFunctions(source);
    Budget("lines of frmMain.cpp", Read(source).count(u'\n'), 400);
    Budget("lines of frmMain.h", Read(header).count(u'\n'), 180);
    Budget("functions", functions.Count, 45);
    Budget("lines of the constructor", functions.Constructor, 50);
    Budget("lines of the longest function", functions.Longest, 40);
    Budget("includes", Read(source).count(QRegularExpression(Q("(^|\n)#include"))), 24);
    Budget("connect calls", code.count(QRegularExpression(Q(R"(\bconnect\()"))), 15);
    for (const char* word :
         {"Recordset", "SELECT", "QFile", "QSettings", "QMessageBox", "exec(", " Contact("}) {
        EXPECT_FALSE(code.contains(Q(word))) << word;
    }
}

TEST(SourceRules, TheProgramIsOneShortFile) {
    Budget("lines of main.cpp", Read(Sources.filePath(Q("app/main.cpp"))).count(u'\n'), 120);
    const QString program = Read(Sources.filePath(Q("app/program.cmake")));
    EXPECT_EQ(program.count(Q(".cpp")), 1);
}

TEST(SourceRules, TheContextStopsAtTheShell) {
    for (const QString& file : FilesWith(Q(R"(\bAppContext\b)"))) {
        EXPECT_TRUE(file.startsWith(Q("app/")) || file.startsWith(Q("shell/"))) << file.toStdString();
    }
}

TEST(SourceRules, OneModalDoorOnePumpOneSettingsStore) {
    EXPECT_EQ(FilesWith(Q(R"((->|\.|::)exec\()")),
              (QStringList{Q("app/main.cpp"), Q("controls/ModalDoor.cpp")}));
    EXPECT_EQ(FilesWith(Q(R"(\bprocessEvents\()")), QStringList{Q("platform/EventPump.cpp")});
    const QStringList stores = FilesWith(Q(R"(\bQSettings\b)"));
    for (const QString& file : stores) {
        EXPECT_TRUE(file.startsWith(Q("core/Settings.")) || file.startsWith(Q("platform/Drive")))
            << file.toStdString();
    }
}

TEST(SourceRules, ConnectionsAreCheckedAndNothingIsBoundByName) {
    EXPECT_EQ(FilesWith(Q(R"(\b(SIGNAL|SLOT)\(|\bsender\(\)|connectSlotsByName|void on_\w+_\w+\()")),
              QStringList());
}

TEST(SourceRules, OwnershipIsNeverShared) {
    EXPECT_EQ(FilesWith(Q(R"(\b(shared_ptr|QSharedPointer)\b)")), QStringList());
}

TEST(SourceRules, TheProgramsWithoutAWindowLinkNoWidgets) {
    for (const char* program : {LARKSPAN_DATA, LARKSPAN_GATEWAY}) {
        QProcess ldd;
        ldd.start(Q("ldd"), {Q(program)});
        ASSERT_TRUE(ldd.waitForFinished());
        const QByteArray libraries = ldd.readAllStandardOutput();
        EXPECT_TRUE(libraries.contains("libQt6Core")) << program;
        EXPECT_FALSE(libraries.contains("Widgets")) << program;
        EXPECT_FALSE(libraries.contains("libQt6Gui")) << program;
    }
}
