#pragma once

#include "controls/ListView.h"
#include "controls/TabControl.h"
#include "shell/PlantedSecrets.h"
#include "shell/StatusPoll.h"

#include <QLineEdit>
#include <QPushButton>

#include <gtest/gtest.h>

#include <functional>

/// An office full of planted secrets, and the roads on which they go through the program.
class PlantedSecrets : public ::testing::Test {
protected:
    static constexpr int Rounds = 3;
    struct Road {
        const char* Name;
        std::function<void(const Secret&)> Walk;
    };
    QList<Secret> m_secrets = Secrets::Plant(static_cast<int>(Roads().size()) * Rounds);
    MainWindow m_window{[this](TestMachine& machine) {
        for (Secret& secret : m_secrets) {
            secret.ID = machine.Office.AddContact(secret.Name, Q("Ann"), secret.Number);
            secret.Key = Keys::ContactKey(secret.ID);
        }
    }};
    Outside m_outside{m_window};

    [[nodiscard]] QList<Road> Roads() {
        const auto road = [this](const char* name, void (PlantedSecrets::*walk)(const Secret&)) {
            return Road{name, [this, walk](const Secret& secret) { (this->*walk)(secret); }};
        };
        return {
            road("sent", &PlantedSecrets::SendWell),
            road("no outbox", &PlantedSecrets::SendIntoAMissingOutbox),
            road("outbox refuses", &PlantedSecrets::SendIntoAnOutboxThatRefuses),
            road("full disk", &PlantedSecrets::SendWithAFullDisk),
            road("contact gone", &PlantedSecrets::SendToAContactThatIsGone),
            road("sent later", &PlantedSecrets::SendLater),
            road("schedule given up", &PlantedSecrets::GiveUpTheSchedule),
            road("later, no outbox", &PlantedSecrets::SendLaterIntoAMissingOutbox),
            road("confirmed", &PlantedSecrets::ConfirmTheRecipient),
            road("not confirmed", &PlantedSecrets::GiveUpTheConfirmation),
            road("history not readable", &PlantedSecrets::SendWithAHistoryThatCannotBeRead),
            road("history corrupt", &PlantedSecrets::SendWithACorruptHistory),
            road("poll fails", &PlantedSecrets::PollAnOutboxThatIsGone),
            road("poll", &PlantedSecrets::PollAMessageThatFailed),
            road("no contacts", &PlantedSecrets::FailToListContacts),
            road("group", &PlantedSecrets::MakeUseAndDeleteAGroup),
            road("group refused", &PlantedSecrets::MakeAGroupThatIsRefused),
            road("group not renamed", &PlantedSecrets::RenameAGroupInVain),
            road("members not listed", &PlantedSecrets::FailToListMembers),
            road("drag", &PlantedSecrets::DragAndDrop),
            road("drop refused", &PlantedSecrets::DropOnAGroupInVain),
            road("contact deleted", &PlantedSecrets::DeleteTheContact),
            road("contact not deleted", &PlantedSecrets::DeleteTheContactInVain),
            road("right password", &PlantedSecrets::TypeTheRightPasswords),
            road("wrong password", &PlantedSecrets::TypeWrongPasswords),
        };
    }

    // --- tools ---

    static QString Q(const char* text) { return QString::fromLatin1(text); }
    TempOffice& Office() { return m_window.Machine.Office; }
    RecordingDoor& Door() { return m_window.Machine.Door; }
    DB& Outbox() { return *m_window.Context.OutboxDB; }
    ListView& Contacts() { return *m_window.Find<ListView>("lvContacts"); }
    ListView& Recipients() { return *m_window.Find<ListView>("lvRecipients"); }
    TabControl& Tabs() { return *m_window.Find<TabControl>("tabGroup"); }
    void Look(const char* occasion) { m_outside.Look(Q(occasion)); }

    /// The database refuses such a change of a table while this lives; its words hold nothing planted.
    class Refusal {
    public:
        Refusal(std::function<void(const QString&)> execute, const QString& change)
            : m_execute(std::move(execute)) {
            m_execute(Q("CREATE TRIGGER refuse BEFORE %1 BEGIN SELECT RAISE(ABORT, 'no'); END").arg(change));
        }
        ~Refusal() { m_execute(Q("DROP TRIGGER refuse")); }
        Refusal(const Refusal&) = delete;
        Refusal& operator=(const Refusal&) = delete;

    private:
        std::function<void(const QString&)> m_execute;
    };
    [[nodiscard]] Refusal PhonebookRefuses(const char* change) {
        return Refusal([this](const QString& sql) { Office().ExecuteOnPhonebook(sql); }, Q(change));
    }
    /// The outbox is away while `work` runs.
    void WithoutOutbox(const std::function<void()>& work) {
        const QString file = Outbox().Filename;
        Outbox().Filename = Office().DataFolder.filePath(Q("gone.mdb"));
        work();
        Outbox().Filename = file;
    }
    void Compose(const Secret& secret) {
        m_window.Form->ShowGroup();
        m_window.Form->AddKeysToRecipients({secret.Key});
        m_window.Find<QWidget>("txtMessage")->setProperty("plainText", secret.Text);
        m_window.Form->UpdateStateDisplay();
    }
    void Press(const char* name) {
        auto* button = m_window.Find<QAbstractButton>(name);
        ASSERT_TRUE(button->isEnabled()) << name;
        QTest::mouseClick(button, Qt::LeftButton);
        Look(name);
    }
    void PressSend() { Press("cmdSendNow"); }
    void Clear() {
        m_window.Form->Reset();
        Look("reset");
    }
    void ExpectPress(const char* button) {
        Door().ExpectDialog([this, button](QDialog& dialog) {
            Look(button);
            QTest::mouseClick(dialog.findChild<QPushButton*>(Q(button)), Qt::LeftButton);
        });
    }
    /// Types into the next dialog's only box, and presses Enter.
    void ExpectTyping(const char* box, const QString& text) {
        Door().ExpectDialog([this, box, text](QDialog& dialog) {
            auto* entry = dialog.findChild<QLineEdit*>(Q(box));
            entry->selectAll();
            QTest::keyClicks(entry, text);
            Look(box);
            QTest::keyClick(entry, Qt::Key_Return);
        });
    }
    [[nodiscard]] qsizetype Sent() { return Office().MessageRows().size(); }
    int SelectTab(const QString& caption) {
        for (int tab = 0; tab < Tabs().Count(); ++tab) {
            if (Tabs().Caption(tab) == caption) {
                Tabs().Select(tab);
                return tab;
            }
        }
        ADD_FAILURE() << "no tab " << caption.toStdString();
        return 0;
    }
    void ChooseOnTab(const QString& caption, const QString& entry) {
        const int tab = SelectTab(caption);
        Door().ExpectMenu(entry);
        QTest::mouseClick(&Tabs(), Qt::RightButton, {}, Tabs().TabRect(tab).center());
        Look("tab menu");
    }
    void MakeGroup(const Secret& secret) {
        ExpectTyping("txtName", secret.Group);
        ChooseOnTab(Q("*"), Q("Add New Group"));
    }
    void DeleteGroup(const QString& name) {
        Office().Boxes.Expect(BoxAnswer::Yes);
        ChooseOnTab(name, Q("Delete Group '%1'").arg(name));
    }
    void DropOnTab(const Secret& secret, const QString& caption) {
        Q_EMIT Tabs().TextDropped(secret.Key + Q("\r\n"), SelectTab(caption));
        Look("drop on a tab");
    }
    void SetPasswords(const QString& password) {
        const QString quoted = mdlOutbox::QuoteSQL(password);
        Office().ExecuteOnPhonebook(Q("UPDATE Config SET cfgEditPassword='%1', cfgEditHiddenPassword='%1', "
                                      "cfgPublicHistoryPassword='%1', cfgReportPassword='%1'")
                                        .arg(quoted));
    }

    // --- sending ---

    void SendWell(const Secret& secret) {
        const qsizetype before = Sent();
        Compose(secret);
        PressSend();
        EXPECT_EQ(Recipients().Rows().Count(), 0);
        EXPECT_EQ(Sent(), before + 1);
    }
    void SendIntoAMissingOutbox(const Secret& secret) {
        Compose(secret);
        Office().Boxes.Expect();
        WithoutOutbox([this] { PressSend(); });
        Clear();
    }
    void SendIntoAnOutboxThatRefuses(const Secret& secret) {
        const Refusal refusal([this](const QString& sql) { Office().ExecuteOnOutbox(sql); },
                              Q("INSERT ON Message"));
        Compose(secret);
        Office().Boxes.Expect();
        PressSend();
        Clear();
    }
    void SendWithAFullDisk(const Secret& secret) {
        Compose(secret);
        Office().Files.WritesLeft = 0;
        PressSend();
        Office().Files.WritesLeft = -1;
    }
    void SendToAContactThatIsGone(const Secret& secret) {
        Compose(secret);
        m_window.Context.RecipientContacts.Clear();
        PressSend();
        Clear();
    }
    void SendLater(const Secret& secret) {
        const qsizetype before = Sent();
        Compose(secret);
        ExpectPress("cmdOK");
        Press("cmdSendLater");
        EXPECT_EQ(Sent(), before + 1);
    }
    void GiveUpTheSchedule(const Secret& secret) {
        Compose(secret);
        ExpectPress("cmdCancel");
        Press("cmdSendLater");
        Clear();
    }
    void SendLaterIntoAMissingOutbox(const Secret& secret) {
        Compose(secret);
        ExpectPress("cmdOK");
        Office().Boxes.Expect();
        WithoutOutbox([this] { Press("cmdSendLater"); });
        Clear();
    }
    void ComposeForConfirmation(const Secret& secret) {
        Office().ExecuteOnPhonebook(Q("UPDATE Contact SET cntConfirmSend=1 WHERE cntID=%1").arg(secret.ID));
        Compose(secret);
    }
    void ConfirmTheRecipient(const Secret& secret) {
        const qsizetype before = Sent();
        ComposeForConfirmation(secret);
        ExpectPress("cmdOkay");
        PressSend();
        EXPECT_EQ(Sent(), before + 1);
    }
    void GiveUpTheConfirmation(const Secret& secret) {
        ComposeForConfirmation(secret);
        ExpectPress("cmdCancel");
        PressSend();
        Clear();
    }

    // --- history and tracking ---

    void SendWithAHistoryThatCannotBeRead(const Secret& secret) {
        Office().Files.IsReadFailing = true;
        SendWell(secret);
        EXPECT_TRUE(m_window.Context.History.ReadHistory().isEmpty());
        Office().Files.IsReadFailing = false;
    }
    void SendWithACorruptHistory(const Secret& secret) {
        SendWell(secret);
        EXPECT_TRUE(Office().Files.Append(Office().Folders.ApplicationFolder() + Q("history.sms"), "x"));
        Office().Boxes.Expect();
        SendWell(secret);
        EXPECT_EQ(m_window.Context.History.ReadHistory().size(), 1);
    }
    /// One tick of the timer, long after the last poll.
    void Poll() {
        Office().Time.Time = Office().Time.Time.addSecs(3600);
        auto* poll = m_window.Form->findChild<StatusPoll*>();
        ASSERT_NE(poll, nullptr);
        poll->Check();
        Look("poll");
    }
    void PollAnOutboxThatIsGone(const Secret& secret) {
        SendWell(secret);
        WithoutOutbox([this] { Poll(); });
        Office().ExecuteOnOutbox(Q("ALTER TABLE Message RENAME TO Hidden"));
        Poll();
        Office().ExecuteOnOutbox(Q("ALTER TABLE Hidden RENAME TO Message"));
    }
    void PollAMessageThatFailed(const Secret& secret) {
        SendWell(secret);
        Office().ExecuteOnOutbox(Q("UPDATE Message SET msgStatus=7, msgComplete=1"));
        Poll();
    }

    // --- contacts and groups ---

    void FailToListContacts(const Secret& secret) {
        Compose(secret);
        m_window.Context.PhonebookDB->CloseDatabase();
        m_window.Form->ShowGroup();
        EXPECT_TRUE(m_window.Context.PhonebookDB->OpenDatabase(engine::Mode::ReadShared));
        Clear();
    }
    void MakeUseAndDeleteAGroup(const Secret& secret) {
        MakeGroup(secret);
        DropOnTab(secret, secret.Group);
        ChooseOnTab(secret.Group, Q("Add '%1' Group To Recipients").arg(secret.Group));
        EXPECT_EQ(Recipients().Rows().KeyList(), QStringList{secret.Key});
        const QString renamed = secret.Group.left(6);
        ExpectTyping("txtName", renamed);
        ChooseOnTab(secret.Group, Q("Rename Group '%1'").arg(secret.Group));
        DeleteGroup(renamed);
        Clear();
    }
    void MakeAGroupThatIsRefused(const Secret& secret) {
        const Refusal refusal = PhonebookRefuses("INSERT ON ContactGroup");
        const int tabs = Tabs().Count();
        Office().Boxes.Expect();
        MakeGroup(secret);
        m_window.Form->ShowGroup();
        Contacts().SelectKey(secret.Key);
        ExpectTyping("txtName", secret.Group);
        Office().Boxes.Expect();
        m_window.Form->CreateGroupFromSelection(Contacts(), true);
        EXPECT_EQ(Tabs().Count(), tabs);
    }
    void RenameAGroupInVain(const Secret& secret) {
        MakeGroup(secret);
        {
            const Refusal refusal = PhonebookRefuses("UPDATE ON ContactGroup");
            ExpectTyping("txtName", secret.Group.left(6));
            ChooseOnTab(secret.Group, Q("Rename Group '%1'").arg(secret.Group));
        }
        EXPECT_EQ(Office().GroupRows().last().value(Q("grpName")).toString(), secret.Group);
        DeleteGroup(secret.Group.left(6));
    }
    void FailToListMembers(const Secret& secret) {
        MakeGroup(secret);
        m_window.Context.PhonebookDB->CloseDatabase();
        SelectTab(secret.Group);
        Look("no members");
        EXPECT_TRUE(m_window.Context.PhonebookDB->OpenDatabase(engine::Mode::ReadShared));
        DeleteGroup(secret.Group);
    }
    void DragAndDrop(const Secret& secret) {
        m_window.Form->ShowGroup();
        for (const QString& keys : {secret.Key + Q("\r\n"), secret.Name, secret.Text + Q("\r\n")}) {
            Q_EMIT Recipients().TextDropped(keys, Q("lvContacts"));
            Look("drop on the recipients");
        }
        EXPECT_TRUE(Recipients().Rows().KeyList().contains(secret.Key));
        Clear();
    }
    void DropOnAGroupInVain(const Secret& secret) {
        MakeGroup(secret);
        {
            const Refusal refusal = PhonebookRefuses("INSERT ON GroupMember");
            DropOnTab(secret, secret.Group);
        }
        EXPECT_TRUE(Office().MemberRows().isEmpty());
        DeleteGroup(secret.Group);
    }
    void PressDelete(const Secret& secret) {
        m_window.Form->ShowGroup();
        Contacts().SelectKey(secret.Key);
        Office().Boxes.Expect(BoxAnswer::Yes);
        Press("cmdDeleteContact");
    }
    void DeleteTheContact(const Secret& secret) {
        const qsizetype before = Office().ContactRows().size();
        PressDelete(secret);
        EXPECT_EQ(Office().ContactRows().size(), before - 1);
    }
    void DeleteTheContactInVain(const Secret& secret) {
        const Refusal refusal = PhonebookRefuses("DELETE ON Contact");
        const qsizetype before = Office().ContactRows().size();
        PressDelete(secret);
        EXPECT_EQ(Office().ContactRows().size(), before);
    }

    // --- passwords ---

    void TypePasswords(const Secret& secret, const QString& typed) {
        const bool isRight = typed == secret.Password;
        SetPasswords(secret.Password);
        for (const bool hidden : {false, true}) {
            ExpectTyping("txtPassword", typed);
            EXPECT_EQ(m_window.Form->IsPasswordOK(hidden), isRight);
        }
        // These two ask no more once they were answered.
        if (!m_arePublicOnesAnswered) {
            for (int check = 0; check < 2; ++check) {
                ExpectTyping("txtPassword", typed);
                EXPECT_EQ(check == 0 ? m_window.Form->PublicHistoryPasswordCheck()
                                     : m_window.Form->ReportPasswordCheck(),
                          isRight);
            }
            m_arePublicOnesAnswered = isRight;
        }
        SetPasswords(QString());
    }
    void TypeTheRightPasswords(const Secret& secret) { TypePasswords(secret, secret.Password); }
    void TypeWrongPasswords(const Secret& secret) { TypePasswords(secret, secret.Password + u'x'); }

private:
    bool m_arePublicOnesAnswered = false;
};
