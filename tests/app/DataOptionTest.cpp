#include "app/AppContext.h"
#include "app/CommandLine.h"
#include "app/EntryRoutine.h"
#include "app/RecordingScreens.h"
#include "app/TestMachine.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

/// Starts with --data on a folder that has an outbox, and settings that point at another office.
class DataOption : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(QFile::copy(m_machine.Office.OutboxPath(), InFolder(Q("smsmessages.mdb"))));
        m_machine.StoreOffice();
        TestMachine::Store(SettingNames::SectionSetup, SettingNames::RunWizard, Q("1"));
    }
    [[nodiscard]] QString InFolder(const QString& name) const { return m_folder.filePath(name); }
    void StoreContacts(const QString& path) {
        TestMachine::Store(SettingNames::SectionDB, SettingNames::Contacts, path);
    }
    /// Whether the program goes on.
    bool Run() { return Run(m_folder.path()); }
    bool Run(const QString& folder) {
        const CommandLine arguments({Q("--data"), folder});
        const Machine seams = m_machine.Seams();
        AppContext context(seams);
        RecordingScreens screens(context.AppBusyState);
        EntryRoutine entry(context, seams, screens, arguments);
        const bool goesOn = entry.Run();
        m_calls = screens.Calls;
        m_exitStatus = entry.ExitStatus();
        m_isPhonebookOpen = context.PhonebookDB != nullptr && context.PhonebookDB->IsConnected();
        m_outboxFile = context.OutboxDB != nullptr ? context.OutboxDB->Filename : QString();
        m_isOutboxFine = goesOn && mdlOutbox::OpenOutbox(context.Outbox);
        return goesOn;
    }
    static QString Outbox() { return TestMachine::Stored(SettingNames::SectionDB, SettingNames::Outbox); }
    static QString Contacts() { return TestMachine::Stored(SettingNames::SectionDB, SettingNames::Contacts); }
    static QString RunWizard() {
        return TestMachine::Stored(SettingNames::SectionSetup, SettingNames::RunWizard);
    }

    TestMachine m_machine;
    QTemporaryDir m_folder;
    QStringList m_calls;
    int m_exitStatus = -1;
    bool m_isPhonebookOpen = false;
    bool m_isOutboxFine = false;
    QString m_outboxFile;
};

TEST_F(DataOption, AFolderWithItsOwnPhonebookTakesThePlaceOfAnotherPhonebook) {
    ASSERT_TRUE(QFile::copy(m_machine.Office.PhonebookPath(), InFolder(Q("smscontacts.mdb"))));
    StoreContacts(m_machine.Office.PhonebookPath());
    EXPECT_TRUE(Run());
    EXPECT_EQ(Outbox(), m_folder.path());
    EXPECT_EQ(Contacts(), QString());
    EXPECT_EQ(RunWizard(), Q("0"));
}

TEST_F(DataOption, AFolderWithoutAPhonebookKeepsThePhonebookThatLiesElsewhere) {
    StoreContacts(m_machine.Office.PhonebookPath());
    EXPECT_TRUE(Run());
    EXPECT_EQ(Outbox(), m_folder.path());
    EXPECT_EQ(Contacts(), m_machine.Office.PhonebookPath());
    EXPECT_EQ(RunWizard(), Q("0"));
}

TEST_F(DataOption, WithoutAnyPhonebookItIsRefusedAndTheSettingsStay) {
    for (const QString& contacts : {QString(), InFolder(Q("gone.mdb"))}) {
        StoreContacts(contacts);
        m_machine.Office.Boxes.Shown.clear();
        m_machine.Office.Boxes.Expect();
        EXPECT_FALSE(Run());
        EXPECT_EQ(m_machine.Office.Boxes.Shown,
                  QList<BoxRequest>({{Q("Larkspan Messenger"),
                                      Q("There is no smscontacts.mdb in ") + m_folder.path() +
                                          Q(".\r\nThe settings stay as they are."),
                                      BoxIcon::Critical, BoxButtons::Ok}}));
        EXPECT_EQ(m_exitStatus, 2);
        EXPECT_TRUE(m_calls.isEmpty()) << m_calls.join(u' ').toStdString();
        EXPECT_EQ(Outbox(), m_machine.Office.DataFolder.path());
        EXPECT_EQ(Contacts(), contacts);
        EXPECT_EQ(RunWizard(), Q("1"));
    }
}

/// Both files in a folder whose name would be taken for a file's.
class DataOptionInMdbFolder : public DataOption {
protected:
    void SetUp() override {
        DataOption::SetUp();
        m_mdbFolder = InFolder(Q("old.mdb files"));
        ASSERT_TRUE(QDir().mkpath(m_mdbFolder));
        ASSERT_TRUE(QFile::copy(m_machine.Office.OutboxPath(), m_mdbFolder + Q("/smsmessages.mdb")));
    }

    QString m_mdbFolder;
};

TEST_F(DataOptionInMdbFolder, TheFilesAreStoredAndOpenNowAndAtTheNextStart) {
    ASSERT_TRUE(QFile::copy(m_machine.Office.PhonebookPath(), m_mdbFolder + Q("/smscontacts.mdb")));
    EXPECT_TRUE(Run(m_mdbFolder));
    EXPECT_EQ(Outbox(), m_mdbFolder + Q("\\smsmessages.mdb"));
    EXPECT_EQ(Contacts(), m_mdbFolder + Q("\\smscontacts.mdb"));
    EXPECT_EQ(m_outboxFile, Outbox());
    EXPECT_TRUE(m_isOutboxFine);
    EXPECT_TRUE(m_isPhonebookOpen);
    m_machine.OneCopy.IsPrevious = true;
    EXPECT_FALSE(Run(m_mdbFolder));
    EXPECT_EQ(m_exitStatus, 0) << "the folder that is in use";
}

TEST_F(DataOptionInMdbFolder, WithoutAPhonebookThereTheOneInUseStays) {
    StoreContacts(m_machine.Office.PhonebookPath());
    EXPECT_TRUE(Run(m_mdbFolder));
    EXPECT_EQ(Outbox(), m_mdbFolder + Q("\\smsmessages.mdb"));
    EXPECT_EQ(Contacts(), m_machine.Office.PhonebookPath());
    EXPECT_TRUE(m_isOutboxFine);
}

TEST(EntryRoutineOutbox, TheSmallestMessageSizeCountsUntilTheOutboxTellsAnother) {
    TestMachine machine;
    machine.StoreOffice();
    ASSERT_TRUE(QFile::remove(machine.Office.OutboxPath()));
    const CommandLine arguments{QStringList()};
    const Machine seams = machine.Seams();
    AppContext context(seams);
    context.MaxMessageSize = 999;
    RecordingScreens screens(context.AppBusyState);
    EXPECT_TRUE(EntryRoutine(context, seams, screens, arguments).Run());
    EXPECT_EQ(context.MaxMessageSize, 160);
}

}  // namespace
