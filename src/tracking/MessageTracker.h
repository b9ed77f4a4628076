#pragma once

#include <QDateTime>
#include <QString>
#include <QVariant>

#include <array>

class Clock;
class MessageTracker;
class Settings;
struct OutboxState;

namespace engine {
class Recordset;
}

/// Tells the user about slots that have reached a final status.
class DeliverySink {
public:
    virtual ~DeliverySink() = default;
    /// Shows what is final, clears those slots and returns how many of them were failures.
    virtual qint16 PopupNotify(MessageTracker& tracker) = 0;
};

/// Remembers the last messages that this client put in the outbox, polls their status at a configured
/// interval and, when a message reaches a final status, hands it to the notification and forgets it. Driven
/// by the timer tmrCheckMsgStatus of the main window; keeps nothing on disk.
class MessageTracker {
public:
    static constexpr int SlotCount = 50;

    /// One message on its way.
    struct Slot {
        qint32 msgID = 0;  // 0 marks a free slot
        qint32 status = 0;
        QString recipient;
        QString number;        // the number to show, or "(Private Number)"
        QString deliveryTime;  // "HH:NN" or empty
        QString text;          // first 50 characters of the merged message, trimmed
    };

    MessageTracker(OutboxState& outbox, Settings& settings, Clock& clock);

    /// Whether messages are taken and polled.
    [[nodiscard]] bool Enabled() const { return m_enabled; }
    /// Writing false also clears all slots.
    void SetEnabled(bool enabled);
    /// Seconds between polls.
    qint16 RefreshInterval = 60;
    /// Whether a notification is heard, from the settings.
    bool PlaySound = false;
    /// Whether the desktop's own notifications are used as well, and whether number and text may stand there
    /// for everybody to see.
    bool UseDesktopNotices = false;
    bool ShowDetailsOnDesktop = false;
    /// Who is told of final messages; none while there is nobody to tell: final slots then wait.
    void SetSink(DeliverySink* sink) { m_sink = sink; }

    /// Takes a message into the first free slot; with none free the oldest is dropped. Does nothing while
    /// disabled.
    void Track(qint32 msgID, const QString& recipient, const QString& number, const QString& text);
    /// Clears the first slot with this msgID; an unknown one does nothing.
    void CancelTracking(qint32 msgID);
    /// The poll and the notification. Returns the number of failures notified. Ignores failures.
    qint16 Update();
    /// Reads the status of all pending slots in one statement when the interval has passed. True if the poll
    /// ran. An outbox that is open is used and stays open; otherwise it is opened for this. A poll inside a
    /// poll does nothing.
    bool CheckDB();

    /// Frees a slot; `slot` from 0, not checked, here and below.
    void ClearSlot(int slot);
    [[nodiscard]] const Slot& SlotAt(int slot) const { return m_slots[static_cast<size_t>(slot)]; }
    /// Before this moment no poll runs; invalid at creation.
    [[nodiscard]] QDateTime NextCheck() const { return m_nextCheck; }

    /// Empty for a null, otherwise "HH:NN".
    [[nodiscard]] static QString FormatTime(const QVariant& value);

    /// Enabled, PlaySound, RefreshInterval, UseDesktopNotices and ShowDetailsOnDesktop from the section
    /// Notify, and back. An interval beyond 16 bits leaves the present one.
    void LoadSettings();
    void SaveSettings();

private:
    using Slots = std::array<Slot, SlotCount>;

    [[nodiscard]] Slots::iterator FindSlot(qint32 msgID);
    void ClearAllSlots();
    /// "msgID = 17 OR msgID = 18" for all pending slots; empty without any.
    [[nodiscard]] QString PendingFilter() const;
    /// False if the outbox cannot be opened or read.
    [[nodiscard]] bool ReadStatus(const QString& filter);
    void TakeRow(const engine::Recordset& row);

    OutboxState& m_outbox;
    Settings& m_settings;
    Clock& m_clock;
    DeliverySink* m_sink = nullptr;
    bool m_enabled = true;
    QDateTime m_nextCheck;
    bool m_isPolling = false;
    Slots m_slots;
};
