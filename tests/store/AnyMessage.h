#pragma once

#include "store/Outbox.h"

/// A message with every column filled in.
[[nodiscard]] inline OutgoingMessage AnyMessage() {
    OutgoingMessage message;
    message.Recipient = QStringLiteral("Mary Byrne");
    message.Address = QStringLiteral("+353871234567");
    message.Text = QStringLiteral("See you at five - Front desk");
    message.SendTime = QDateTime(QDate(2026, 3, 7), QTime(14, 5, 9));
    message.Station = QStringLiteral("DESK4\\MARY");
    message.Signature = QStringLiteral("Mary");
    message.BodyTextSize = 15;
    return message;
}
