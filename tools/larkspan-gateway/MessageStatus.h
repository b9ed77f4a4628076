#pragma once

#include <QtGlobal>

/// Values of Message.msgStatus.
namespace MessageStatus {
inline constexpr qint32 Waiting = 0;
inline constexpr qint32 Handing = 1;  // taken by a gateway, on its way to the operator
inline constexpr qint32 Canceled = 2;
inline constexpr qint32 EnRoute = 3;  // accepted by the operator
inline constexpr qint32 NotSent = 4;  // the operator did not accept it
inline constexpr qint32 Delivered = 5;
inline constexpr qint32 Unconfirmed = 6;
inline constexpr qint32 NotDelivered = 7;
}  // namespace MessageStatus
