#pragma once

#include <QDateTime>
#include <QString>

/// The status columns of one row of the table Message, nulls read as 0, an invalid date and the empty text.
struct MessageState {
    qint32 Status = 0;
    qint32 DeliveryStatus = 0;
    QDateTime DeliveryTime;
    QString ErrorReason;
};

/// What the history says about a status of the table Message. The sentences begin and end with a blank, and
/// stand as the office's users know them, misspelled words included.
namespace HistoryStatus {

/// Images of imgStatus, numbered from 0.
inline constexpr int ImageCount = 9;

/// The image for a status. 6 and 7 cross over, the image list is in that order; a status below 0 or above 7
/// has the last one.
[[nodiscard]] int StatusIcon(qint32 status);

/// The sentence. A delivery time up to the beginning of 30 December 1899, day 0, counts as none; of the
/// delivery status the lowest byte is shown, in hexadecimal.
[[nodiscard]] QString StatusSentence(const MessageState& state);

/// True for a message that was canceled (2), could not be sent (4) or was not delivered (7).
[[nodiscard]] bool IsBadNews(qint32 status);

}  // namespace HistoryStatus
