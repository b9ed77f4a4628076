#include "compose/QuickfireRow.h"

#include "controls/Icons.h"

#include <QHBoxLayout>
#include <QPushButton>

QuickfireRow::QuickfireRow(QWidget* parent) : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);

    QPushButton* previous = NewButton(QStringLiteral("cmdQBPrevious"), QString());
    previous->setToolTip(QStringLiteral(" Previous page of buttons "));
    previous->setAccessibleName(QStringLiteral("Previous page of quickfire buttons"));
    previous->setIcon(Icons::Get(QStringLiteral("chevron-left")));
    row->addWidget(previous);
    for (int index = 0; index < ButtonCount; ++index) {
        const QString digit = QString::number((index + 1) % ButtonCount);
        QPushButton* button = NewButton(QStringLiteral("cmdQuickFire%1").arg(index), digit);
        button->setAccessibleName(QStringLiteral("Quickfire button ") + digit);
        row->addWidget(button);
        m_cmdQuickFire[static_cast<size_t>(index)] = button;
    }
    QPushButton* next = NewButton(QStringLiteral("cmdNextQBPage"), QString());
    next->setToolTip(QStringLiteral(" Next page of buttons "));
    next->setAccessibleName(QStringLiteral("Next page of quickfire buttons"));
    next->setIcon(Icons::Get(QStringLiteral("chevron-right")));
    row->addWidget(next);
    row->addStretch();
}

QPushButton* QuickfireRow::NewButton(const QString& name, const QString& text) {
    auto* button = new QPushButton(text, this);
    button->setObjectName(name);
    button->setAutoDefault(false);
    button->setEnabled(false);
    const int side = button->sizeHint().height();
    button->setMinimumWidth(side);
    button->setMaximumWidth(side + side / 2);
    button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    return button;
}
