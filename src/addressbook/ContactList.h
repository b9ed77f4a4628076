#pragma once

#include "addressbook/Contact.h"

#include <QHash>

#include <list>
#include <memory_resource>

/// A keyed collection of contacts in insertion order; a key occurs at most once. Adding, removing and looking
/// up take constant time, so that batches stay linear. Pointers to contacts stay valid until the contact is
/// removed.
class ContactList {
public:
    ContactList() = default;
    ContactList(const ContactList&) = delete;
    ContactList& operator=(const ContactList&) = delete;

    [[nodiscard]] int Count() const { return static_cast<int>(m_list.size()); }
    /// The collection itself, for iteration in order.
    [[nodiscard]] const std::pmr::list<Contact>& list() const { return m_list; }
    void Clear();
    /// A key that is already there leaves the list as it was. Returns the contact that now stands under the
    /// key.
    Contact& Add(Contact contact);
    /// Both throw std::out_of_range for an unknown key.
    void Remove(const Contact& contact);
    void RemoveByKey(const QString& key);
    /// Null for an unknown key: the membership test.
    [[nodiscard]] Contact* ContactByKey(const QString& key);
    [[nodiscard]] const Contact* ContactByKey(const QString& key) const;
    /// Adds a contact for each remaining row, whatever became of its fields; the recordset is left at its end
    /// and open. False without a recordset, or if it fails on the way: the rows before that are in the list.
    /// Never throws.
    bool Load(engine::Recordset* rows);
    /// Walks the list and reads key and name of each contact: a hook for a debugger, without any output.
    void Show() const;

private:
    /// Keeps the last contact of the list under its key, or drops it when the key is taken; the contact that
    /// now stands under the key.
    Contact& KeepLast();

    std::pmr::unsynchronized_pool_resource m_memory;  // a list of tens of thousands comes and goes with a tab
    std::pmr::list<Contact> m_list{&m_memory};
    QHash<QString, std::pmr::list<Contact>::iterator> m_byKey;
};
