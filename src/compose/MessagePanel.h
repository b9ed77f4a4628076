#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

class CounterLabel;
class Log;
class MessageBar;
class MessageEdit;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QVBoxLayout;
class Sound;
struct OutboxState;
struct PhonebookState;

/// The message with its size display, the signature and the tails. The only place that enforces the size
/// limit: what no longer fits is cut off the end of the message without asking.
class MessagePanel final : public QWidget {
    Q_OBJECT
public:
    MessagePanel(OutboxState& outbox, const PhonebookState& phonebook, Sound& sound, Log& log,
                 QWidget* parent = nullptr);

    /// Puts a row above the message box, inside its frame.
    void AddRowAboveMessage(QWidget* row);

    /// The colour that the size bar has at start.
    QColor DefaultBarColour;
    /// Keeps the bar's colour as DefaultBarColour.
    void InitColours();
    /// The input limit of the message box becomes MaxMessageSize.
    void InitMessageSize();
    /// Fills the list of tails from the phonebook and selects the default one, the last of several. A failure
    /// is logged.
    void InitMessageTails();

    /// ": " signature " - " tail, or " - " tail; never empty.
    [[nodiscard]] QString GetTailText() const;
    /// Measures the text, cuts it where it does not fit, and shows used and remaining characters, parts and
    /// bar; beeps when exactly nothing remains. Failures of the controls are passed over.
    void ShowRemainingChars();

    /// As typed, untrimmed.
    [[nodiscard]] QString MessageText() const;
    /// Another message in place of what is there; the user can undo it.
    void SetMessageText(const QString& text);
    /// Caret behind the message's last character, and the focus.
    void CaretToMessageEnd();
    /// Empties the message as the user would.
    void ClearMessage();
    /// Empties the message; afterwards nothing can be undone.
    void ResetMessage();
    /// Selects characters of the message and gives the box the focus.
    void SelectInMessage(int start, int length);
    void FocusMessage();
    /// The tail that is selected; empty without one.
    [[nodiscard]] QString SelectedTail() const;
    /// As typed, untrimmed.
    [[nodiscard]] QString SignatureText() const;
    void SetSignatureText(const QString& text);

Q_SIGNALS:
    /// Message or signature have changed.
    void StateChanged();
    /// cmdClearMessage was pressed; nothing is cleared yet.
    void ClearPressed();

protected:
    void changeEvent(QEvent* event) override;

private:
    void BuildMessageFrame();
    void BuildTailFrame();
    [[nodiscard]] CounterLabel* NewCounter(const QString& name, const QString& toolTip,
                                           const QString& accessible);
    void ReadMessageTails();
    void ShowBarColour(qint16 parts);

    OutboxState& m_outbox;
    const PhonebookState& m_phonebook;
    Sound& m_sound;
    Log& m_log;

    QGroupBox* m_fraMessage;
    QGroupBox* m_fraTail;
    QVBoxLayout* m_messageLayout = nullptr;
    MessageEdit* m_txtMessage;
    MessageBar* m_pbMsgSize;
    CounterLabel* m_lblUsed;
    CounterLabel* m_lblSMSPageCount;
    CounterLabel* m_lblCharsRemaining;
    QPushButton* m_cmdClearMessage;
    QLineEdit* m_txtEndWidth;
    QComboBox* m_cbTails;
};
