#pragma once

#include "store/Phonebook.h"
#include "support/TempOffice.h"

#include <gtest/gtest.h>

/// The operations of the phonebook on a file of its own.
class PhonebookFileTest : public ::testing::Test {
protected:
    TempOffice Office;
    PhonebookState& State = Office.PhonebookValues;

    qint32 Add(const char16_t* surname, const char16_t* firstnames) {
        return Office.AddContact(QString::fromUtf16(surname), QString::fromUtf16(firstnames),
                                 QStringLiteral("+353871234567"));
    }
    /// The column of all rows of a set, which is there.
    static QStringList Column(const std::unique_ptr<engine::Recordset>& rows, QStringView name) {
        QStringList values;
        EXPECT_NE(rows, nullptr);
        for (; rows != nullptr && !rows->EndOfFile(); rows->MoveNext()) {
            values.append(rows->Value(name).toString());
        }
        return values;
    }
    [[nodiscard]] QStringList Surnames(const char16_t* letter, qint32 sort = 0) const {
        return Column(mdlPhonebook::GetContacts(State, QString::fromUtf16(letter), sort), u"cntSurname");
    }
    [[nodiscard]] QStringList Groups() const { return Column(mdlPhonebook::GetGroups(State), u"grpName"); }
    /// Both alpha keys of every contact, as the file has them.
    [[nodiscard]] QStringList AlphaKeys() {
        QStringList keys;
        for (const QVariantMap& row : Office.ContactRows()) {
            keys.append(row.value(QStringLiteral("cntAlphaSurname")).toString() +
                        row.value(QStringLiteral("cntAlphaFirstNames")).toString());
        }
        return keys;
    }
    [[nodiscard]] static QStringList Names(std::initializer_list<const char16_t*> names) {
        QStringList list;
        for (const char16_t* name : names) {
            list.append(QString::fromUtf16(name));
        }
        return list;
    }
    void Reopen() { EXPECT_TRUE(mdlPhonebook::OpenPhonebook(Office.Phonebook())); }
};
