#pragma once

#include "store/Phonebook.h"

#include <QList>

#include <functional>
#include <utility>

namespace engine {
class Connection;
}

/// Reports work done and asks whether to go on; false stops it.
using OfficeProgress = std::function<bool(int done, int total)>;

/// An office that exists only to try the program on: contacts with names from thirteen languages
/// (apostrophes, accents, digits, single names, names longer than a message can carry), private numbers,
/// contacts that want a confirmation, notes, user fields; eight groups, three tails, a company. The same plan
/// gives the same office, to the letter.
class SampleOffice {
public:
    /// Numbers of contacts are 16-bit signed, so a phonebook cannot hold more.
    static constexpr int MaxContacts = 32767;
    static constexpr int DefaultContacts = 250;
    /// Contacts whose numbers make the stand-in gateway fail; the last ones of every sample of at least 50
    /// contacts.
    static constexpr int FailingContacts = 3;

    /// What to invent: how many contacts, and the seed of everything that is drawn by chance.
    struct Plan {
        int Contacts = DefaultContacts;  // 0 to MaxContacts
        quint32 Seed = 20260307;
    };

    /// One contact with the groups that it is in, as positions in Groups().
    struct Person {
        ContactFields Fields;
        QList<int> Groups;
    };

    /// Throws std::invalid_argument for a number of contacts that is out of range.
    explicit SampleOffice(const Plan& plan);

    [[nodiscard]] const QList<Person>& People() const& { return m_people; }
    [[nodiscard]] QList<Person> People() && { return std::move(m_people); }
    /// Names of the groups, each at most 10 characters.
    [[nodiscard]] static QStringList Groups();
    /// Message tails; the first one is preselected.
    [[nodiscard]] static QStringList Tails();
    /// What its Config row says: the company's name, and the prefix of its country.
    [[nodiscard]] static QString Company();
    [[nodiscard]] static QString NumberPrefix();
    /// Captions of the three user fields.
    [[nodiscard]] static QStringList UserFieldCaptions();

    /// Fills the empty phonebook behind an open connection, in one transaction: all of it stands there
    /// afterwards, or nothing. Throws engine::Failure; false if `progress` stopped it. 30,000 contacts take a
    /// second or two.
    [[nodiscard]] bool WriteTo(engine::Connection& phonebook, const OfficeProgress& progress = {}) const;

private:
    QList<Person> m_people;
};
