#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

class Clock;
class ContactList;
class MessageTracker;
class mdlHistory;
class MessageBoxes;
struct OutboxServices;

/// What the dispatch loop reads from the composition on screen and changes in it.
class Composition {
public:
    virtual ~Composition() = default;
    /// Keys of the rows of lvRecipients, in list order.
    [[nodiscard]] virtual QStringList RecipientKeys() const = 0;
    /// The text of txtMessage, untrimmed.
    [[nodiscard]] virtual QString MessageText() const = 0;
    /// The text of txtEndWidth, untrimmed.
    [[nodiscard]] virtual QString SignatureText() const = 0;
    /// ": " signature " - " tail, or " - " tail: what is put behind every message.
    [[nodiscard]] virtual QString GetTailText() const = 0;
    /// Takes these rows out of lvRecipients, in one batch.
    virtual void RemoveRecipientRows(const QStringList& keys) = 0;
    /// Back to the empty composition.
    virtual void Reset() = 0;
};

/// What the dispatch loop needs beside the composition.
struct DispatchServices {
    const OutboxServices& Outbox;
    ContactList& RecipientContacts;
    mdlHistory& History;
    MessageTracker& Tracker;
    Clock& Time;
};

/// Turns a composition into rows of the outbox, one per recipient.
namespace Dispatch {

/// The mark of a place that the user still has to fill in; blocks sending.
inline const QString FillInMark = QStringLiteral("@?");

/// COMPUTERNAME, a backslash, USERNAME in upper case; an unset variable gives an empty piece.
[[nodiscard]] QString GetStation();

/// Replaces @SN, @FN, @TD, @MN in this order, every occurrence, case-sensitive.
[[nodiscard]] QString UpdateFields(const QString& text, const QString& surname, const QString& firstnames,
                                   const QDateTime& date);

/// Writes a row for each recipient and tells history and tracker of each row written. With `removeSent` the
/// recipients that were written leave the list, and a list that becomes empty resets the composition. A
/// recipient whose merged text is longer than MaxMessageSize is passed over and stays. Shows a box if the
/// outbox cannot be opened. Has no trap of its own: a failure inside (OverflowError, a contact that cannot be
/// found) leaves the loop where it stands.
void DoSend(const DispatchServices& services, Composition& composition, const QDateTime& sendTime,
            bool removeSent);

}  // namespace Dispatch
