#pragma once

#include "tracking/HistoryStatus.h"

#include <QString>
#include <QVariant>

namespace engine {
class Recordset;
}

/// The columns of the table Message that the history reads, looked up once for a recordset and not for each
/// of its rows. A column that the recordset has not reads as null.
class MessageRow {
public:
    /// Reads the current row of `rows`, which outlives it.
    explicit MessageRow(const engine::Recordset& rows);

    // Each throws what the recordset throws.
    [[nodiscard]] qint32 ID() const;
    [[nodiscard]] qint32 Status() const;
    /// As the clock face showed it: marked as UTC, for showing and sorting.
    [[nodiscard]] QVariant SendTime() const;
    [[nodiscard]] QString Recipient() const;
    /// Signature, " on " and station, or the station alone.
    [[nodiscard]] QString Sender() const;
    /// The body without its tail, on one line: the first msgBodyTextSize characters of the text, the whole
    /// text where that is null or 0; each CR LF becomes a blank.
    [[nodiscard]] QString Body() const;
    /// What the status columns say. A column that cannot be read counts as null; the status throws.
    [[nodiscard]] MessageState State() const;

private:
    [[nodiscard]] QVariant ValueAt(int index) const;
    [[nodiscard]] QString TextAt(int index) const;

    const engine::Recordset& m_rows;
    int m_id;
    int m_status;
    int m_sendTime;
    int m_recipient;
    int m_text;
    int m_bodySize;
    int m_signature;
    int m_station;
    int m_deliveryStatus;
    int m_deliveryTime;
    int m_errorReason;
};
