#pragma once

#include "store/DB.h"

#include <QDateTime>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

class MessageBoxes;
class Settings;

/// What is global about the outbox.
struct OutboxState {
    /// Exists from the first OpenOutbox onward. Not kept open: each user opens, works and closes.
    std::unique_ptr<DB> OutboxDB;
    /// The longest full message in characters: 160 until the System record was read, at least 160 behind
    /// that, and 0 where the table System has no row.
    qint16 MaxMessageSize = 160;
    /// Replaced while a statement of theirs was still waiting for its next attempt; closed, and kept only so
    /// that the statement finds its way out.
    std::vector<std::unique_ptr<DB>> Replaced;
};

/// What the outbox operations need.
struct OutboxServices {
    OutboxState& State;
    Settings& AppSettings;
    MessageBoxes& Boxes;
    DBServices Database;
};

/// One row of the table Message as it is submitted.
struct OutgoingMessage {
    QString Recipient;  // display name, cut to 30 characters
    QString Address;    // phone number, cut to 30
    QString Text;       // merged body, signature and tail, cut to MaxMessageSize
    QDateTime SendTime;
    QString Station;  // cut to 32
    QString Signature;
    qint16 BodyTextSize = 0;  // characters at the start of Text that are the body
};

/// The operations on the outbox that live in one place. The client meets the gateway in the table Message: it
/// inserts one row per recipient; the gateway takes the rows that are due and writes status, delivery and
/// cost back.
namespace mdlOutbox {

/// Doubles each ' so that a text can stand between single quotes.
[[nodiscard]] QString QuoteSQL(const QString& text);

/// A date as every statement writes it, between # signs of its own: `pattern` is one of Dates::Format, month
/// names are English whatever the user's language. Three letters of "juin" and "juillet" are the same, and a
/// message must not come due in the wrong month.
[[nodiscard]] QString QuoteDate(const QDateTime& value,
                                const QString& pattern = QStringLiteral("dd/mmm/yyyy hh:nn:ss"));

/// False while a message is still on its way or could not be sent yet (0, 1, 3, 4); true for every other
/// status.
[[nodiscard]] bool IsMessageFinal(qint32 status);

/// The file that a setting names: itself if it contains ".mdb", otherwise "smsmessages.mdb" in that folder;
/// empty for empty.
[[nodiscard]] QString OutboxFile(const QString& setting);

/// Makes a new OutboxDB for the configured file and reads the System record, twice, with a restore of the
/// mapped drive in between: a drive that was away is back for the second pass if it comes within a few
/// seconds, which this waits for. True if either pass succeeded. Leaves the database closed and shows
/// nothing.
bool OpenOutbox(const OutboxServices& services);

/// Reads MaxMessageSize from the table System while OutboxDB is open; 160 if that fails.
void ReadSystemRecord(const OutboxServices& services);

/// The INSERT of one row with these seven columns, texts quoted and not cut, the date by QuoteDate; status
/// and the rest are the file's defaults.
[[nodiscard]] QString BuildInsertMessageSQL(const OutgoingMessage& message);

/// Cuts, inserts and reads the identity back; OutboxDB is open with mode 19. The new msgID, 0 on failure (a
/// box has told why). An insert that met a lock on every attempt writes no row and shows no box: it returns
/// the msgID of this connection's insert before, 0 if there was none. Throws OverflowError for a msgID beyond
/// 32767: the row is written by then.
[[nodiscard]] qint16 InsertMessage(const OutboxServices& services, OutgoingMessage message);

/// Cancels a message that the gateway has not taken yet. True if exactly this row was canceled; nothing if
/// the outbox could not be opened, which reads as false. Uses an open connection, or opens and closes one.
[[nodiscard]] std::optional<bool> CancelMessage(const OutboxServices& services, qint32 id);

}  // namespace mdlOutbox
