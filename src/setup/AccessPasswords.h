#pragma once

#include <QString>

class Clock;
class EventPump;
class ModalDoor;
class QWidget;
struct PhonebookState;

/// The locks on actions of the user interface: passwords of the office, as plain text in the phonebook's
/// Config row. An empty password means that the action is open. A wrong password and a canceled prompt look
/// the same, there is no second try, and nothing is said.
class AccessPasswords {
public:
    /// `owner` is the main window; the prompts stand over it.
    AccessPasswords(const PhonebookState& phonebook, ModalDoor& door, EventPump& pump, const Clock& clock,
                    QWidget& owner);

    /// The last entries that were right: they hold as long as the phonebook holds the same.
    QString AcceptedEditPassword;
    QString AcceptedHiddenPassword;
    /// Once right, these hold for the rest of the run.
    bool PublicHistoryAccepted = false;
    bool ReportAccepted = false;

    /// May the address book be changed, or, with `hidden`, a contact with a private number. Open if the
    /// phonebook cannot be read.
    [[nodiscard]] bool IsPasswordOK(bool hidden);
    /// May the public message history be seen. Shut if the phonebook cannot be read.
    [[nodiscard]] bool PublicHistoryPasswordCheck();
    /// May reports and the address book printout be made. Shut if the phonebook cannot be read.
    [[nodiscard]] bool ReportPasswordCheck();

private:
    /// One check for the two locks that are opened once for the run.
    [[nodiscard]] bool CheckOnce(const QString& column, bool& accepted);

    const PhonebookState& m_phonebook;
    ModalDoor& m_door;
    EventPump& m_pump;
    const Clock& m_clock;
    QWidget& m_owner;
};
