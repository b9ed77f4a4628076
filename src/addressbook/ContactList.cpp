#include "addressbook/ContactList.h"

#include "core/Trap.h"
#include "store/engine/Recordset.h"

#include <iterator>
#include <stdexcept>
#include <utility>

void ContactList::Clear() {
    m_byKey.clear();
    m_list.clear();
}

Contact& ContactList::Add(Contact contact) {
    m_list.push_back(std::move(contact));
    return KeepLast();
}

Contact& ContactList::KeepLast() {
    const auto last = std::prev(m_list.end());
    const qsizetype countBefore = m_byKey.size();
    auto& place = m_byKey[last->Key];
    if (m_byKey.size() > countBefore) {
        place = last;
    } else {
        m_list.pop_back();
    }
    return *place;
}

void ContactList::Remove(const Contact& contact) {
    RemoveByKey(contact.Key);
}

void ContactList::RemoveByKey(const QString& key) {
    const auto present = m_byKey.constFind(key);
    if (present == m_byKey.cend()) {
        throw std::out_of_range("no contact under this key");
    }
    const auto contact = *present;
    m_byKey.erase(present);
    m_list.erase(contact);
}

Contact* ContactList::ContactByKey(const QString& key) {
    const auto present = m_byKey.constFind(key);
    return present == m_byKey.cend() ? nullptr : &**present;
}

const Contact* ContactList::ContactByKey(const QString& key) const {
    const auto present = m_byKey.constFind(key);
    return present == m_byKey.cend() ? nullptr : &**present;
}

bool ContactList::Load(engine::Recordset* rows) {
    if (rows == nullptr) {
        return false;
    }
    return Trap([&] {
        const ContactColumns columns(*rows);
        if (rows->RecordCount() > 0) {
            m_byKey.reserve(m_byKey.size() + rows->RecordCount());
        }
        for (; !rows->EndOfFile(); rows->MoveNext()) {
            m_list.emplace_back().Load(*rows, columns);
            KeepLast();
        }
    });
}

void ContactList::Show() const {
    for (const Contact& contact : m_list) {
        [[maybe_unused]] const QString& key = contact.Key;
        [[maybe_unused]] const QString name = contact.DisplayName(0);
    }
}
