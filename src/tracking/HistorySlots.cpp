#include "tracking/HistorySlots.h"

#include "store/Outbox.h"
#include "tracking/History.h"

#include <algorithm>

namespace {

constexpr qint64 LookAhead = 60;  // s
constexpr qsizetype WidthOfOr = 3;

}  // namespace

void HistorySlots::LoadHistoryIDs(const QList<HistoryRecord>& records) {
    const qsizetype last = std::min<qsizetype>(records.size(), Count);
    for (qsizetype i = 0; i < last; ++i) {
        m_slots[static_cast<size_t>(i)].MessageID = records[i].MessageID;
    }
}

int HistorySlots::FindSlot(qint32 messageID) const {
    const auto found = std::find_if(m_slots.cbegin(), m_slots.cend(),
                                    [messageID](const Slot& slot) { return slot.MessageID == messageID; });
    return found == m_slots.cend() ? -1 : static_cast<int>(found - m_slots.cbegin());
}

void HistorySlots::ScrollMsgArray() {
    std::copy_backward(m_slots.cbegin(), m_slots.cend() - 1, m_slots.end());
}

template <typename Condition>
QString HistorySlots::OwnSQL(const QString& head, Condition&& isWanted) const {
    QString filter;
    for (const Slot& slot : m_slots) {
        if (slot.MessageID != 0 && isWanted(slot)) {
            filter += QStringLiteral(" OR MsgID = ") + QString::number(slot.MessageID);
        }
    }
    // The first "OR" goes; the blank before it stays.
    return head + filter.mid(WidthOfOr) + QStringLiteral(" ORDER BY msgSendTime DESC;");
}

QString HistorySlots::OwnLoadSQL() const {
    return OwnSQL(
        QStringLiteral("SELECT msgID, msgSendTime, msgStatus, msgRecipient, msgText, msgBodyTextSize, "
                       "msgDeliveryStatus, msgDeliveryTime, msgErrorReason FROM Message WHERE"),
        [](const Slot&) { return true; });
}

QString HistorySlots::OwnRefreshSQL() const {
    const auto canChange = [](const Slot& slot) { return !mdlOutbox::IsMessageFinal(slot.Status); };
    const bool isAny = std::any_of(m_slots.cbegin(), m_slots.cend(),
                                   [&](const Slot& slot) { return slot.MessageID != 0 && canChange(slot); });
    if (!isAny) {
        return {};
    }
    return OwnSQL(QStringLiteral("SELECT msgID, msgStatus, msgDeliveryStatus, msgDeliveryTime, "
                                 "msgErrorReason FROM Message WHERE"),
                  canChange);
}

QString HistorySlots::PublicSQL(const QDateTime& now) {
    return QStringLiteral("SELECT TOP ") + QString::number(Count) +
           QStringLiteral(
               " msgSendTime, msgID, msgComplete, msgStatus, msgDeliveryStatus, msgRecipient, "
               "msgText, msgSignature, msgStation, msgBodyTextSize, msgDeliveryTime, "
               "msgErrorReason FROM Message WHERE msgSendTime <= ") +
           mdlOutbox::QuoteDate(now.addSecs(LookAhead)) +
           QStringLiteral(" ORDER BY msgSendTime DESC, msgID DESC;");
}
