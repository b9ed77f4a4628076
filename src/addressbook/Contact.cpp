#include "addressbook/Contact.h"

#include "core/Numbers.h"
#include "core/TextRules.h"
#include "core/Trap.h"
#include "store/engine/Recordset.h"

#include <charconv>
#include <stdexcept>

namespace {

/// In one piece: a list of tens of thousands makes a key for each row.
QString KeyOf(char letter, qint32 number) {
    std::array<char, 12> text{letter};
    const auto end = std::to_chars(text.data() + 1, text.data() + text.size(), number).ptr;
    return QString::fromLatin1(text.data(), end - text.data());
}

}  // namespace

namespace Keys {

QString ContactKey(qint32 id) {
    return KeyOf('C', id);
}

QString PrivateKey(qint32 line) {
    return KeyOf('P', line);
}

QString GroupTag(qint32 id) {
    return KeyOf('G', id);
}

qint16 Number(const QString& key) {
    return Numbers::ToInt16(key.mid(1));
}

bool IsContact(const QString& key) {
    return key.startsWith(u'C');
}

bool IsPrivate(const QString& key) {
    return key.startsWith(u'P');
}

}  // namespace Keys

namespace {

/// False for a missing column or a failing read, without the price of an exception for the former: a
/// phonebook of an earlier version misses three columns in every one of its rows.
template <typename Use>
bool WithValue(const engine::Recordset& row, int column, Use&& use) {
    return column >= 0 && Trap([&] { use(row.Value(column)); });
}

bool ReadText(const engine::Recordset& row, int column, QString& target) {
    return column >= 0 && Trap([&] { target = Text::Trim(row.Text(column)); });
}

bool ReadFlag(const engine::Recordset& row, int column, bool& target) {
    return WithValue(row, column, [&](const QVariant& value) {
        if (value.isNull()) {
            throw std::invalid_argument("a null is neither true nor false");
        }
        target = value.toBool();
    });
}

}  // namespace

ContactColumns::ContactColumns(const engine::Recordset& rows)
    : ID(rows.FieldIndex(u"cntID")),
      Surname(rows.FieldIndex(u"cntSurname")),
      Firstnames(rows.FieldIndex(u"cntFirstnames")),
      Phone(rows.FieldIndex(u"cntPhone")),
      ConfirmSend(rows.FieldIndex(u"cntConfirmSend")),
      PrivateNumber(rows.FieldIndex(u"cntPrivateNumber")),
      Note(rows.FieldIndex(u"cntNote")),
      UserFields{rows.FieldIndex(u"cntUserField1"), rows.FieldIndex(u"cntUserField2"),
                 rows.FieldIndex(u"cntUserField3")} {}

void Contact::SetID(qint16 id) {
    m_id = id;
    Key = Keys::ContactKey(id);
}

bool Contact::Load(const engine::Recordset& row) {
    bool isLoaded = false;
    Trap([&] { isLoaded = Load(row, ContactColumns(row)); });
    return isLoaded;
}

bool Contact::Load(const engine::Recordset& row, const ContactColumns& columns) {
    // Every step runs, whatever became of the ones before it.
    bool isLoaded =
        WithValue(row, columns.ID, [this](const QVariant& value) { SetID(Numbers::ToInt16(value)); });
    isLoaded &= ReadText(row, columns.Surname, Surname);
    isLoaded &= ReadText(row, columns.Firstnames, Firstnames);
    isLoaded &= ReadText(row, columns.Phone, PhoneNumber);
    isLoaded &= ReadFlag(row, columns.ConfirmSend, IsConfirmSend);
    isLoaded &= ReadFlag(row, columns.PrivateNumber, IsPrivate);
    isLoaded &= ReadText(row, columns.Note, Note);
    for (size_t i = 0; i < m_userData.size(); ++i) {
        ReadText(row, columns.UserFields[i], m_userData[i]);
    }
    return isLoaded;
}

QString Contact::DisplayName(qint32 mode) const {
    if (mode == 1) {
        return Text::Trim(Firstnames + u' ' + Surname);
    }
    return Surname.isEmpty() ? Firstnames : Surname + QStringLiteral(", ") + Firstnames;
}

QString Contact::NumberToolTip() const {
    return IsPrivate ? QStringLiteral(" Private Number ") : u' ' + PhoneNumber + u' ';
}
