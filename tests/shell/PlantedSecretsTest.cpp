#include "shell/MainWindow.h"

#include "controls/ListView.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QPushButton>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr int People = 50;

/// What belongs to one person and must never be seen outside the places that are made for it.
struct Secret {
    QString Name;
    QString Number;
    QString Text;
    QString Password;
    QString Key;
};

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

QList<Secret> PlantSecrets() {
    QRandomGenerator random(19640703);
    QList<Secret> secrets;
    for (int i = 0; i < People; ++i) {
        const auto word = [&random](const char* head) {
            return Q(head) + QString::number(random.generate() % 900000 + 100000);
        };
        secrets.append(
            {word("Zyx'"), word("+353865"), word("plan 'B' #7/Mar# %") + u'"', word("pass'word"), {}});
    }
    return secrets;
}

/// Everything that others can look at: the log, files beside the two that hold texts on purpose, titles, the
/// process list.
class Outside {
public:
    explicit Outside(MainWindow& window) : m_window(window) {}

    void Look() {
        for (const QWidget* widget : QApplication::topLevelWidgets()) {
            m_seen.append(widget->windowTitle());
        }
        m_seen.append(m_window.Machine.Door.Dialogs);
    }
    [[nodiscard]] QStringList All() {
        Look();
        m_seen.append(m_window.Machine.LogLines());
        for (const char* file : {"/proc/self/cmdline", "/proc/self/environ", "/proc/self/comm"}) {
            AddFile(Q(file));
        }
        for (const QString& folder : {m_window.Machine.Office.Folders.Root.path(), m_temp.path()}) {
            QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
            while (files.hasNext()) {
                const QString path = files.next();
                if (!path.endsWith(u"history.sms") && !path.endsWith(u"messagelog.sms")) {
                    AddFile(path);
                }
            }
        }
        m_seen.append(QString::fromLocal8Bit(m_stderr));
        return m_seen;
    }
    void KeepStderr(const std::string& text) { m_stderr += QByteArray::fromStdString(text); }
    [[nodiscard]] QString TempFolder() const { return m_temp.path() + u'/'; }

private:
    void AddFile(const QString& path) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly)) {
            m_seen.append(QString::fromLatin1(file.readAll()));
        }
    }

    MainWindow& m_window;
    QTemporaryDir m_temp;
    QStringList m_seen;
    QByteArray m_stderr;
};

class PlantedSecrets : public ::testing::Test {
protected:
    QList<Secret> m_secrets = PlantSecrets();
    MainWindow m_window{[this](TestMachine& machine) {
        for (Secret& secret : m_secrets) {
            secret.Key = Keys::ContactKey(machine.Office.AddContact(secret.Name, Q("Ann"), secret.Number));
        }
    }};
    Outside m_outside{m_window};

    TempOffice& Office() { return m_window.Machine.Office; }
    DB& Outbox() { return *m_window.Context.OutboxDB; }

    void Compose(const Secret& secret) {
        m_window.Form->ShowGroup();
        m_window.Form->AddKeysToRecipients({secret.Key});
        m_window.Find<QWidget>("txtMessage")->setProperty("plainText", secret.Text);
        m_window.Form->UpdateStateDisplay();
    }
    void PressSend() {
        auto* button = m_window.Find<QPushButton>("cmdSendNow");
        ASSERT_TRUE(button->isEnabled());
        QTest::mouseClick(button, Qt::LeftButton);
        m_outside.Look();
    }
    void Clear() {
        m_window.Form->Reset();
        m_outside.Look();
    }

    void SendWell(const Secret& secret) {
        Compose(secret);
        PressSend();
        EXPECT_EQ(m_window.Find<ListView>("lvRecipients")->Rows().Count(), 0);
    }
    void SendIntoAMissingOutbox(const Secret& secret) {
        Compose(secret);
        const QString file = Outbox().Filename;
        Outbox().Filename = Office().DataFolder.filePath(Q("gone.mdb"));
        Office().Boxes.Expect();
        PressSend();
        Outbox().Filename = file;
        Clear();
    }
    void SendIntoAnOutboxThatRefuses(const Secret& secret) {
        Office().ExecuteOnOutbox(
            Q("CREATE TRIGGER no BEFORE INSERT ON Message BEGIN SELECT RAISE(ABORT, 'no'); END"));
        Compose(secret);
        Office().Boxes.Expect();
        PressSend();
        Office().ExecuteOnOutbox(Q("DROP TRIGGER no"));
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
    void FailToListContacts(const Secret& secret) {
        Compose(secret);
        m_window.Context.PhonebookDB->CloseDatabase();
        m_window.Form->ShowGroup();
        EXPECT_TRUE(m_window.Context.PhonebookDB->OpenDatabase(engine::Mode::ReadShared));
        Clear();
    }
    void TypePassword(const Secret& secret, const QString& typed) {
        Office().ExecuteOnPhonebook(
            Q("UPDATE Config SET cfgEditPassword='%1'").arg(mdlOutbox::QuoteSQL(secret.Password)));
        m_window.Machine.Door.ExpectDialog([&](QDialog& dialog) {
            auto* entry = dialog.findChild<QWidget*>(Q("txtPassword"));
            QTest::keyClicks(entry, typed);
            m_outside.Look();
            QTest::keyClick(entry, Qt::Key_Return);
        });
        EXPECT_EQ(m_window.Form->IsPasswordOK(false), typed == secret.Password);
        Office().ExecuteOnPhonebook(Q("UPDATE Config SET cfgEditPassword=''"));
    }

    void Live(int turn, const Secret& secret) {
        switch (turn % 8) {
            case 0:
                return SendWell(secret);
            case 1:
                return SendIntoAMissingOutbox(secret);
            case 2:
                return SendIntoAnOutboxThatRefuses(secret);
            case 3:
                return SendWithAFullDisk(secret);
            case 4:
                return SendToAContactThatIsGone(secret);
            case 5:
                return FailToListContacts(secret);
            case 6:
                return TypePassword(secret, secret.Password);
            default:
                return TypePassword(secret, secret.Password + Q("x"));
        }
    }
};

}  // namespace

TEST_F(PlantedSecrets, NoneOfTwoHundredTextsNamesNumbersAndPasswordsIsSeenOutside) {
    Office().Folders.Temp = m_outside.TempFolder();
    ::testing::internal::CaptureStderr();
    m_window.Open();
    for (int turn = 0; turn < m_secrets.size(); ++turn) {
        Live(turn, m_secrets[turn]);
    }
    m_outside.KeepStderr(::testing::internal::GetCapturedStderr());

    const QString seen = m_outside.All().join(u'\n');
    EXPECT_TRUE(seen.contains(Q("GetContacts Error:"))) << "the failing paths were not walked";
    for (const Secret& secret : m_secrets) {
        for (const QString& word : {secret.Name, secret.Number, secret.Text, secret.Password}) {
            EXPECT_FALSE(seen.contains(word)) << word.toStdString();
            EXPECT_FALSE(seen.contains(mdlOutbox::QuoteSQL(word))) << word.toStdString();
        }
    }
}

TEST_F(PlantedSecrets, TheHistoryAndTheMessageLogDoHoldWhatWasSent) {
    m_window.Open();
    SendWell(m_secrets[0]);
    QFile log(Office().Folders.ApplicationFolder() + Q("messagelog.sms"));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(log.readAll().contains(m_secrets[0].Text.toLatin1()));
}
