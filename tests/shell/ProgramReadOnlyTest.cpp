#include "app/TestMachine.h"
#include "support/BrokenDisk.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

#include <grp.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int Deadline = 120000;  // ms

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

/// The program, and the hand that works in it, where every account can run them.
class ProgramForAll {
public:
    ProgramForAll() {
        Publish(m_folder.path());
        QDir(m_folder.path()).mkdir(Q("generic"));
        Publish(m_folder.filePath(Q("generic")));
        Copy(Q(LARKSPAN), Path());
        Copy(Q(PROGRAM_HAND), m_folder.filePath(Q("generic/libprogram_hand.so")));
    }
    [[nodiscard]] QString Path() const { return m_folder.filePath(Q("larkspan")); }
    [[nodiscard]] QString Plugins() const { return m_folder.path(); }

private:
    static void Publish(const QString& path) {
        EXPECT_EQ(chmod(QFile::encodeName(path).constData(), 0755), 0);
    }
    static void Copy(const QString& from, const QString& to) {
        EXPECT_TRUE(QFile::copy(from, to)) << from.toStdString();
        Publish(to);
    }

    QTemporaryDir m_folder;
};

/// Gives up the administrator's account for good; runs in the child, before the program.
void BecomeOrdinary() {
    constexpr uid_t Nobody = 65534;
    if (getuid() == 0 && (seteuid(0) != 0 || setgroups(0, nullptr) != 0 ||
                          setresgid(Nobody, Nobody, Nobody) != 0 || setresuid(Nobody, Nobody, Nobody) != 0)) {
        _exit(98);
    }
}

using Files = QMap<QString, QByteArray>;

/// An ordinary user's folders with what an earlier run left in them.
class WritableFolders : public ::testing::Test {
protected:
    ProgramForAll m_program;
    OrdinaryUser m_user;
    FreshSettings m_settings;
    QTemporaryDir m_home;
    TempOffice m_office;
    const QByteArray m_oldHistory = QByteArray(2138, ' ');
    const QByteArray m_oldLog = "1,20260307120000,\"Ann Byrne\",\"Hi\"\r\n";

    void SetUp() override {
        Put("settings/Brenmoor/Larkspan Messenger.ini", "[Notify]\nInterval=45\n");
        Put("application/history.sms", m_oldHistory);
        Put("application/messagelog.sms", m_oldLog);
        Put("application/applog.txt", "an earlier start\n");
        Put("temp/hwnd.sms", "12345\r\n");
        Put("session/empty", "");
        EXPECT_EQ(chmod(QFile::encodeName(m_home.filePath(Q("session"))).constData(), 0700), 0);
        m_office.AddContact(Q("Byrne"), Q("Ann"), Q("+353865550142"));
    }
    void Put(const char* name, const QByteArray& bytes) {
        const QString path = m_home.filePath(Q(name));
        QDir().mkpath(QFileInfo(path).path());
        EXPECT_TRUE(m_office.Files.Replace(path, bytes)) << name;
    }
    [[nodiscard]] Files FilesOf(const QString& folder) const {
        Files files;
        for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files | QDir::Hidden)) {
            files.insert(file.fileName(), m_office.Files.Read(file.filePath()).value_or("unreadable"));
        }
        return files;
    }
    [[nodiscard]] QString PathOf(const std::string& folder) const {
        return m_home.filePath(folder == "settings" ? Q("settings/Brenmoor")
                                                    : QString::fromStdString(folder));
    }
    /// Runs the program until the hand has pressed Exit; what it said on standard error.
    QByteArray Run() {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        const auto set = [&](const char* name, const QString& value) { environment.insert(Q(name), value); };
        set("HOME", m_home.path());
        set("XDG_DATA_HOME", m_home.path());
        set("XDG_CONFIG_HOME", m_home.filePath(Q("settings")));
        set("XDG_RUNTIME_DIR", m_home.filePath(Q("session")));
        set("LARKSPAN_HOME", m_home.filePath(Q("application")));
        set("TEMP", m_home.filePath(Q("temp")));
        set("QT_QPA_PLATFORM", Q("offscreen"));
        set("QT_PLUGIN_PATH", m_program.Plugins());
        set("QT_QPA_GENERIC_PLUGINS", Q("hand"));
        QProcess program;
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory(m_home.path());
        program.setChildProcessModifier(BecomeOrdinary);
        program.start(m_program.Path(), {Q("--data"), m_office.DataFolder.path(), Q("/error")});
        EXPECT_TRUE(program.waitForFinished(Deadline)) << "the program hung";
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        QByteArray said = program.readAllStandardError();
        EXPECT_EQ(program.exitCode(), 0) << said.constData();
        program.kill();
        program.waitForFinished();
        return said;
    }
    static int Complaints(const QByteArray& log) { return static_cast<int>(log.count("cannot be written")); }
};

/// Some of them cannot be written.
class ReadOnlyFolders : public WritableFolders,
                        public ::testing::WithParamInterface<std::vector<std::string>> {};

}  // namespace

TEST_P(ReadOnlyFolders, AreToldOnceAndKeepTheirFilesWhileTheProgramSendsAndEnds) {
    QMap<QString, Files> before;
    std::vector<std::unique_ptr<ReadOnlyFolder>> readOnly;
    for (const std::string& folder : GetParam()) {
        before.insert(PathOf(folder), FilesOf(PathOf(folder)));
        readOnly.push_back(std::make_unique<ReadOnlyFolder>(PathOf(folder)));
    }
    const QByteArray said = Run();
    EXPECT_EQ(m_office.MessageRows().size(), 2) << said.constData();

    const QByteArray log = FilesOf(PathOf("application")).value(Q("applog.txt"));
    EXPECT_TRUE(log.startsWith("an earlier start\n"));
    for (const QByteArray& lines : {said, log}) {
        EXPECT_EQ(Complaints(lines), static_cast<int>(GetParam().size())) << lines.constData();
        for (const std::string& folder : GetParam()) {
            const std::string name = folder == "temp" ? "temporary" : folder;
            EXPECT_EQ(lines.count(("The " + name + " folder cannot be written: ").c_str()), 1)
                << lines.constData();
        }
    }
    for (auto folder = before.begin(); folder != before.end(); ++folder) {
        Files after = FilesOf(folder.key());
        EXPECT_EQ(after.keys(), folder->keys());
        // These two are only ever added to, which needs no right on the folder.
        for (const QString& grown : {Q("applog.txt"), Q("messagelog.sms")}) {
            EXPECT_TRUE(after.take(grown).startsWith(folder->take(grown))) << grown.toStdString();
        }
        EXPECT_EQ(after, *folder);
    }
}

INSTANTIATE_TEST_SUITE_P(Each, ReadOnlyFolders,
                         ::testing::Values(std::vector<std::string>{"settings"},
                                           std::vector<std::string>{"application"},
                                           std::vector<std::string>{"temp"},
                                           std::vector<std::string>{"settings", "application", "temp"}),
                         [](const auto& given) {
                             return given.param.size() == 1 ? given.param.front() : std::string("all");
                         });

TEST_F(WritableFolders, AreNotComplainedAboutAndKeepEverything) {
    EXPECT_EQ(Complaints(Run()), 0);
    EXPECT_EQ(m_office.MessageRows().size(), 2);
    const Files application = FilesOf(PathOf("application"));
    EXPECT_EQ(application.value(Q("history.sms")).size(), 4 * 1069);
    EXPECT_EQ(application.value(Q("messagelog.sms")).count("\r\n"), 3);
    EXPECT_NE(FilesOf(PathOf("temp")).value(Q("hwnd.sms")), "12345\r\n");
    EXPECT_TRUE(FilesOf(PathOf("settings")).value(Q("Larkspan Messenger.ini")).contains("RunWizard=0"));
}
