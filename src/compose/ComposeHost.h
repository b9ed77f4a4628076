#pragma once

class ListView;

/// What the composing side asks of the rest of the main window.
class ComposeHost {
public:
    virtual ~ComposeHost() = default;
    /// Clears the contact detail panel, as Reset does.
    virtual void ClearContactInfo() = 0;
    /// Moves the focus to the contact list; with `home` its first row takes the cursor.
    virtual void ContactListFocus(bool home) = 0;
    /// Asks for a name and makes a group of the rows of a list, or of the selected ones alone (private
    /// contacts are left out).
    virtual void CreateGroupFromSelection(const ListView& list, bool onlySelected) = 0;
    /// Switches the poll of the delivery tracker on (tmrCheckMsgStatus).
    virtual void StartTracking() = 0;
};
