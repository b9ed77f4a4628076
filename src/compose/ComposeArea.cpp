#include "compose/ComposeArea.h"

#include "addressbook/ContactList.h"
#include "compose/ComposeHost.h"
#include "compose/GSMCharSet.h"
#include "compose/InputGate.h"
#include "compose/MessagePanel.h"
#include "compose/QuickfireRow.h"
#include "compose/RecipientPanel.h"
#include "compose/SendPanel.h"
#include "compose/frmConfirmRecipient.h"
#include "compose/frmGetTime.h"
#include "controls/Cmenu.h"
#include "controls/ListView.h"
#include "controls/ModalDoor.h"
#include "core/BusyState.h"
#include "core/Log.h"
#include "core/Settings.h"
#include "core/TextRules.h"
#include "core/Trap.h"
#include "platform/Clock.h"
#include "platform/EventPump.h"
#include "platform/KeyState.h"
#include "store/Outbox.h"
#include "store/Phonebook.h"

#include <QScopedValueRollback>
#include <QVBoxLayout>

namespace {

constexpr int NewGroupEntry = 1;
constexpr int PassesAfterDialog = 2;
constexpr int RecipientShare = 2;
constexpr int MessageShare = 3;

}  // namespace

ComposeArea::ComposeArea(const ComposeServices& services, QWidget* parent)
    : QWidget(parent),
      m_services(services),
      m_recipients(new RecipientPanel(services.AddressContacts, services.RecipientContacts,
                                      services.Phonebook.State, services.SortBy, this)),
      m_quickfire(new QuickfireRow(this)),
      m_message(new MessagePanel(services.Outbox.State, services.Phonebook.State, services.Beeper,
                                 services.AppLog, this)),
      m_send(new SendPanel(this)) {
    m_message->AddRowAboveMessage(m_quickfire);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_recipients, RecipientShare);
    column->addWidget(m_message, MessageShare);
    column->addWidget(m_send);
    Connect();
    EnableButtons();
}

void ComposeArea::Connect() {
    connect(m_recipients, &RecipientPanel::RecipientsChanged, this, &ComposeArea::UpdateStateDisplay);
    connect(m_recipients, &RecipientPanel::ClearPressed, this, &ComposeArea::ClearRecipients);
    connect(m_recipients, &RecipientPanel::MenuRequested, this, &ComposeArea::ShowRecipientMenu);
    connect(m_message, &MessagePanel::StateChanged, this, &ComposeArea::UpdateStateDisplay);
    connect(m_message, &MessagePanel::ClearPressed, this, &ComposeArea::ClearMessage);
    connect(m_send, &SendPanel::SendNowPressed, this, &ComposeArea::SendNow);
    connect(m_send, &SendPanel::SendLaterPressed, this, &ComposeArea::SendLater);
}

void ComposeArea::InitColours() {
    m_message->InitColours();
}

void ComposeArea::InitMessageSize() {
    m_message->InitMessageSize();
}

void ComposeArea::InitMessageTails() {
    m_message->InitMessageTails();
}

void ComposeArea::LoadSignature() {
    m_message->SetSignatureText(
        m_services.AppSettings.GetValue(SettingNames::SectionDefaults, SettingNames::EndWith, QString()));
}

void ComposeArea::SaveSignature() const {
    m_services.AppSettings.SetValue(SettingNames::SectionDefaults, SettingNames::EndWith,
                                    Text::Trim(m_message->SignatureText()));
}

void ComposeArea::UpdateStateDisplay() {
    Trap([this] { m_recipients->ShowRecipientCount(); });
    Trap([this] { m_message->ShowRemainingChars(); });
    Trap([this] { EnableButtons(); });
}

void ComposeArea::ShowRemainingChars() {
    m_message->ShowRemainingChars();
}

void ComposeArea::EnableButtons() {
    TrapTo(
        [this] {
            const QString text = m_message->MessageText();
            m_send->SetSendingEnabled(m_recipients->Count() > 0 && !text.isEmpty() &&
                                      !text.contains(Dispatch::FillInMark));
        },
        [this](const std::exception& failure) {
            m_services.AppLog.WriteFailure(QStringLiteral("EnableButtons Error "), failure);
        });
}

void ComposeArea::Reset() {
    TrapTo(
        [this] {
            m_services.Host.ClearContactInfo();
            m_services.RecipientContacts.Clear();
            m_recipients->Clear();
            m_message->ResetMessage();
            UpdateStateDisplay();
            m_services.Host.ContactListFocus(true);
        },
        [this](const std::exception& failure) {
            m_services.AppLog.WriteFailure(QStringLiteral("Reset Error "), failure);
        });
}

QString ComposeArea::GetTailText() const {
    return m_message->GetTailText();
}

void ComposeArea::AddKeysToRecipients(const QStringList& keys) {
    m_recipients->AddKeysToRecipients(keys);
}

void ComposeArea::AddKeyToRecipients(const QString& key, bool ensureVisible) {
    m_recipients->AddKeyToRecipients(key, ensureVisible);
}

void ComposeArea::DropGroupByID(qint32 groupID) {
    m_recipients->DropGroupByID(groupID);
}

void ComposeArea::RefreshRecipientList() {
    m_recipients->RefreshRecipientList();
}

void ComposeArea::ScrollRecipientsTo(int index) {
    mdlListViewBugFix::ScrollToItem(m_recipients->List(), index);
}

void ComposeArea::UpdateRecipient(const Contact& contact, const QString& toolTip) {
    m_recipients->UpdateRecipient(contact, toolTip);
}

bool ComposeArea::HasConfirmRecipients() const {
    return m_recipients->HasConfirmRecipients();
}

bool ComposeArea::ConfirmRecipients() {
    bool isConfirmed = false;
    {
        frmConfirmRecipient dialog(m_services.RecipientContacts, m_services.Time, window());
        dialog.SetRecipients(m_recipients->List());
        m_services.Door.ShowModal(dialog, window());
        isConfirmed = !dialog.IsCanceled();
    }
    window()->repaint();
    m_services.Pump.Process(PassesAfterDialog);
    return isConfirmed;
}

int ComposeArea::CountChar(const QString& text, QChar character) {
    return mdlGSMCharSet::CountChar(text, character);
}

qint16 ComposeArea::SMSLength(const QString& text) {
    return mdlGSMCharSet::SMSLength(text);
}

QString ComposeArea::SelectedTail() const {
    return m_message->SelectedTail();
}

void ComposeArea::SetMessageText(const QString& text) {
    m_message->SetMessageText(text);
}

void ComposeArea::CaretToMessageEnd() {
    m_message->CaretToMessageEnd();
}

void ComposeArea::FocusMessage() {
    m_message->FocusMessage();
}

void ComposeArea::FocusRecipients() {
    m_recipients->List().setFocus();
}

QStringList ComposeArea::RecipientKeys() const {
    return m_recipients->RecipientKeys();
}

QString ComposeArea::MessageText() const {
    return m_message->MessageText();
}

QString ComposeArea::SignatureText() const {
    return m_message->SignatureText();
}

void ComposeArea::RemoveRecipientRows(const QStringList& keys) {
    m_recipients->RemoveRows(keys);
    // An emptied list resets the composition right after this, and that shows the state.
    if (m_recipients->Count() > 0) {
        UpdateStateDisplay();
    }
}

void ComposeArea::ClearMessage() {
    if (m_isPressRunning) {
        return;
    }
    m_message->ClearMessage();
    UpdateStateDisplay();
}

void ComposeArea::ClearRecipients() {
    if (m_isPressRunning) {
        return;
    }
    m_recipients->Clear();
    m_services.RecipientContacts.Clear();
    UpdateStateDisplay();
}

void ComposeArea::ShowRecipientMenu(const QPoint& position) {
    Cmenu menu;
    menu.AddItem(NewGroupEntry, QStringLiteral("Create New Group From Recipients"));
    if (menu.TrackPopup(m_services.Door, position) == NewGroupEntry) {
        m_services.Host.CreateGroupFromSelection(m_recipients->List(), false);
    }
}

void ComposeArea::SendNow() {
    // The key as it is at the press, not as it is after a dialog.
    const bool removeSent = !m_services.Keys.IsKeyDown(KeyState::Key::Control);
    const bool isSent = RunPress(Busy::Sending, [this, removeSent] {
        if (!PassConfirmation()) {
            return false;
        }
        Submit(m_services.Time.Now(), removeSent);
        return true;
    });
    if (isSent) {
        Trap([this] { m_services.Host.StartTracking(); });
    }
}

void ComposeArea::SendLater() {
    RunPress(Busy::ScheduleDialog, [this] {
        if (!PassConfirmation()) {
            return false;
        }
        frmGetTime dialog(m_services.Time, window());
        m_services.Door.ShowModal(dialog, window());
        if (!dialog.IsCanceled()) {
            Submit(dialog.SendTime(), true);
        }
        return true;
    });
}

bool ComposeArea::RunPress(qint32 state, const std::function<bool()>& work) {
    if (m_isPressRunning) {
        return false;
    }
    const QScopedValueRollback<bool> running(m_isPressRunning, true);
    const BusyScope busy(m_services.Busy, state);
    if (SelectFillInMark()) {
        return false;
    }
    // Ends before the busy state does: what it lets through must find the program busy. The program can be
    // ended while it asks: a dialog that is closed by that counts as canceled.
    const InputGate gate(*window(), m_services.Pump, InputGate::Closing::Let);
    bool isDone = false;
    Trap([&] { isDone = work(); });
    return isDone;
}

bool ComposeArea::SelectFillInMark() {
    const qsizetype place = m_message->MessageText().indexOf(Dispatch::FillInMark);
    if (place < 0) {
        return false;
    }
    m_message->SelectInMessage(static_cast<int>(place), static_cast<int>(Dispatch::FillInMark.size()));
    return true;
}

bool ComposeArea::PassConfirmation() {
    if (HasConfirmRecipients() && !ConfirmRecipients()) {
        return false;
    }
    return m_recipients->Count() > 0;
}

void ComposeArea::Submit(const QDateTime& sendTime, bool removeSent) {
    m_services.Busy.SetAppBusyState(Busy::Sending);
    const InputGate gate(*window(), m_services.Pump);
    const DispatchServices services{m_services.Outbox, m_services.RecipientContacts, m_services.History,
                                    m_services.Tracker, m_services.Time};
    Trap([&] { Dispatch::DoSend(services, *this, sendTime, removeSent); });
}
