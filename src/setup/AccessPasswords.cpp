#include "setup/AccessPasswords.h"

#include "controls/ModalDoor.h"
#include "core/Numbers.h"
#include "core/TextRules.h"
#include "core/Trap.h"
#include "platform/EventPump.h"
#include "setup/frmPassword.h"
#include "store/Phonebook.h"

#include <optional>

namespace {

constexpr int PassesAfterPrompt = 2;

/// Nothing if the phonebook cannot be read.
std::optional<QString> ReadPassword(const PhonebookState& phonebook, const QString& column) {
    if (phonebook.PhonebookDB == nullptr) {
        return std::nullopt;
    }
    const auto config =
        phonebook.PhonebookDB->OpenDynaset(QStringLiteral("SELECT %1 FROM Config").arg(column),
                                           engine::CursorType::ForwardOnly, engine::LockType::ReadOnly);
    std::optional<QString> password;
    if (config != nullptr) {
        Trap([&] { password = Numbers::NullToString(config->Value(column)); });
    }
    return password;
}

}  // namespace

AccessPasswords::AccessPasswords(const PhonebookState& phonebook, ModalDoor& door, EventPump& pump,
                                 const Clock& clock, QWidget& owner)
    : m_phonebook(phonebook), m_door(door), m_pump(pump), m_clock(clock), m_owner(owner) {}

bool AccessPasswords::IsPasswordOK(bool hidden) {
    const QString stored = mdlPhonebook::GetEditPassword(m_phonebook, hidden);
    QString& accepted = hidden ? AcceptedHiddenPassword : AcceptedEditPassword;
    if (stored.isEmpty() || stored == accepted) {
        return true;
    }
    bool isRight = false;
    {
        frmPassword prompt(m_clock, &m_owner);
        m_door.ShowModal(prompt, &m_owner);
        isRight = !prompt.IsCanceled() && prompt.Password() == stored;
    }
    if (isRight) {
        accepted = stored;
    }
    m_owner.repaint();
    m_pump.Process(PassesAfterPrompt);
    return isRight;
}

bool AccessPasswords::PublicHistoryPasswordCheck() {
    return CheckOnce(QStringLiteral("cfgPublicHistoryPassword"), PublicHistoryAccepted);
}

bool AccessPasswords::ReportPasswordCheck() {
    return CheckOnce(QStringLiteral("cfgReportPassword"), ReportAccepted);
}

bool AccessPasswords::CheckOnce(const QString& column, bool& accepted) {
    if (accepted) {
        return true;
    }
    const std::optional<QString> stored = ReadPassword(m_phonebook, column);
    if (!stored.has_value()) {
        return false;
    }
    if (stored->isEmpty()) {
        return true;
    }
    frmPassword prompt(m_clock, &m_owner);
    m_door.ShowModal(prompt, &m_owner);
    accepted = !prompt.IsCanceled() && Text::Trim(prompt.Password()) == *stored;
    return accepted;
}
