#include "shell/AlertStrip.h"

#include "controls/Icons.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QPushButton>

namespace {

/// White stands on it with a contrast of 9.4 to 1.
const QColor AlertColour(0x8B, 0x1D, 0x18);

}  // namespace

AlertStrip::AlertStrip(QWidget* parent) : QFrame(parent), m_lblFailureWarning(new QPushButton(this)) {
    setObjectName(QStringLiteral("shaAlert"));
    setAutoFillBackground(true);
    m_lblFailureWarning->setObjectName(QStringLiteral("lblFailureWarning"));
    m_lblFailureWarning->setText(
        QStringLiteral("One or more messags were not delivered. Click here to clear alert."));
    m_lblFailureWarning->setToolTip(QStringLiteral(" Click here to clear this warning "));
    m_lblFailureWarning->setAccessibleName(m_lblFailureWarning->text());
    m_lblFailureWarning->setCursor(Qt::PointingHandCursor);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(4, 2, 4, 2);
    row->addWidget(m_lblFailureWarning);
    row->addStretch(1);
    connect(m_lblFailureWarning, &QAbstractButton::clicked, this, [this] { ShowAlert(false); });
    TakeColours();
}

void AlertStrip::TakeColours() {
    QPalette colours = palette();
    colours.setColor(QPalette::Window, AlertColour);
    colours.setColor(QPalette::Button, AlertColour);
    colours.setColor(QPalette::WindowText, Qt::white);
    colours.setColor(QPalette::ButtonText, Qt::white);
    colours.setColor(QPalette::Mid, AlertColour);  // no outline: it is a label to the eye
    colours.setColor(QPalette::Link, Qt::white);   // the focus ring
    setPalette(colours);
    m_lblFailureWarning->setPalette(colours);
}

bool AlertStrip::event(QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange) {
        TakeColours();
    }
    return QFrame::event(event);
}

void AlertStrip::ShowAlert(bool show) {
    m_lblFailureWarning->setVisible(show);
    setVisible(show);
    if (show) {
        QAccessibleEvent alert(m_lblFailureWarning, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}
