#include "addressbook/ContactItems.h"

ListRow ContactItems::RowOf(const Contact& contact, qint32 sortBy) {
    ListRow row;
    row.Key = contact.Key;
    row.Text = contact.DisplayName(sortBy);
    row.ToolTip = contact.NumberToolTip();
    row.SmallIcon = contact.IsConfirmSend ? ConfirmImage : 0;
    return row;
}

int ContactItems::AddContactItem(ListView& list, const Contact& contact, bool select, qint32 sortBy) {
    const int row = list.Rows().Add(RowOf(contact, sortBy));
    if (row >= 0 && select) {
        list.EnsureVisible(row);
        list.SelectKey(contact.Key);
    }
    return row;
}

ListRow ContactItems::EditedRowOf(const Contact& contact, qint32 sortBy) {
    ListRow row = RowOf(contact, sortBy);
    if (contact.IsConfirmSend) {
        row.ToolTip += QStringLiteral(" (requires confirmation) ");
    }
    return row;
}
