#include "compose/MessagePanel.h"

#include "compose/CounterLabel.h"
#include "compose/GSMCharSet.h"
#include "compose/MessageBar.h"
#include "compose/MessageEdit.h"
#include "compose/MessageSize.h"
#include "controls/DropGuard.h"
#include "controls/FormTools.h"
#include "controls/Icons.h"
#include "controls/WheelGuard.h"
#include "core/Log.h"
#include "core/NumberedFailure.h"
#include "core/Numbers.h"
#include "core/Trap.h"
#include "platform/Sound.h"
#include "store/Outbox.h"
#include "store/Phonebook.h"

#include <QComboBox>
#include <QEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

namespace {

/// The bar's colour when a message takes more than one part.
constexpr QColor DarkRed(128, 0, 0);
constexpr int TailListChars = 14;
constexpr int LeastMessageLines = 3;

QLabel* NewUnit(const QString& text, QWidget* parent) {
    auto* unit = new QLabel(text, parent);
    unit->setForegroundRole(QPalette::PlaceholderText);
    return unit;
}

}  // namespace

MessagePanel::MessagePanel(OutboxState& outbox, const PhonebookState& phonebook, Sound& sound, Log& log,
                           QWidget* parent)
    : QWidget(parent),
      m_outbox(outbox),
      m_phonebook(phonebook),
      m_sound(sound),
      m_log(log),
      m_fraMessage(new QGroupBox(QStringLiteral("Message"), this)),
      m_fraTail(new QGroupBox(QStringLiteral("Signature"), this)),
      m_txtMessage(new MessageEdit(m_fraMessage)),
      m_pbMsgSize(new MessageBar(m_fraMessage)),
      m_lblUsed(NewCounter(QStringLiteral("lblUsed"), QStringLiteral(" Number of characters used "),
                           QStringLiteral("Characters used"))),
      m_lblSMSPageCount(NewCounter(QStringLiteral("lblSMSPageCount"),
                                   QStringLiteral(" Number of SMS's  required to deliver your message "),
                                   QStringLiteral("SMS parts"))),
      m_lblCharsRemaining(NewCounter(QStringLiteral("lblCharsRemaining"),
                                     QStringLiteral(" No. of chars remaining in this message "),
                                     QStringLiteral("Characters remaining"))),
      m_cmdClearMessage(new QPushButton(QStringLiteral("Clear"), m_fraMessage)),
      m_txtEndWidth(new QLineEdit(m_fraTail)),
      m_cbTails(new QComboBox(m_fraTail)) {
    BuildMessageFrame();
    BuildTailFrame();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_fraMessage, 1);
    column->addWidget(m_fraTail);
    InitColours();
}

void MessagePanel::BuildMessageFrame() {
    m_fraMessage->setObjectName(QStringLiteral("fraMessage"));
    m_txtMessage->setObjectName(QStringLiteral("txtMessage"));
    m_txtMessage->setAccessibleName(QStringLiteral("Message"));
    m_txtMessage->setMinimumHeight(m_txtMessage->fontMetrics().lineSpacing() * LeastMessageLines + 12);
    m_pbMsgSize->setObjectName(QStringLiteral("pbMsgSize"));
    m_pbMsgSize->setAccessibleName(QStringLiteral("Message size"));

    m_cmdClearMessage->setObjectName(QStringLiteral("cmdClearMessage"));
    m_cmdClearMessage->setAccessibleName(QStringLiteral("Clear message"));
    m_cmdClearMessage->setToolTip(QStringLiteral(" Clear the message "));
    m_cmdClearMessage->setIcon(Icons::Get(QStringLiteral("clear")));
    m_cmdClearMessage->setAutoDefault(false);

    auto* counters = new QHBoxLayout;
    counters->setSpacing(4);
    counters->addWidget(m_lblUsed);
    counters->addWidget(NewUnit(QStringLiteral("used"), m_fraMessage));
    counters->addSpacing(14);
    counters->addWidget(m_lblSMSPageCount);
    counters->addWidget(NewUnit(QStringLiteral("SMS"), m_fraMessage));
    counters->addSpacing(14);
    counters->addWidget(m_lblCharsRemaining);
    counters->addWidget(NewUnit(QStringLiteral("left"), m_fraMessage));
    counters->addStretch();
    counters->addWidget(m_cmdClearMessage);

    m_messageLayout = new QVBoxLayout(m_fraMessage);
    m_messageLayout->addWidget(m_txtMessage, 1);
    m_messageLayout->addWidget(m_pbMsgSize);
    m_messageLayout->addLayout(counters);

    connect(m_txtMessage, &MessageEdit::TextChanged, this, &MessagePanel::StateChanged);
    connect(m_cmdClearMessage, &QPushButton::clicked, this, &MessagePanel::ClearPressed);
}

void MessagePanel::BuildTailFrame() {
    m_fraTail->setObjectName(QStringLiteral("fraTail"));
    m_txtEndWidth->setObjectName(QStringLiteral("txtEndWidth"));
    m_txtEndWidth->setAccessibleName(QStringLiteral("Signature"));
    m_cbTails->setObjectName(QStringLiteral("cbTails"));
    m_cbTails->setAccessibleName(QStringLiteral("Message tail"));
    m_cbTails->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_cbTails->setMinimumContentsLength(TailListChars);

    auto* row = new QHBoxLayout(m_fraTail);
    row->addWidget(m_txtEndWidth, 1);
    row->addWidget(m_cbTails, 1);

    new DropGuard(*m_txtEndWidth);
    new WheelGuard(*m_cbTails);  // another tail may cut the message
    connect(m_txtEndWidth, &QLineEdit::textChanged, this, &MessagePanel::StateChanged);
    connect(m_cbTails, &QComboBox::currentIndexChanged, this, &MessagePanel::ShowRemainingChars);
}

CounterLabel* MessagePanel::NewCounter(const QString& name, const QString& toolTip,
                                       const QString& accessible) {
    auto* label = new CounterLabel(m_fraMessage);
    label->setObjectName(name);
    label->setToolTip(toolTip);
    label->setAccessibleName(accessible);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    return label;
}

void MessagePanel::AddRowAboveMessage(QWidget* row) {
    m_messageLayout->insertWidget(0, row);
}

void MessagePanel::InitColours() {
    DefaultBarColour = m_pbMsgSize->BarColour();
}

void MessagePanel::InitMessageSize() {
    m_txtMessage->SetMaxLength(m_outbox.MaxMessageSize);
}

void MessagePanel::InitMessageTails() {
    const QString before = m_cbTails->currentText();
    try {
        const QSignalBlocker quiet(m_cbTails);
        ReadMessageTails();
    } catch (const std::exception& failure) {
        m_log.WriteFailureBriefly(QStringLiteral("InitGrouptabs_Error : "), failure);
    }
    if (m_cbTails->currentText() != before) {
        ShowRemainingChars();
    }
}

void MessagePanel::ReadMessageTails() {
    m_cbTails->clear();
    const auto tails = mdlPhonebook::GetMessageTails(m_phonebook);
    if (tails == nullptr) {
        throw NumberedFailure(engine::Number::ObjectClosed, QStringLiteral("the tails cannot be read"),
                              QStringLiteral("InitMessageTails"));
    }
    int selected = -1;
    for (; !tails->EndOfFile(); tails->MoveNext()) {
        m_cbTails->addItem(Numbers::NullToString(tails->Value(u"mtlText")));
        if (tails->Value(u"mtlDefault").toBool()) {
            selected = m_cbTails->count() - 1;
        }
        m_cbTails->setCurrentIndex(selected);
    }
}

QString MessagePanel::GetTailText() const {
    return BuildTailText(m_txtEndWidth->text(), m_cbTails->currentText());
}

void MessagePanel::ShowRemainingChars() {
    m_outbox.MaxMessageSize = std::max(m_outbox.MaxMessageSize, MessageSize::SinglePartLimit);
    const QString tail = GetTailText();
    const QString text = m_txtMessage->Text();
    const MessageSize size = MessageSize::Measure(text, tail, m_outbox.MaxMessageSize);
    m_pbMsgSize->SetMaximum(size.Available);
    qint16 used = 0;  // for a text whose length does not fit: what remains is counted with that, too
    Trap([&] { used = mdlGSMCharSet::GSMTextLength(text); });
    m_lblUsed->SetNumber(used);
    if (size.IsCut) {
        // Announces the change, so that a complete run happens in here and shows the shortened count.
        Trap([&] { m_txtMessage->CutTo(static_cast<int>(size.Text.size())); });
    }
    m_lblSMSPageCount->SetNumber(size.Parts);
    m_pbMsgSize->SetPosition(m_pbMsgSize->Maximum() - size.Remaining);
    ShowBarColour(size.Parts);
    m_lblCharsRemaining->SetNumber(size.Remaining);
    m_txtMessage->SetUnitsLeft(size.Remaining);
    if (size.Remaining == 0) {
        Trap([this] { m_sound.Beep(); });
    }
}

void MessagePanel::ShowBarColour(qint16 parts) {
    const QColor wanted = parts == 1 ? DefaultBarColour : DarkRed;
    if (m_pbMsgSize->BarColour() != wanted) {
        m_pbMsgSize->SetBarColour(wanted);
    }
}

QString MessagePanel::MessageText() const {
    return m_txtMessage->Text();
}

void MessagePanel::SetMessageText(const QString& text) {
    m_txtMessage->ReplaceText(text);
}

void MessagePanel::CaretToMessageEnd() {
    FormTools::CaretToEnd(*m_txtMessage);
}

QString MessagePanel::SelectedTail() const {
    return m_cbTails->currentText();
}

void MessagePanel::ClearMessage() {
    m_txtMessage->ClearText();
}

void MessagePanel::ResetMessage() {
    m_txtMessage->SetText(QString());
}

void MessagePanel::SelectInMessage(int start, int length) {
    m_txtMessage->Select(start, length);
    m_txtMessage->setFocus();
}

void MessagePanel::FocusMessage() {
    m_txtMessage->setFocus();
}

QString MessagePanel::SignatureText() const {
    return m_txtEndWidth->text();
}

void MessagePanel::SetSignatureText(const QString& text) {
    m_txtEndWidth->setText(text);
}

void MessagePanel::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        DefaultBarColour = palette().color(QPalette::Highlight);
        if (m_pbMsgSize->BarColour() != DarkRed) {
            m_pbMsgSize->SetBarColour(DefaultBarColour);
        }
    }
}
