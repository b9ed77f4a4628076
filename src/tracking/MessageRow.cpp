#include "tracking/MessageRow.h"

#include "core/Numbers.h"
#include "core/Trap.h"
#include "store/engine/Recordset.h"

#include <QStringBuilder>

MessageRow::MessageRow(const engine::Recordset& rows)
    : m_rows(rows),
      m_id(rows.FieldIndex(u"msgID")),
      m_status(rows.FieldIndex(u"msgStatus")),
      m_sendTime(rows.FieldIndex(u"msgSendTime")),
      m_recipient(rows.FieldIndex(u"msgRecipient")),
      m_text(rows.FieldIndex(u"msgText")),
      m_bodySize(rows.FieldIndex(u"msgBodyTextSize")),
      m_signature(rows.FieldIndex(u"msgSignature")),
      m_station(rows.FieldIndex(u"msgStation")),
      m_deliveryStatus(rows.FieldIndex(u"msgDeliveryStatus")),
      m_deliveryTime(rows.FieldIndex(u"msgDeliveryTime")),
      m_errorReason(rows.FieldIndex(u"msgErrorReason")) {}

QVariant MessageRow::ValueAt(int index) const {
    return index < 0 ? QVariant() : m_rows.Value(index);
}

QString MessageRow::TextAt(int index) const {
    return index < 0 ? QString() : m_rows.Text(index);
}

qint32 MessageRow::ID() const {
    return Numbers::NullToLong(ValueAt(m_id));
}

qint32 MessageRow::Status() const {
    return Numbers::NullToLong(ValueAt(m_status));
}

QVariant MessageRow::SendTime() const {
    return m_sendTime < 0 ? QVariant() : m_rows.ClockFace(m_sendTime);
}

QString MessageRow::Recipient() const {
    return TextAt(m_recipient);
}

QString MessageRow::Sender() const {
    const QString signature = TextAt(m_signature);
    const QString station = TextAt(m_station);
    return signature.isEmpty() ? station : QString(signature % u" on " % station);
}

QString MessageRow::Body() const {
    QString text = TextAt(m_text);
    if (const qint32 size = Numbers::NullToLong(ValueAt(m_bodySize)); size != 0) {
        text.truncate(size);
    }
    return text.contains(u'\r') ? text.replace(QStringLiteral("\r\n"), QStringLiteral(" ")) : text;
}

MessageState MessageRow::State() const {
    MessageState state;
    state.Status = Status();
    Trap([&] { state.DeliveryStatus = Numbers::NullToLong(ValueAt(m_deliveryStatus)); });
    Trap([&] { state.DeliveryTime = Numbers::NullToDate(ValueAt(m_deliveryTime)); });
    Trap([&] { state.ErrorReason = TextAt(m_errorReason); });
    return state;
}
