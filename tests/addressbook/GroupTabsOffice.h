#pragma once

#include "PhonebookOffice.h"

inline const QString Drivers = QStringLiteral("Drivers");
inline const QString Kitchen = QStringLiteral("Kitchen");
inline const QString Favourite = QStringLiteral("Favourite");
inline const QString AddNewGroup = QStringLiteral("Add New Group");

/// Three contacts, of whom the first two are drivers; a group Kitchen without members; the private tab is
/// allowed.
class GroupTabs : public PhonebookOffice {
protected:
    GroupTabs() {
        m_ahern =
            Office.AddContact(QStringLiteral("Ahern"), QStringLiteral("Aoife"), QStringLiteral("+35311"));
        m_byrne =
            Office.AddContact(QStringLiteral("Byrne"), QStringLiteral("Declan"), QStringLiteral("+35322"));
        m_costa =
            Office.AddContact(QStringLiteral("Costa"), QStringLiteral("Joao"), QStringLiteral("+35333"));
        m_drivers = Office.AddGroup(Drivers, {m_ahern, m_byrne});
        m_kitchen = Office.AddGroup(Kitchen);
        Office.PhonebookValues.cfgAllowPrivateGroup = true;
        Start();
    }
    QList<int> MembersOf(qint16 group) {
        QList<int> members;
        const auto rows = Office.MemberRows();
        for (const QVariantMap& row : rows) {
            if (row.value(QStringLiteral("grpID")).toInt() == group) {
                members.append(row.value(QStringLiteral("cntID")).toInt());
            }
        }
        return members;
    }
    QStringList StoredNames() {
        QStringList names;
        const auto rows = Office.GroupRows();
        for (const QVariantMap& row : rows) {
            names.append(row.value(QStringLiteral("grpName")).toString());
        }
        return names;
    }
    void ChooseOn(const QString& caption, const QString& entry) {
        Door.ExpectMenu(entry);
        ClickTab(caption, Qt::RightButton);
    }
    QString KeyOf(qint32 id) { return QStringLiteral("C%1").arg(id); }

    qint32 m_ahern = 0;
    qint32 m_byrne = 0;
    qint32 m_costa = 0;
    qint16 m_drivers = 0;
    qint16 m_kitchen = 0;
};
