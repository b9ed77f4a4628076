#include "shell/HistoryOpening.h"

#include "app/AppContext.h"
#include "app/Machine.h"
#include "compose/ComposeArea.h"
#include "compose/InputGate.h"
#include "controls/ModalDoor.h"
#include "core/Trap.h"
#include "platform/EventPump.h"
#include "platform/KeyState.h"
#include "tracking/frmHistory.h"

#include <optional>
#include <utility>

namespace {

constexpr int PassesAfterHistory = 4;

}  // namespace

HistoryOpening::HistoryOpening(AppContext& context, const Machine& machine, HistoryOpeningParts parts)
    : m_context(context), m_machine(machine), m_parts(std::move(parts)) {}

void HistoryOpening::Open() {
    if (!m_context.AppBusyState.IsIdle()) {
        return;
    }
    const BusyScope busy(m_context.AppBusyState, Busy::HistoryOpen);
    const QString before = m_parts.Compose.MessageText();
    Trap([this] { ShowHistory(); });
    if (m_parts.Compose.MessageText() != before) {
        Trap([this] { m_parts.Compose.CaretToMessageEnd(); });
    }
    m_machine.Pump.Process(PassesAfterHistory);
}

void HistoryOpening::ShowHistory() {
    // The first pass may wait for the outbox and lets events run meanwhile; nothing else starts then. The
    // program can be ended all the same: a prompt may be open here for as long as nobody answers it.
    std::optional<InputGate> gate(std::in_place, m_parts.Form, m_machine.Pump, InputGate::Closing::Let);
    frmHistory history({m_context.Outbox, m_context.History, m_context.MessageTracker, m_parts.Host,
                        m_machine.Door, m_machine.Boxes, m_machine.Pump, m_machine.Time},
                       &m_parts.Form);
    if (m_machine.Keys.IsKeyDown(KeyState::Key::Control)) {
        const bool isOpen = m_parts.PublicHistoryPasswordCheck();
        m_parts.Form.repaint();
        if (isOpen) {
            history.SetIsPublic(true);
        }
    }
    if (m_parts.IsUnloaded()) {
        return;
    }
    history.LoadHistory();
    gate.reset();
    if (!m_parts.IsUnloaded()) {
        m_machine.Door.ShowModal(history, &m_parts.Form);
    }
}
