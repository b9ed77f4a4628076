#pragma once

#include "store/FakeOffice.h"
#include "store/Phonebook.h"

#include <gtest/gtest.h>

/// A phonebook on an engine that fails on demand.
class PhonebookTest : public ::testing::Test {
protected:
    FakeOffice Office;
    PhonebookServices Services = Office.Phonebook();
    PhonebookState& State = Office.PhonebookValues;

    void ServeConfig(const QStringList& fields, const QVariantList& values) {
        Office.Engine.Serve(QStringLiteral("FROM Config"), {fields, {values}});
    }
    void Open() {
        Office.SetContacts(QStringLiteral("X:\\sms\\smscontacts.mdb"));
        ASSERT_TRUE(mdlPhonebook::OpenPhonebook(Services));
        Office.Engine.Statements.clear();
        Office.Engine.Cursors.clear();
        Office.Engine.Locks.clear();
    }
    void ServeIdentity(const QVariant& id) {
        Office.Engine.Serve(QStringLiteral("@@IDENTITY"), {{QStringLiteral("ID")}, {{id}}});
    }
    [[nodiscard]] QString Statement() const { return Office.Engine.Statements.value(0); }
    [[nodiscard]] static ContactFields AnyContact() {
        ContactFields fields;
        fields.Surname = QStringLiteral("O'Neill");
        fields.Firstnames = QStringLiteral("eoin");
        fields.Phone = QStringLiteral("+353861112222");
        fields.ConfirmSend = true;
        fields.IsPrivate = false;
        fields.Note = QStringLiteral("2nd floor");
        fields.UserFields = {QStringLiteral("a'b"), QString(), QStringLiteral("c")};
        return fields;
    }
    [[nodiscard]] static BoxRequest Box(const QString& text, BoxIcon icon) {
        return {QStringLiteral("Larkspan Messenger"), text, icon, BoxButtons::Ok};
    }
};
