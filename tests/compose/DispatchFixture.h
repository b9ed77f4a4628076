#pragma once

#include "addressbook/ContactList.h"
#include "compose/Dispatch.h"
#include "compose/MessageSize.h"
#include "core/CodePage.h"
#include "support/TempOffice.h"
#include "tracking/History.h"
#include "tracking/MessageTracker.h"

#include <gtest/gtest.h>

#include <functional>

/// The composition of a test: what stands in the boxes and in the list.
class TestComposition final : public Composition {
public:
    QStringList Keys;
    QString Message;
    QString Signature;
    QString Tail = QStringLiteral("Reception");
    QList<QStringList> Removed;
    int Resets = 0;
    /// Runs in front of every change.
    std::function<void()> OnChange = [] {};

    [[nodiscard]] QStringList RecipientKeys() const override { return Keys; }
    [[nodiscard]] QString MessageText() const override { return Message; }
    [[nodiscard]] QString SignatureText() const override { return Signature; }
    [[nodiscard]] QString GetTailText() const override { return BuildTailText(Signature, Tail); }
    void RemoveRecipientRows(const QStringList& keys) override {
        OnChange();
        Removed.append(keys);
        for (const QString& key : keys) {
            Keys.removeOne(key);
        }
    }
    void Reset() override {
        OnChange();
        ++Resets;
    }
};

/// An office with a send in it: real outbox, real history file.
class DispatchFixture : public ::testing::Test {
public:
    TempOffice Office;
    CodePage Page{1252};
    ContactList Recipients;
    mdlHistory History{Office.Files, Office.Folders, Office.Boxes, Page};
    MessageTracker Tracker{Office.OutboxValues, Office.AppSettings, Office.Time};
    TestComposition Sheet;
    DispatchServices Services{Office.Outbox(), Recipients, History, Tracker, Office.Time};

    DispatchFixture() {
        qputenv("COMPUTERNAME", "DESK7");
        qputenv("USERNAME", "aoife");
        Office.OutboxValues.MaxMessageSize = 160;
        Sheet.Message = QStringLiteral("Hello");
    }

    Contact& AddRecipient(const QString& surname, const QString& firstnames, const QString& phone) {
        Contact contact;
        contact.SetID(static_cast<qint16>(Recipients.Count() + 1));
        contact.Surname = surname;
        contact.Firstnames = firstnames;
        contact.PhoneNumber = phone;
        Sheet.Keys.append(contact.Key);
        return Recipients.Add(contact);
    }
    void AddRecipients(int count) {
        for (int i = 1; i <= count; ++i) {
            AddRecipient(QStringLiteral("S%1").arg(i), QStringLiteral("F%1").arg(i),
                         QStringLiteral("+353%1").arg(i));
        }
    }
    void Send(bool removeSent = true) { Dispatch::DoSend(Services, Sheet, Office.Time.Time, removeSent); }
    [[nodiscard]] QStringList Column(const QString& name) {
        QStringList values;
        for (const QVariantMap& row : Office.MessageRows()) {
            values.append(row.value(name).toString());
        }
        return values;
    }
    [[nodiscard]] QList<qint32> HistoryIDs() {
        QList<qint32> ids;
        for (const HistoryRecord& record : History.ReadHistory()) {
            ids.append(record.MessageID);
        }
        return ids;
    }
    [[nodiscard]] static BoxRequest Critical(const QString& text) {
        return {QStringLiteral("Larkspan Messenger"), text, BoxIcon::Critical, BoxButtons::Ok};
    }
};
