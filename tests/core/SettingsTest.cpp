#include "core/Settings.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

#include <utility>

#include "support/BrokenDisk.h"
#include "support/Printing.h"

using namespace Qt::StringLiterals;

namespace {

class SettingsTest : public testing::Test {
protected:
    SettingsTest() {
        m_settings.SetApplication(u"Larkspan Messenger"_s);
        QFile::remove(m_settings.FileName());
    }
    ~SettingsTest() override { QFile::remove(m_settings.FileName()); }

    /// What another program, or the next start of this one, reads.
    static QString ReadAnew(const QString& section, const QString& key, const QString& defaultValue) {
        Settings settings;
        settings.SetApplication(u"Larkspan Messenger"_s);
        return settings.GetValue(section, key, defaultValue);
    }
    [[nodiscard]] QByteArray FileText() const {
        QFile file(m_settings.FileName());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// Where the organisation's folder lies.
    [[nodiscard]] QString FolderOfStores() const {
        return QDir::cleanPath(QFileInfo(m_settings.FileName()).path() + u"/.."_s);
    }

    Settings m_settings;
};

/// Settings of this process lie in a folder of their own as long as it lives, and then in `before` again.
class SettingsAt {
public:
    explicit SettingsAt(QString before) : m_before(std::move(before)) { Set(m_folder.path()); }
    ~SettingsAt() { Set(m_before); }
    SettingsAt(const SettingsAt&) = delete;
    SettingsAt& operator=(const SettingsAt&) = delete;

private:
    static void Set(const QString& folder) {
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder);
    }

    QString m_before;
    QTemporaryDir m_folder;
};

}  // namespace

TEST_F(SettingsTest, AValueThatIsMissingGivesTheDefault) {
    EXPECT_EQ(m_settings.GetValue(u"Setup"_s, u"RunWizard"_s, u"1"_s), u"1"_s);
    EXPECT_EQ(m_settings.GetValue(u"DB"_s, u"Outbox"_s, QString()), u""_s);
}

TEST_F(SettingsTest, AValueIsReadBackBySectionAndKey) {
    m_settings.SetValue(u"Notify"_s, u"Interval"_s, u"30"_s);
    m_settings.SetValue(u"Display"_s, u"Interval"_s, u"7"_s);
    EXPECT_EQ(m_settings.GetValue(u"Notify"_s, u"Interval"_s, u"60"_s), u"30"_s);
    EXPECT_EQ(m_settings.GetValue(u"Display"_s, u"Interval"_s, u"60"_s), u"7"_s);
    EXPECT_EQ(ReadAnew(u"Notify"_s, u"Interval"_s, u"60"_s), u"30"_s);
}

TEST_F(SettingsTest, AnEmptyValueIsAValue) {
    m_settings.SetValue(u"Defaults"_s, u"EndWith"_s, QString());
    EXPECT_EQ(m_settings.GetValue(u"Defaults"_s, u"EndWith"_s, u"default"_s), u""_s);
    EXPECT_EQ(ReadAnew(u"Defaults"_s, u"EndWith"_s, u"default"_s), u""_s);
}

TEST_F(SettingsTest, AnyTextComesBackAsItWas) {
    for (const QString& text :
         {u"a, b, c"_s, u"\\\\server\\share\\"_s, u"C:\\data;x=y"_s, u" blanks "_s, u"\"quoted\""_s,
          u"@Invalid()"_s, u"@?"_s, u"Zo\u00EB \u0416\u20AC \U0001F600"_s, u"two\r\nlines"_s, u"%20 [x]"_s}) {
        m_settings.SetValue(u"Defaults"_s, u"EndWith"_s, text);
        EXPECT_EQ(m_settings.GetValue(u"Defaults"_s, u"EndWith"_s, u"default"_s), text);
    }
}

TEST_F(SettingsTest, AValueStandsInTheFileAtOnce) {
    m_settings.SetValue(u"Notify"_s, u"Sound"_s, u"1"_s);
    EXPECT_TRUE(FileText().contains("[Notify]")) << FileText().constData();
    EXPECT_TRUE(FileText().contains("Sound=1")) << FileText().constData();
}

TEST_F(SettingsTest, AValueWrittenByAnotherProgramIsSeenAtOnce) {
    m_settings.SetValue(u"Notify"_s, u"Sound"_s, u"1"_s);
    QFile file(m_settings.FileName());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("[Notify]\nSound=0\nEnabled=no, not now\n");
    file.close();
    EXPECT_EQ(m_settings.GetValue(u"Notify"_s, u"Sound"_s, u"1"_s), u"0"_s);
    EXPECT_EQ(m_settings.GetValue(u"Notify"_s, u"Enabled"_s, u"1"_s), u"no, not now"_s);
}

TEST_F(SettingsTest, TheStoreIsAnIniFileOfTheUserUnderTheApplicationsName) {
    m_settings.SetValue(u"Notify"_s, u"Sound"_s, u"1"_s);
    EXPECT_TRUE(m_settings.FileName().endsWith(u"/Brenmoor/Larkspan Messenger.ini"_s))
        << m_settings.FileName().toStdString();
    EXPECT_TRUE(m_settings.FileName().startsWith(QDir::tempPath()));
    const QFile::Permissions others =
        QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther;
    EXPECT_EQ(QFileInfo(m_settings.FileName()).permissions() & others, QFile::Permissions());
}

TEST_F(SettingsTest, AnotherApplicationHasItsOwnValues) {
    m_settings.SetValue(u"Notify"_s, u"Sound"_s, u"1"_s);
    Settings other;
    other.SetApplication(u"Another Program"_s);
    EXPECT_EQ(other.GetValue(u"Notify"_s, u"Sound"_s, u"0"_s), u"0"_s);
}

TEST_F(SettingsTest, WithoutAnApplicationEveryValueIsTheDefault) {
    Settings settings;
    settings.SetValue(u"Notify"_s, u"Sound"_s, u"1"_s);
    EXPECT_EQ(settings.GetValue(u"Notify"_s, u"Sound"_s, u"0"_s), u"0"_s);
    EXPECT_EQ(settings.FileName(), u""_s);
}

TEST_F(SettingsTest, ADamagedStoreGivesTheDefault) {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(m_settings.FileName()).path()));
    QFile file(m_settings.FileName());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("\0\xFF[[[=\n==\n]Notify\nSound", 24));
    file.close();
    EXPECT_EQ(ReadAnew(u"Notify"_s, u"Sound"_s, u"0"_s), u"0"_s);
}

TEST_F(SettingsTest, InAReadOnlyFolderAValueLastsUntilTheEndAndTheStoreStaysWhole) {
    const OrdinaryUser user;
    const SettingsAt home(FolderOfStores());
    m_settings.SetApplication(u"Larkspan Messenger"_s);
    m_settings.SetValue(u"Notify"_s, u"Sound"_s, u"1"_s);
    const QByteArray old = FileText();
    ASSERT_TRUE(old.contains("Sound=1"));
    const QString folder = QFileInfo(m_settings.FileName()).path();
    const QStringList files = QDir(folder).entryList(QDir::Files | QDir::Hidden);
    {
        const ReadOnlyFolder readOnly(folder);
        m_settings.SetValue(u"Notify"_s, u"Sound"_s, u"0"_s);
        EXPECT_EQ(m_settings.GetValue(u"Notify"_s, u"Sound"_s, u"1"_s), u"0"_s);
        EXPECT_EQ(FileText(), old);
        EXPECT_EQ(QDir(folder).entryList(QDir::Files | QDir::Hidden), files);
    }
    m_settings.SetValue(u"Notify"_s, u"Interval"_s, u"30"_s);
    EXPECT_TRUE(FileText().contains("Sound=0")) << "kept as soon as it can be";
}

TEST_F(SettingsTest, AFullDiskLeavesTheOldStore) {
    m_settings.SetValue(u"Notify"_s, u"Sound"_s, u"1"_s);
    const QByteArray before = FileText();
    {
        const FullDisk disk(4);
        m_settings.SetValue(u"Notify"_s, u"Sound"_s, u"a value that does not fit"_s);
    }
    EXPECT_EQ(FileText(), before);
}
