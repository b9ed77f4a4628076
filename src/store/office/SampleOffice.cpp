#include "store/office/SampleOffice.h"

#include "store/Outbox.h"
#include "store/engine/Connection.h"
#include "store/office/SampleNames.h"
#include "store/office/SampleNumbers.h"

#include <QRandomGenerator>

#include <memory>
#include <stdexcept>

namespace {

using Person = SampleOffice::Person;
using mdlOutbox::QuoteSQL;

constexpr int OnCallGroup = 7;

/// What the office's own language weighs against each of the others.
constexpr int OwnLanguageShare = 6;

/// Every how many contacts; the first ones that come with a sample bring one of each in any case.
constexpr int PrivateEvery = 19;
constexpr int ConfirmEvery = 23;
constexpr int NoteEvery = 6;
constexpr int OnCallEvery = 15;

struct Fixed {
    QStringView Surname;
    QStringView Firstnames;
    bool ConfirmSend;
    bool IsPrivate;
    QStringView Note;
};

/// Names that have taught programs manners. The third column: asks before sending; the fourth: private
/// number.
constexpr Fixed FixedPeople[] = {
    {u"O'Neill", u"Aoife", false, false, u"Office manager"},
    {u"2nd Floor Desk", u"", false, false, u"Shared phone, answered 8:00 to 18:00"},
    {u"Lyne", u"Éamon", true, true, u"Managing director"},
    {u"Ångström", u"Åsa", false, false, u""},
    {u"Reception", u"", false, false, u"Front door\r\nRing twice"},
    {u"", u"Sibéal", false, false, u"Freelance translator"},
    {u"von und zu Hohenstein-Waldburg", u"Maximiliane-Alexandra", false, false,
     u"The name is longer than a message keeps"},
    {u"24h Security", u"Night", true, false, u"Texts wake somebody up"},
    {u"Łukasiewicz", u"Świętosława", false, true, u""},
    {u"van 't Hoff", u"Daniël", false, false, u""},
};

/// The last of a sample: their numbers end in 004, 006 and 007.
constexpr Fixed FailingPeople[] = {
    {u"Testline", u"Not Sent", false, false, u"The stand-in gateway cannot send to this number"},
    {u"Testline", u"Unconfirmed", false, false,
     u"The stand-in gateway never hears of a delivery to this number"},
    {u"Testline", u"Undelivered", false, false, u"The stand-in gateway reports no delivery to this number"},
};
constexpr QStringView FailingEnds[] = {u"004", u"006", u"007"};
constexpr int SmallestWithFailing = 50;

template <typename Items>
const auto& PickFrom(QRandomGenerator& random, const Items& items) {
    return items[static_cast<std::size_t>(random.bounded(static_cast<quint32>(std::size(items))))];
}

bool OneIn(QRandomGenerator& random, int every) {
    return random.bounded(every) == 0;
}

Person FromFixed(const Fixed& fixed, const QString& phone) {
    Person person;
    person.Fields.Surname = fixed.Surname.toString();
    person.Fields.Firstnames = fixed.Firstnames.toString();
    person.Fields.Phone = phone;
    person.Fields.ConfirmSend = fixed.ConfirmSend;
    person.Fields.IsPrivate = fixed.IsPrivate;
    person.Fields.Note = fixed.Note.toString();
    return person;
}

const SampleLanguage& PickLanguage(QRandomGenerator& random) {
    const auto languages = SampleNames::Languages();
    const int last = static_cast<int>(languages.size()) - 1;
    return languages[static_cast<std::size_t>(
        std::max(0, random.bounded(last + OwnLanguageShare) + 1 - OwnLanguageShare))];
}

Person Invent(QRandomGenerator& random, SampleNumbers& numbers) {
    const SampleLanguage& language = PickLanguage(random);
    Person person;
    person.Fields.Firstnames = PickFrom(random, language.Firstnames).toString();
    person.Fields.Surname = PickFrom(random, language.Surnames).toString();
    person.Fields.Phone = numbers.Next(language.Name);
    person.Fields.ConfirmSend = OneIn(random, ConfirmEvery);
    person.Fields.IsPrivate = OneIn(random, PrivateEvery);
    if (OneIn(random, NoteEvery)) {
        person.Fields.Note = PickFrom(random, SampleNames::Notes()).toString();
    }
    return person;
}

/// Department, room and badge, and the groups that follow from them.
void GiveDesk(QRandomGenerator& random, Person& person, int number) {
    const auto departments = SampleNames::Departments();
    const int department = random.bounded(static_cast<int>(departments.size()));
    const int floor = random.bounded(5);
    person.Fields.UserFields = {
        departments[static_cast<std::size_t>(department)].toString(),
        QStringLiteral("%1.%2").arg(floor).arg(random.bounded(1, 30), 2, 10, QChar(u'0')),
        QStringLiteral("B%1").arg(number, 5, 10, QChar(u'0'))};
    if (department < OnCallGroup && random.bounded(10) < 7) {
        person.Groups.append(department);
    }
    if (OneIn(random, OnCallEvery)) {
        person.Groups.append(OnCallGroup);
    }
}

QString Quoted(const QString& text) {
    return u'\'' + QuoteSQL(text) + u'\'';
}
QString Truth(bool value) {
    return value ? QStringLiteral("TRUE") : QStringLiteral("FALSE");
}

QString InsertContact(const ContactFields& fields) {
    return QStringLiteral(
               "INSERT INTO Contact (cntSurname, cntFirstnames, cntPhone, cntConfirmSend, cntPrivateNumber, "
               "cntAlphaSurname, cntAlphaFirstNames, cntNote, cntUserField1, cntUserField2, cntUserField3) "
               "VALUES (") +
           QStringList{Quoted(fields.Surname),
                       Quoted(fields.Firstnames),
                       Quoted(fields.Phone),
                       Truth(fields.ConfirmSend),
                       Truth(fields.IsPrivate),
                       Quoted(mdlPhonebook::GetAlphaKey(fields.Surname)),
                       Quoted(mdlPhonebook::GetAlphaKey(fields.Firstnames)),
                       Quoted(fields.Note),
                       Quoted(fields.UserFields[0]),
                       Quoted(fields.UserFields[1]),
                       Quoted(fields.UserFields[2])}
               .join(u',') +
           u')';
}

/// One transaction; rolled back unless Commit was reached.
class Transaction {
public:
    explicit Transaction(engine::Connection& connection) : m_connection(connection) {
        m_connection.BeginTrans();
    }
    ~Transaction() {
        if (!m_isDone) {
            try {
                m_connection.RollbackTrans();
            } catch (...) {  // nothing is left to undo with
            }
        }
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void Commit() {
        m_connection.CommitTrans();
        m_isDone = true;
    }

private:
    engine::Connection& m_connection;
    bool m_isDone = false;
};

/// Inserts one row and returns the number that it got.
qint32 Insert(engine::Connection& connection, const QString& sql) {
    connection.Execute(sql, nullptr);
    const auto rows = connection.Execute(QStringLiteral("SELECT @@IDENTITY AS ID"), nullptr);
    return rows->Value(u"ID").toInt();
}

QList<qint32> WriteGroups(engine::Connection& phonebook) {
    QList<qint32> ids;
    for (const QString& name : SampleOffice::Groups()) {
        ids.append(Insert(
            phonebook, QStringLiteral("INSERT INTO ContactGroup (grpName) VALUES (%1)").arg(Quoted(name))));
    }
    return ids;
}

void WriteOfficeRows(engine::Connection& phonebook) {
    bool isDefault = true;
    for (const QString& tail : SampleOffice::Tails()) {
        phonebook.Execute(QStringLiteral("INSERT INTO MessageTail (mtlText, mtlDefault) VALUES (%1,%2)")
                              .arg(Quoted(tail), Truth(isDefault)),
                          nullptr);
        isDefault = false;
    }
    const QStringList captions = SampleOffice::UserFieldCaptions();
    for (int i = 0; i < captions.size(); ++i) {
        phonebook.Execute(QStringLiteral("UPDATE UserFields SET hdrFieldCaption = %1 WHERE hdrFieldID = %2")
                              .arg(Quoted(captions[i]))
                              .arg(i + 1),
                          nullptr);
    }
    phonebook.Execute(QStringLiteral("UPDATE Config SET cfgCompany = %1, cfgNumberPrefix = %2, "
                                     "cfgAllowPrivateGroup = TRUE, cfgRunWizard = FALSE")
                          .arg(Quoted(SampleOffice::Company()), Quoted(SampleOffice::NumberPrefix())),
                      nullptr);
}

QStringList ToTexts(std::span<const QStringView> views) {
    QStringList texts;
    for (const QStringView view : views) {
        texts.append(view.toString());
    }
    return texts;
}

}  // namespace

SampleOffice::SampleOffice(const Plan& plan) {
    if (plan.Contacts < 0 || plan.Contacts > MaxContacts) {
        throw std::invalid_argument("a sample office has 0 to 32767 contacts");
    }
    QRandomGenerator random(plan.Seed);
    SampleNumbers numbers;
    const int failing = plan.Contacts >= SmallestWithFailing ? FailingContacts : 0;
    m_people.reserve(plan.Contacts);
    while (m_people.size() < plan.Contacts - failing) {
        const auto position = static_cast<std::size_t>(m_people.size());
        Person person = position < std::size(FixedPeople)
                            ? FromFixed(FixedPeople[position], numbers.Next(u"Irish"))
                            : Invent(random, numbers);
        GiveDesk(random, person, static_cast<int>(position) + 1);
        m_people.append(person);
    }
    for (int i = 0; i < failing; ++i) {
        m_people.append(FromFixed(FailingPeople[i], SampleNumbers::EndingIn(FailingEnds[i])));
    }
}

QStringList SampleOffice::Groups() {
    return ToTexts(SampleNames::Groups());
}

QStringList SampleOffice::Tails() {
    return ToTexts(SampleNames::Tails());
}

QString SampleOffice::Company() {
    return QStringLiteral("Corrib & Lyne");
}

QString SampleOffice::NumberPrefix() {
    return QStringLiteral("+353");
}

QStringList SampleOffice::UserFieldCaptions() {
    return {QStringLiteral("Department"), QStringLiteral("Room"), QStringLiteral("Badge")};
}

bool SampleOffice::WriteTo(engine::Connection& phonebook, const OfficeProgress& progress) const {
    Transaction transaction(phonebook);
    const QList<qint32> groups = WriteGroups(phonebook);
    WriteOfficeRows(phonebook);
    const int total = static_cast<int>(m_people.size());
    for (int i = 0; i < total; ++i) {
        if (progress && !progress(i, total)) {
            return false;
        }
        const qint32 contact = Insert(phonebook, InsertContact(m_people[i].Fields));
        for (const int group : m_people[i].Groups) {
            phonebook.Execute(QStringLiteral("INSERT INTO GroupMember (grpID, cntID) VALUES (%1,%2)")
                                  .arg(groups[group])
                                  .arg(contact),
                              nullptr);
        }
    }
    if (progress && !progress(total, total)) {
        return false;
    }
    transaction.Commit();
    return true;
}
