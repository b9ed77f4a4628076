#pragma once

#include "PhonebookOffice.h"

inline const QString Drivers = QStringLiteral("Drivers");

/// Four contacts, the fourth private and to be confirmed; a group Drivers with the second and the fourth.
class ContactListView : public PhonebookOffice {
protected:
    ContactListView() {
        Add(u"Ahern", u"Aoife", u"+35311");
        Add(u"Byrne", u"Declan", u"+35322");
        Add(u"Costa", u"Joao", u"+35333");
        ContactFields fields;
        fields.Surname = QStringLiteral("Doyle");
        fields.Firstnames = QStringLiteral("Zoe");
        fields.Phone = QStringLiteral("+35344");
        fields.ConfirmSend = true;
        fields.IsPrivate = true;
        fields.Note = QStringLiteral("night shift");
        fields.UserFields = {QStringLiteral("Transport"), QStringLiteral("2.14"), QStringLiteral("4471")};
        m_ids.append(Office.AddContact(fields));
        m_drivers = Office.AddGroup(Drivers, {m_ids[1], m_ids[3]});
    }
    void Add(QStringView surname, QStringView firstnames, QStringView phone) {
        m_ids.append(Office.AddContact(surname.toString(), firstnames.toString(), phone.toString()));
    }
    QString KeyOf(int index) { return QStringLiteral("C%1").arg(m_ids[index]); }
    QStringList Details() {
        return {LabelText(u"lblPhone"), LabelText(u"lblNote"), LabelText(u"UserData0"),
                LabelText(u"UserData1"), LabelText(u"UserData2")};
    }
    QStringList KeysOfAddressContacts() {
        QStringList keys;
        for (const Contact& contact : AddressContacts.list()) {
            keys.append(contact.Key);
        }
        return keys;
    }
    void ChooseOnList(int row, const QString& entry) {
        Door.ExpectMenu(entry);
        ClickRow(row, Qt::RightButton);
    }

    QList<qint32> m_ids;
    qint16 m_drivers = 0;
};
