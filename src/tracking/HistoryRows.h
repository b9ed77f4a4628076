#pragma once

#include "tracking/HistorySlots.h"

#include <memory>

class Clock;
class MessageRow;
class ReportControl;
struct OutboxState;
struct ReportRecord;

namespace engine {
class Recordset;
}

/// The rows of the message history: reads the table Message, the outbox being open, and brings the grid in
/// line with it. Two modes, chosen once: this workstation's own messages, or the newest of the whole outbox.
/// A record is found by the index of its message's slot, and in no other way. Failures are passed over, row
/// by row and step by step.
class HistoryRows {
public:
    /// Everything given outlives it.
    HistoryRows(ReportControl& grid, const OutboxState& outbox, const Clock& clock);

    bool IsPublic = false;
    HistorySlots MsgArray;

    void SetupColumns();
    /// One pass. `initial`: the first one of a window.
    void Update(bool initial);

    /// The message that a record stands for; 0 for none.
    [[nodiscard]] static qint32 MessageIDOf(const ReportRecord* record);
    /// True while the record's message waits for the gateway.
    [[nodiscard]] static bool IsPending(const ReportRecord& record);

private:
    struct OwnRow;

    [[nodiscard]] std::unique_ptr<engine::Recordset> OpenHistorySet(bool initial);
    void UpdateOwnRows(bool initial);
    void UpdatePublicRows(bool initial);
    /// In the order of the query, messages of one send time newest first.
    void AddOwnRows(engine::Recordset& rows);
    void AddOwnRow(OwnRow row);
    /// True if the row's status has changed.
    bool RefreshOwnRow(const MessageRow& row);
    bool MergePublicRow(const MessageRow& row, bool initial);
    /// The slot that a new row of the public history takes, -1 for none.
    [[nodiscard]] int TakePublicSlot(bool initial);
    void SizeLastColumn();

    ReportControl& m_grid;
    const OutboxState& m_outbox;
    const Clock& m_clock;
};
