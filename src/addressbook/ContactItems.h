#pragma once

#include "addressbook/Contact.h"
#include "controls/ListView.h"

/// The one builder of the rows that stand for contacts, in the contact list and in the recipient list.
namespace ContactItems {

/// Image of the lists' image list that marks a contact which must be confirmed before sending.
inline constexpr int ConfirmImage = 1;

/// Key, display name in the form `sortBy`, number as tool tip (" Private Number " where it must not be seen),
/// and the mark of a contact that wants confirmation.
[[nodiscard]] ListRow RowOf(const Contact& contact, qint32 sortBy);

/// Adds a row; with `select` it is also brought into view and selected. The number of the new row, from 0;
/// -1, and nothing changed, when the key is already in the list.
int AddContactItem(ListView& list, const Contact& contact, bool select, qint32 sortBy);

/// The row of a contact that was just edited: as RowOf, and the tool tip of one that wants confirmation says
/// so. The words stay only until the list is built anew.
[[nodiscard]] ListRow EditedRowOf(const Contact& contact, qint32 sortBy);

}  // namespace ContactItems
