#pragma once

#include "addressbook/ContactList.h"
#include "compose/ComposeArea.h"
#include "compose/ComposeHost.h"
#include "compose/MessageBar.h"
#include "compose/MessageEdit.h"
#include "controls/ListView.h"
#include "core/BusyState.h"
#include "core/CodePage.h"
#include "core/Log.h"
#include "support/RecordingDoor.h"
#include "support/TempOffice.h"
#include "tracking/History.h"
#include "tracking/MessageTracker.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include <memory>
#include <ostream>

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

/// Counts what the composing side asks of the main window.
class FakeComposeHost final : public ComposeHost {
public:
    QStringList Calls;
    QStringList GroupKeys;
    /// Runs within each call.
    std::function<void()> OnCall;

    void ClearContactInfo() override { Note(QStringLiteral("ClearContactInfo")); }
    void ContactListFocus(bool home) override {
        Note(home ? QStringLiteral("ContactListFocus(true)") : QStringLiteral("ContactListFocus(false)"));
    }
    void CreateGroupFromSelection(const ListView& list, bool onlySelected) override {
        GroupKeys = onlySelected ? list.SelectedKeys() : list.Rows().KeyList();
        Note(QStringLiteral("CreateGroupFromSelection"));
    }
    void StartTracking() override { Note(QStringLiteral("StartTracking")); }

private:
    void Note(const QString& call) {
        Calls.append(call);
        if (OnCall) {
            OnCall();
        }
    }
};

/// The composing side in a window of its own, on a real office.
class ComposeBench : public ::testing::Test {
public:
    TempOffice Office;
    ContactList AddressContacts;
    ContactList RecipientContacts;
    CodePage Page{1252};
    mdlHistory History{Office.Files, Office.Folders, Office.Boxes, Page};
    MessageTracker Tracker{Office.OutboxValues, Office.AppSettings, Office.Time};
    BusyState Busy;
    qint32 SortBy = 0;
    FakeComposeHost Host;
    RecordingDoor Door;
    Log AppLog{Office.Files, Office.Time};
    QWidget Window;
    ComposeArea* Area = nullptr;

protected:
    void SetUp() override {
        Area = new ComposeArea(
            ComposeServices{Office.Outbox(), Office.Phonebook(), AddressContacts, RecipientContacts, History,
                            Tracker, Busy, SortBy, Host, Door, Office.Keys, Office.Sound, Office.Pump, AppLog,
                            Office.Time, Office.AppSettings},
            &Window);
        auto* column = new QVBoxLayout(&Window);
        column->addWidget(Area);
        Window.resize(560, 620);
        SetMaxMessageSize(160);
        Office.Sound.Beeps = 0;
    }

    /// Shows the window and makes it active, so that focus and keys work.
    void ShowWindow() {
        Window.show();
        Window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&Window));
    }

    template <typename Control>
    Control& Find(const char* name) {
        return FindIn<Control>(Window, name);
    }
    template <typename Control>
    static Control& FindIn(QWidget& form, const char* name) {
        auto* control = form.findChild<Control*>(QString::fromLatin1(name));
        if (control == nullptr) {
            QStringList names;
            const QList<QWidget*> all = form.findChildren<QWidget*>();
            for (const QWidget* widget : all) {
                names.append(widget->objectName());
            }
            throw std::runtime_error("no control " + std::string(name) + " among " +
                                     names.join(u' ').toStdString());
        }
        return *control;
    }

    MessageEdit& txtMessage() { return Find<MessageEdit>("txtMessage"); }
    MessageBar& pbMsgSize() { return Find<MessageBar>("pbMsgSize"); }
    ListView& lvRecipients() { return Find<ListView>("lvRecipients"); }
    QLineEdit& txtEndWidth() { return Find<QLineEdit>("txtEndWidth"); }
    QComboBox& cbTails() { return Find<QComboBox>("cbTails"); }
    QPushButton& cmdSendNow() { return Find<QPushButton>("cmdSendNow"); }
    QPushButton& cmdSendLater() { return Find<QPushButton>("cmdSendLater"); }
    QString Used() { return Find<QLabel>("lblUsed").text(); }
    QString Parts() { return Find<QLabel>("lblSMSPageCount").text(); }
    QString Left() { return Find<QLabel>("lblCharsRemaining").text(); }
    QString RecipientCaption() { return Find<QGroupBox>("fraRecipients").title(); }

    /// A contact on show in the contact list, not in the phonebook. Its key.
    QString ShowContact(qint16 id, const QString& surname, const QString& firstnames = QStringLiteral("Ann"),
                        bool isConfirmSend = false) {
        Contact contact;
        contact.SetID(id);
        contact.Surname = surname;
        contact.Firstnames = firstnames;
        contact.PhoneNumber = QStringLiteral("+35386%1").arg(id, 7, 10, QLatin1Char('0'));
        contact.IsConfirmSend = isConfirmSend;
        AddressContacts.Add(contact);
        return contact.Key;
    }
    /// The same, and a recipient.
    QString AddRecipient(qint16 id, const QString& surname, bool isConfirmSend = false) {
        QString key = ShowContact(id, surname, QStringLiteral("Ann"), isConfirmSend);
        Area->AddKeysToRecipients({key});
        Area->UpdateStateDisplay();
        return key;
    }
    void SetTails(const QStringList& tails, const QList<int>& defaults = {}) {
        for (int tail = 0; tail < tails.size(); ++tail) {
            Office.ExecuteOnPhonebook(
                QStringLiteral("INSERT INTO MessageTail (mtlText, mtlDefault) VALUES ('%1', %2)")
                    .arg(tails[tail])
                    .arg(defaults.contains(tail) ? 1 : 0));
        }
        Area->InitMessageTails();
    }
    void SetMaxMessageSize(qint16 size) {
        Office.OutboxValues.MaxMessageSize = size;
        Area->InitMessageSize();
        Area->UpdateStateDisplay();
    }
    QStringList RecipientTexts() {
        QStringList texts;
        for (int row = 0; row < lvRecipients().Rows().Count(); ++row) {
            texts.append(lvRecipients().Rows().At(row).Text);
        }
        return texts;
    }
    /// What the log file got since it was switched on.
    void LogToFile() { AppLog.LogToFile(LogPath()); }
    QString LogText() { return QString::fromLatin1(Office.Files.Read(LogPath()).value_or(QByteArray())); }

private:
    [[nodiscard]] QString LogPath() const {
        return Office.Folders.ApplicationFolder() + QStringLiteral("applog.txt");
    }
};
