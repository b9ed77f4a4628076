#include "compose/QuickfireRow.h"

#include "controls/Icons.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPushButton>

namespace {

constexpr int Gap = 4;

}  // namespace

QuickfireRow::QuickfireRow(QWidget* parent)
    : QWidget(parent), m_cmdQBPrevious(NewButton(QStringLiteral("cmdQBPrevious"), QString())) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Gap);

    m_cmdQBPrevious->setIcon(Icons::Get(QStringLiteral("chevron-left")));
    m_cmdQBPrevious->setToolTip(QStringLiteral(" Previous page of buttons "));
    m_cmdQBPrevious->setAccessibleName(QStringLiteral("Previous page of quickfire buttons"));
    row->addWidget(m_cmdQBPrevious);
    for (int index = 0; index < ButtonCount; ++index) {
        const QString digit = QString::number((index + 1) % ButtonCount);
        QPushButton* button = NewButton(QStringLiteral("cmdQuickFire%1").arg(index), digit);
        button->setAccessibleName(QStringLiteral("Quickfire button ") + digit);
        row->addWidget(button);
        m_cmdQuickFire[static_cast<size_t>(index)] = button;
    }
    m_cmdNextQBPage = NewButton(QStringLiteral("cmdNextQBPage"), QString());
    m_cmdNextQBPage->setIcon(Icons::Get(QStringLiteral("chevron-right")));
    m_cmdNextQBPage->setToolTip(QStringLiteral(" Next page of buttons "));
    m_cmdNextQBPage->setAccessibleName(QStringLiteral("Next page of quickfire buttons"));
    row->addWidget(m_cmdNextQBPage);
    row->addStretch();
    SizeButtons();
}

QPushButton* QuickfireRow::NewButton(const QString& name, const QString& text) {
    auto* button = new QPushButton(text, this);
    button->setObjectName(name);
    button->setAutoDefault(false);
    button->setEnabled(false);
    return button;
}

void QuickfireRow::SizeButtons() {
    const int side = m_cmdQuickFire[0] != nullptr ? m_cmdQuickFire[0]->sizeHint().height() : 0;
    const QList<QPushButton*> buttons = findChildren<QPushButton*>();
    for (QPushButton* button : buttons) {
        button->setFixedSize(side + Gap, side);
    }
}

void QuickfireRow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        SizeButtons();
    }
}
