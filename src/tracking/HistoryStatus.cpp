#include "tracking/HistoryStatus.h"

#include "core/Dates.h"

namespace {

namespace Status {
constexpr qint32 Waiting = 0;
constexpr qint32 Sending = 1;
constexpr qint32 Canceled = 2;
constexpr qint32 EnRoute = 3;
constexpr qint32 NotSent = 4;
constexpr qint32 Delivered = 5;
constexpr qint32 Unconfirmed = 6;
constexpr qint32 NotDelivered = 7;
}  // namespace Status

constexpr int UnusualIcon = 8;
constexpr int Hexadecimal = 16;
constexpr qint32 LowestByte = 0xFF;

QString DeliveredSentence(const QDateTime& deliveryTime) {
    if (Dates::ToDays(deliveryTime) <= 0) {
        return QStringLiteral(" The message has been delivered. ");
    }
    return QStringLiteral(" The message was delieverd at ") +
           Dates::Format(deliveryTime, QStringLiteral("HH:NN")) + QStringLiteral(". ");
}

}  // namespace

int HistoryStatus::StatusIcon(qint32 status) {
    if (status < Status::Waiting || status > Status::NotDelivered) {
        return UnusualIcon;
    }
    if (status == Status::Unconfirmed) {
        return Status::NotDelivered;
    }
    return status == Status::NotDelivered ? Status::Unconfirmed : status;
}

QString HistoryStatus::StatusSentence(const MessageState& state) {
    switch (state.Status) {
        case Status::Waiting:
            return QStringLiteral(" The message is waiting to be processed. ");
        case Status::Sending:
            return QStringLiteral(" The message is being sent to your network operator. ");
        case Status::Canceled:
            return QStringLiteral(" The message was canceled. ") + state.ErrorReason;
        case Status::EnRoute:
            return QStringLiteral(" The message is en route with the network operator. ");
        case Status::NotSent:
            return QStringLiteral(" The message could not be sent. ");
        case Status::Delivered:
            return DeliveredSentence(state.DeliveryTime);
        case Status::Unconfirmed:
            return QStringLiteral(" Message delivery could not be confirmed. ");
        case Status::NotDelivered:
            return QStringLiteral(" The message could not be delivered. [0x") +
                   QString::number(state.DeliveryStatus & LowestByte, Hexadecimal).toUpper() +
                   QStringLiteral("] ");
        default:
            return QStringLiteral(" The message status [") + QString::number(state.Status) +
                   QStringLiteral("] is unusual. ");
    }
}

bool HistoryStatus::IsBadNews(qint32 status) {
    return status == Status::Canceled || status == Status::NotSent || status == Status::NotDelivered;
}
