#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

#include <array>

struct HistoryRecord;

/// The table of 100 slots that ties rows of the table Message to the records of the history's grid: the index
/// of a slot is the index of its record in the grid's record list.
class HistorySlots {
public:
    static constexpr int Count = 100;

    struct Slot {
        qint32 MessageID = 0;  // 0 marks a free slot
        qint32 Status = -1;    // last one seen; -1: none yet
    };

    /// Frees all slots.
    void InitMsgArray() { m_slots.fill(Slot()); }
    /// The message IDs of the first records, index for index, as far as there are slots.
    void LoadHistoryIDs(const QList<HistoryRecord>& records);
    /// The first slot with this ID, counted from 0; the ID 0 finds the first free one. -1 if there is none.
    [[nodiscard]] int FindSlot(qint32 messageID) const;
    /// Moves every slot one place up. What the last held is lost, the first keeps its contents until it is
    /// written.
    void ScrollMsgArray();
    /// `index` from 0 to 99.
    [[nodiscard]] const Slot& At(int index) const { return m_slots[static_cast<size_t>(index)]; }
    [[nodiscard]] Slot& At(int index) { return m_slots[static_cast<size_t>(index)]; }

    /// All rows of the own history. Without any ID nothing stands between WHERE and ORDER BY, which the
    /// engine refuses: such a history is empty.
    [[nodiscard]] QString OwnLoadSQL() const;
    /// The state of the rows that can still change; empty when there is none. A slot whose message was not
    /// found (status -1) is not asked for again.
    [[nodiscard]] QString OwnRefreshSQL() const;
    /// The newest 100 messages of the whole outbox that were due a minute from `now`, or are longer ago.
    [[nodiscard]] static QString PublicSQL(const QDateTime& now);

private:
    template <typename Condition>
    [[nodiscard]] QString OwnSQL(const QString& head, Condition&& isWanted) const;

    std::array<Slot, Count> m_slots;
};
