#pragma once

#include "compose/ComposeServices.h"
#include "compose/Dispatch.h"

#include <QWidget>

#include <functional>

class Contact;
class MessagePanel;
class QuickfireRow;
class RecipientPanel;
class SendPanel;

/// The composing side of the main window: recipients, message, signature and tail, send buttons, and what
/// happens among them. Its window is the one that takes no input while a send runs.
class ComposeArea final : public QWidget, private Composition {
    Q_OBJECT
public:
    explicit ComposeArea(const ComposeServices& services, QWidget* parent = nullptr);

    [[nodiscard]] MessagePanel& Message() { return *m_message; }
    [[nodiscard]] RecipientPanel& Recipients() { return *m_recipients; }

    /// As MessagePanel: the colour of the size bar is kept, the limit of the message box and the list of
    /// tails are read from what the stores say.
    void InitColours();
    void InitMessageSize();
    void InitMessageTails();
    /// The signature as it was when the program last ended (settings, EndWith); empty if there was none.
    void LoadSignature();
    /// Without blanks at its ends.
    void SaveSignature() const;

    /// Recipient count, size display, send buttons, in this order. Ignores failures.
    void UpdateStateDisplay();
    /// The size of the message alone; see MessagePanel.
    void ShowRemainingChars();
    /// Both send buttons need a recipient, a text, and no place left to fill in.
    void EnableButtons();
    /// Back to the empty composition, with the focus in the contact list.
    void Reset() override;
    [[nodiscard]] QString GetTailText() const override;

    // The recipient list, for the phonebook side: as the routines of these names in RecipientPanel.
    void AddKeysToRecipients(const QStringList& keys);
    void AddKeyToRecipients(const QString& key, bool ensureVisible);
    void DropGroupByID(qint32 groupID);
    void RefreshRecipientList();
    /// `index` is counted from 1.
    void ScrollRecipientsTo(int index);
    void UpdateRecipient(const Contact& contact, const QString& toolTip);
    [[nodiscard]] bool HasConfirmRecipients() const;
    /// Asks which of the recipients that want confirmation shall get the message; those that shall not leave
    /// the list. False if the user canceled.
    [[nodiscard]] bool ConfirmRecipients();

    /// How many characters of `text` equal `character`.
    [[nodiscard]] static int CountChar(const QString& text, QChar character);
    /// Characters plus one for each euro sign. Throws OverflowError.
    [[nodiscard]] static qint16 SMSLength(const QString& text);

    /// As typed, untrimmed.
    [[nodiscard]] QString MessageText() const override;
    [[nodiscard]] QString SignatureText() const override;
    [[nodiscard]] QString SelectedTail() const;
    /// Another message in place of what is there; the user can undo it.
    void SetMessageText(const QString& text);
    void CaretToMessageEnd();
    /// The focus for txtMessage and for lvRecipients.
    void FocusMessage();
    void FocusRecipients();

    /// What a press on cmdSendNow does. With Ctrl held message and recipients stay. A press while another
    /// one is being worked on does nothing.
    void SendNow();
    /// What a press on cmdSendLater does: asks for the time and sends.
    void SendLater();

private:
    [[nodiscard]] QStringList RecipientKeys() const override;
    void RemoveRecipientRows(const QStringList& keys) override;

    void Connect();
    /// Presses on cmdClearMessage and cmdClearRecipients; nothing is cleared while a send is under way.
    void ClearMessage();
    void ClearRecipients();
    void ShowRecipientMenu(const QPoint& position);
    /// One press on a send button: `work` runs with the window's input shut off, in the busy state `state`,
    /// unless the text has a place to fill in, which is selected instead. True if `work` says that it sent.
    bool RunPress(qint32 state, const std::function<bool()>& work);
    [[nodiscard]] bool SelectFillInMark();
    /// False if the user canceled or nobody is left. Also without a question: the buttons stay enabled after
    /// one in which everybody was unticked, and a second press asks no time for a message to nobody.
    [[nodiscard]] bool PassConfirmation();
    void Submit(const QDateTime& sendTime, bool removeSent);

    ComposeServices m_services;
    RecipientPanel* m_recipients;
    QuickfireRow* m_quickfire;
    MessagePanel* m_message;
    SendPanel* m_send;
    bool m_isPressRunning = false;
};
