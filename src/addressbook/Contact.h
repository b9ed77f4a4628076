#pragma once

#include <QString>

#include <array>

namespace engine {
class Recordset;
}

/// The keys by which every list, tab and drag names a contact or a group: one letter and a decimal number.
/// "C12" a contact of the address book, "P3" the third private contact, "G7" a group; "G-1" the tab "*",
/// "G-2" favourites, "G-3" private.
namespace Keys {
inline constexpr qint16 EveryoneTab = -1;
inline constexpr qint16 FavouritesTab = -2;
inline constexpr qint16 PrivateTab = -3;

/// "C" and the number of the row (cntID).
[[nodiscard]] QString ContactKey(qint32 id);
/// "P" and the place in mycontacts.sms, counted from 1.
[[nodiscard]] QString PrivateKey(qint32 line);
/// "G" and the number of the group (grpID), or one of the three numbers above.
[[nodiscard]] QString GroupTag(qint32 id);
/// Everything after the first character as a signed 16-bit value. Throws OverflowError.
[[nodiscard]] qint16 Number(const QString& key);
/// Whether the key begins with "C", or with "P"; what follows is not looked at.
[[nodiscard]] bool IsContact(const QString& key);
[[nodiscard]] bool IsPrivate(const QString& key);
}  // namespace Keys

/// Where the fields of a contact stand in a recordset, looked up once for all of its rows; -1 for a missing
/// column.
struct ContactColumns {
    explicit ContactColumns(const engine::Recordset& rows);

    int ID;
    int Surname;
    int Firstnames;
    int Phone;
    int ConfirmSend;
    int PrivateNumber;
    int Note;
    std::array<int, 3> UserFields;
};

/// One address book entry in memory, whether it came from a row of the table Contact, from favourites.sms or
/// from mycontacts.sms. A value: a copy in another list lives its own life.
class Contact {
public:
    /// cntID of the address book; 0 until it is set.
    [[nodiscard]] qint16 ID() const { return m_id; }
    /// Also sets Key to "C" and the number; a caller that wants another key writes Key afterwards.
    void SetID(qint16 id);

    QString Key;
    QString Surname;
    QString Firstnames;
    QString PhoneNumber;
    QString Note;
    /// The user is asked before anything is sent to this contact.
    bool IsConfirmSend = false;
    /// The number must not be shown; it still goes to the gateway.
    bool IsPrivate = false;

    /// `index` 0 to 2, not checked.
    [[nodiscard]] const QString& GetUserData(int index) const {
        return m_userData[static_cast<size_t>(index)];
    }
    /// The same for writing.
    void SetUserData(int index, const QString& value) { m_userData[static_cast<size_t>(index)] = value; }

    /// Reads the current row, passing over each field that fails. False if ID, names, number, flags or note
    /// failed; missing user fields do not count (a phonebook of an earlier version has none).
    bool Load(const engine::Recordset& row);
    /// The same for one of many rows of a recordset.
    bool Load(const engine::Recordset& row, const ContactColumns& columns);

    /// Mode 1: first names, blank, surname. Any other: surname, ", ", first names; first names alone without
    /// a surname.
    [[nodiscard]] QString DisplayName(qint32 mode) const;
    /// " Private Number " or the number between blanks: the tool tip of a list row.
    [[nodiscard]] QString NumberToolTip() const;

private:
    qint16 m_id = 0;
    std::array<QString, 3> m_userData;
};
