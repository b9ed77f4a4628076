#include "tracking/MessageTracker.h"

#include "core/Dates.h"
#include "core/Numbers.h"
#include "core/Settings.h"
#include "core/TextRules.h"
#include "core/Trap.h"
#include "platform/Clock.h"
#include "store/Outbox.h"

#include <algorithm>

namespace {

constexpr qsizetype TextWidth = 50;
constexpr int LastSlot = MessageTracker::SlotCount - 1;
const QString SettingOn = QStringLiteral("1");
const QString SettingOff = QStringLiteral("0");

/// Sets a flag for its lifetime.
class FlagScope {
public:
    explicit FlagScope(bool& flag) : m_flag(flag), m_before(flag) { m_flag = true; }
    ~FlagScope() { m_flag = m_before; }
    FlagScope(const FlagScope&) = delete;
    FlagScope& operator=(const FlagScope&) = delete;

private:
    bool& m_flag;
    bool m_before;
};

/// The outbox, open: as it was found, or opened for this poll and closed at its end. The one that was opened
/// is closed also if another has taken its place meanwhile (a replaced one lives on while it is in use).
class OpenedOutbox {
public:
    explicit OpenedOutbox(DB& database) : m_database(database), m_wasOpen(database.IsConnected()) {
        m_isOpen = m_wasOpen || database.OpenDatabase(engine::Mode::ReadShared);
    }
    ~OpenedOutbox() {
        if (!m_wasOpen && m_isOpen) {
            m_database.CloseDatabase();
        }
    }
    OpenedOutbox(const OpenedOutbox&) = delete;
    OpenedOutbox& operator=(const OpenedOutbox&) = delete;

    [[nodiscard]] bool IsOpen() const { return m_isOpen; }

private:
    DB& m_database;
    bool m_wasOpen;
    bool m_isOpen;
};

}  // namespace

MessageTracker::MessageTracker(OutboxState& outbox, Settings& settings, Clock& clock)
    : m_outbox(outbox), m_settings(settings), m_clock(clock) {}

void MessageTracker::SetEnabled(bool enabled) {
    m_enabled = enabled;
    if (!enabled) {
        ClearAllSlots();
    }
}

void MessageTracker::Track(qint32 msgID, const QString& recipient, const QString& number,
                           const QString& text) {
    if (!m_enabled) {
        return;
    }
    auto slot = FindSlot(0);
    if (slot == m_slots.end()) {
        for (size_t i = 0; i < LastSlot; ++i) {
            // The delivery time stays where it stands.
            const QString deliveryTime = m_slots[i].deliveryTime;
            m_slots[i] = m_slots[i + 1];
            m_slots[i].deliveryTime = deliveryTime;
        }
        slot = m_slots.begin() + LastSlot;
    }
    slot->msgID = msgID;
    slot->status = 0;
    slot->recipient = recipient;
    slot->number = number;
    slot->text = Text::Trim(text.left(TextWidth));
}

void MessageTracker::CancelTracking(qint32 msgID) {
    const auto slot = FindSlot(msgID);
    if (slot != m_slots.end()) {
        *slot = Slot();
    }
}

qint16 MessageTracker::Update() {
    if (!m_enabled || !CheckDB()) {
        return 0;
    }
    qint16 failures = 0;
    if (m_sink != nullptr) {
        Trap([&] { failures = m_sink->PopupNotify(*this); });
    }
    return failures;
}

bool MessageTracker::CheckDB() {
    // The waits of a statement let timer ticks through; a poll inside a poll would tell everything twice.
    if (m_isPolling || (m_nextCheck.isValid() && m_clock.Now() < m_nextCheck)) {
        return false;
    }
    const QString filter = PendingFilter();
    if (filter.isEmpty()) {
        return false;
    }
    const FlagScope polling(m_isPolling);
    bool hasRun = false;
    Trap([&] { hasRun = ReadStatus(filter); });
    m_nextCheck = m_clock.Now().addSecs(RefreshInterval);
    return hasRun;
}

void MessageTracker::ClearSlot(int slot) {
    m_slots[static_cast<size_t>(slot)] = Slot();
}

QString MessageTracker::FormatTime(const QVariant& value) {
    return value.isNull() ? QString() : Dates::Format(value.toDateTime(), QStringLiteral("HH:NN"));
}

void MessageTracker::LoadSettings() {
    const QString& section = SettingNames::SectionNotify;
    SetEnabled(m_settings.GetValue(section, SettingNames::Enabled, SettingOn) == SettingOn);
    PlaySound = m_settings.GetValue(section, SettingNames::PlaySound, SettingOff) == SettingOn;
    UseDesktopNotices = m_settings.GetValue(section, SettingNames::Desktop, SettingOff) == SettingOn;
    ShowDetailsOnDesktop =
        m_settings.GetValue(section, SettingNames::DesktopDetails, SettingOff) == SettingOn;
    const QString interval = m_settings.GetValue(section, SettingNames::Interval, QStringLiteral("60"));
    // A number too large for the field is passed over and leaves the interval as it is.
    Trap([&] { RefreshInterval = Numbers::ToInt16(interval); });
}

void MessageTracker::SaveSettings() {
    const QString& section = SettingNames::SectionNotify;
    m_settings.SetValue(section, SettingNames::Enabled, m_enabled ? SettingOn : SettingOff);
    m_settings.SetValue(section, SettingNames::PlaySound, PlaySound ? SettingOn : SettingOff);
    m_settings.SetValue(section, SettingNames::Interval, QString::number(RefreshInterval));
    m_settings.SetValue(section, SettingNames::Desktop, UseDesktopNotices ? SettingOn : SettingOff);
    m_settings.SetValue(section, SettingNames::DesktopDetails, ShowDetailsOnDesktop ? SettingOn : SettingOff);
}

MessageTracker::Slots::iterator MessageTracker::FindSlot(qint32 msgID) {
    return std::find_if(m_slots.begin(), m_slots.end(),
                        [msgID](const Slot& slot) { return slot.msgID == msgID; });
}

void MessageTracker::ClearAllSlots() {
    for (int slot = 0; slot < SlotCount; ++slot) {
        ClearSlot(slot);
    }
}

QString MessageTracker::PendingFilter() const {
    QString filter;
    for (const Slot& slot : m_slots) {
        if (slot.msgID != 0 && !mdlOutbox::IsMessageFinal(slot.status)) {
            filter += QStringLiteral(" OR msgID = ") + QString::number(slot.msgID);
        }
    }
    return filter.mid(4);
}

bool MessageTracker::ReadStatus(const QString& filter) {
    if (m_outbox.OutboxDB == nullptr) {
        return false;
    }
    DB& database = *m_outbox.OutboxDB;
    const OpenedOutbox opened(database);
    if (!opened.IsOpen()) {
        return false;
    }
    const auto rows = database.OpenDynaset(
        QStringLiteral("SELECT msgID, msgStatus, msgDeliveryTime FROM Message WHERE ") + filter,
        engine::CursorType::ForwardOnly, engine::LockType::ReadOnly);
    if (rows == nullptr) {
        return false;
    }
    Trap([&] {
        for (; !rows->EndOfFile(); rows->MoveNext()) {
            Trap([&] { TakeRow(*rows); });
        }
    });
    Trap([&] { rows->Close(); });
    return true;
}

void MessageTracker::TakeRow(const engine::Recordset& row) {
    const qint32 msgID = Numbers::NullToLong(row.Value(u"msgID"));
    const auto slot = FindSlot(msgID);
    if (msgID == 0 || slot == m_slots.end()) {
        return;
    }
    const QVariant status = row.Value(u"msgStatus");
    if (!status.isNull()) {
        slot->status = status.toInt();
    }
    slot->deliveryTime = FormatTime(row.Value(u"msgDeliveryTime"));
}
