#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLibraryInfo>
#include <QMap>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

const QDir Sources(Q(SOURCE_FOLDER));
const QDir Tools(Sources.filePath(Q("../tools")));

/// Whose headers a part of the program may include beside its own: those of the parts that it stands on.
const QMap<QString, QStringList>& MayInclude() {
    static const QMap<QString, QStringList> table = [] {
        const std::pair<const char*, const char*> rows[] = {
            {"platform", ""},
            {"core", "platform"},
            {"error", "core"},
            {"sql", "error core"},
            {"engine", "sqlite error core platform"},
            {"sqlite", "engine sql error core platform"},
            {"store", "engine error core platform"},
            {"office", "store engine sqlite error core platform"},
            {"controls", "core platform"},
            {"platform_ui", "controls core platform"},
            {"addressbook_core", "store engine error core platform"},
            {"tracking_core", "store engine error core platform"},
            {"tracking_ui", "tracking_core controls store engine error core platform"},
            {"compose_core", "addressbook_core tracking_core store engine error core platform"},
            {"contact_items", "addressbook_core controls core platform"},
            {"addressbook_ui", "contact_items addressbook_core controls store engine error core platform"},
            {"compose_ui",
             "compose_core contact_items addressbook_core tracking_core controls store core platform"},
            {"setup", "controls store engine error core platform"},
            {"app", "platform_ui addressbook_core tracking_core controls store engine error core platform"},
            {"shell",
             "app addressbook_ui compose_ui tracking_ui setup platform_ui tracking_core controls core "
             "platform"},
            {"program", "shell app core platform"},
            {"tools/common", "store engine error core platform"},
            {"tools/larkspan-data", "tools/common office sqlite store engine error core platform"},
            {"tools/larkspan-gateway", "tools/common office store engine error core platform"},
        };
        QMap<QString, QStringList> parts;
        for (const auto& [part, below] : rows) {
            parts.insert(Q(part), Q(below).split(u' ', Qt::SkipEmptyParts));
        }
        return parts;
    }();
    return table;
}

/// The parts that may have windows: all others are built on QtCore alone.
const QStringList WindowParts =
    Q("controls platform_ui contact_items addressbook_ui compose_ui tracking_ui setup app "
      "shell program")
        .split(u' ');

QString Read(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

/// Whether the build of the folder lists the file among those of its user interface.
bool IsListed(const QString& folder, const QString& file) {
    static QMap<QString, QString> lists;
    if (!lists.contains(folder)) {
        lists.insert(folder, Read(Sources.filePath(folder + Q("/ui.cmake"))));
    }
    const QRegularExpression word(Q("(^|\\s)%1($|\\s)").arg(QRegularExpression::escape(file)));
    return lists.value(folder).contains(word);
}

/// The part that a file belongs to, by its name as an #include has it; empty for a file of none. Most parts
/// are folders; a folder with a half that has windows and one that has none is two.
QString PartOf(const QString& name) {
    const QString folder = name.section(u'/', 0, -2);
    const QString file = name.section(u'/', -1);
    static const QMap<QString, QString> other{
        {Q("store/engine"), Q("engine")},
        {Q("store/engine/sql"), Q("sql")},
        {Q("store/engine/sqlite"), Q("sqlite")},
        {Q("store/office"), Q("office")},
        {Q("common"), Q("tools/common")},
        {Q("larkspan-data"), Q("tools/larkspan-data")},
        {Q("larkspan-gateway"), Q("tools/larkspan-gateway")},
    };
    if (name == Q("app/main.cpp")) {
        return Q("program");
    }
    if (name.startsWith(Q("store/engine/Error."))) {
        return Q("error");
    }
    if (name.startsWith(Q("addressbook/ContactItems."))) {
        return Q("contact_items");
    }
    if (folder == Q("addressbook") || folder == Q("compose") || folder == Q("tracking")) {
        return folder + (IsListed(folder, file) ? Q("_ui") : Q("_core"));
    }
    const QString part = other.value(folder, folder);
    return MayInclude().contains(part) ? part : QString();
}

/// All files of src/ and tools/, as an #include names them.
QStringList AllFiles() {
    QStringList files;
    for (const QDir& root : {Sources, Tools}) {
        QDirIterator walk(root.path(), {Q("*.h"), Q("*.cpp")}, QDir::Files, QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            files.append(root.relativeFilePath(walk.next()));
        }
    }
    files.sort();
    return files;
}

QString PathOf(const QString& name) {
    return Sources.exists(name) ? Sources.filePath(name) : Tools.filePath(name);
}

/// What is wrong with an #include of our own: `name` in a file of `part`; empty if nothing is.
QString ProblemOfOwn(const QString& part, const QString& name) {
    const QString included = PartOf(name);
    if (included.isEmpty() || !QFile::exists(PathOf(name))) {
        return Q("is no file of a known folder");
    }
    if (included != part && !MayInclude().value(part).contains(included)) {
        return Q("is of ") + included + Q(", which ") + part + Q(" does not stand on");
    }
    return {};
}

/// The same for an #include of Qt's: where there are no windows, QtCore has to have the header.
QString ProblemOfQt(const QString& part, const QString& name) {
    static const QDir headers(QLibraryInfo::path(QLibraryInfo::HeadersPath));
    const QString core = name.startsWith(Q("QtCore/")) ? name : Q("QtCore/") + name;
    if (WindowParts.contains(part) || headers.exists(core)) {
        return {};
    }
    return Q("is not of QtCore, and ") + part + Q(" knows no windows");
}

/// Every wrong #include of a file that is called `name` and holds `code`, one line each.
QStringList WrongIncludes(const QString& name, const QString& code) {
    static const QRegularExpression line(Q(R"(^[ \t]*#[ \t]*include[ \t]*([<"])([^>"\n]+)[>"])"),
                                         QRegularExpression::MultilineOption);
    static const QRegularExpression qt(Q("^(Qt?[A-Z][A-Za-z0-9]*|q[a-z]+[a-z0-9_]*\\.h|Qt[A-Z]\\w*/.*)$"));
    const QString part = PartOf(name);
    const QString form = Q("ui_") + name.section(u'/', -1).section(u'.', 0, 0) + Q(".h");
    QStringList wrong;
    for (const auto& match : line.globalMatch(code)) {
        const QString included = match.captured(2);
        const bool isOwn = match.captured(1) == Q("\"") || !PartOf(included).isEmpty();
        QString problem;
        if (isOwn && included != form) {
            problem = ProblemOfOwn(part, included);
        } else if (included.contains(qt)) {
            problem = ProblemOfQt(part, included);
        }
        if (!problem.isEmpty()) {
            wrong.append(name + Q(": ") + included + u' ' + problem);
        }
    }
    return wrong;
}

QString Include(const QString& name) {
    return Q("#include \"%1\"\n").arg(name);
}

/// One file of each part, as the tests of the rule itself use them.
QMap<QString, QString> HeaderOfEachPart() {
    QMap<QString, QString> headers;
    for (const QString& file : AllFiles()) {
        if (file.endsWith(Q(".h")) || file == Q("app/main.cpp")) {
            headers.insert(PartOf(file), file);
        }
    }
    return headers;
}

}  // namespace

TEST(IncludeRules, EveryFileBelongsToAPartAndEveryPartHasFiles) {
    QStringList found;
    for (const QString& file : AllFiles()) {
        EXPECT_FALSE(PartOf(file).isEmpty()) << file.toStdString();
        found.append(PartOf(file));
    }
    for (const QString& part : MayInclude().keys()) {
        EXPECT_GT(found.count(part), 0) << part.toStdString();
    }
}

TEST(IncludeRules, APartIncludesOnlyWhatItStandsOnAndNoWindowsWhereThereAreNone) {
    qsizetype includes = 0;
    for (const QString& file : AllFiles()) {
        const QString code = Read(PathOf(file));
        includes += code.count(Q("#include \""));
        EXPECT_EQ(WrongIncludes(file, code).join(u'\n').toStdString(), "");
    }
    EXPECT_GT(includes, 500);
}

TEST(IncludeRules, AnIncludeOfEveryPartThatIsNotBelowIsFoundInEveryPart) {
    const QMap<QString, QString> headers = HeaderOfEachPart();
    int forbidden = 0;
    for (const QString& part : MayInclude().keys()) {
        for (const QString& other : MayInclude().keys()) {
            const bool isAllowed = part == other || MayInclude().value(part).contains(other);
            const QString header = headers.value(other);
            EXPECT_EQ(WrongIncludes(headers.value(part), Include(header)).size(), isAllowed ? 0 : 1)
                << part.toStdString() << " and " << other.toStdString();
            EXPECT_EQ(WrongIncludes(headers.value(part), Q("#  include <") + header + Q(">\n")).isEmpty(),
                      isAllowed)
                << part.toStdString() << " and " << other.toStdString();
            forbidden += isAllowed ? 0 : 1;
        }
    }
    EXPECT_GT(forbidden, 300);
}

TEST(IncludeRules, AWindowOfQtIsFoundWhereverThereAreNone) {
    const QMap<QString, QString> headers = HeaderOfEachPart();
    for (const QString& part : MayInclude().keys()) {
        const bool isAllowed = WindowParts.contains(part);
        for (const char* header : {"QWidget", "QtWidgets/QWidget", "QtWidgets", "QIcon", "QtGui/qicon.h",
                                   "qwidget.h", "QLocalServer"}) {
            const QString code = Q("#include <") + Q(header) + Q(">\n");
            EXPECT_EQ(WrongIncludes(headers.value(part), code).isEmpty(), isAllowed)
                << part.toStdString() << " and " << header;
        }
        for (const char* header : {"QString", "QtCore/QString", "qglobal.h", "sys/file.h", "vector"}) {
            const QString code = Q("#include <") + Q(header) + Q(">\n");
            EXPECT_EQ(WrongIncludes(headers.value(part), code), QStringList()) << part.toStdString();
        }
    }
}

TEST(IncludeRules, AnIncludeIsNamedFromTheRootOfTheSources) {
    EXPECT_EQ(WrongIncludes(Q("shell/frmMain.cpp"), Include(Q("frmMain.h"))).size(), 1);
    EXPECT_EQ(WrongIncludes(Q("shell/frmMain.cpp"), Include(Q("../core/Log.h"))).size(), 1);
    EXPECT_EQ(WrongIncludes(Q("shell/frmMain.cpp"), Include(Q("core/Lgo.h"))).size(), 1);
    EXPECT_EQ(WrongIncludes(Q("shell/frmMain.cpp"), Include(Q("ui_frmMain.h"))), QStringList());
    EXPECT_EQ(WrongIncludes(Q("core/Log.cpp"), Include(Q("ui_frmMain.h"))).size(), 1);
}
