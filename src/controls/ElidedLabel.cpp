#include "controls/ElidedLabel.h"

#include "controls/PlainToolTip.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize ElidedLabel::sizeHint() const {
    return minimumSizeHint();
}

QSize ElidedLabel::minimumSizeHint() const {
    return {4 * fontMetrics().averageCharWidth(), fontMetrics().height() + 2};
}

QString ElidedLabel::Line() const {
    return text().simplified();
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && fontMetrics().horizontalAdvance(Line()) > width()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), PlainToolTip(text()), this);
        return true;
    }
    return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    const int flags = static_cast<int>(Qt::AlignVCenter | Qt::TextSingleLine);
    const QString shown = fontMetrics().elidedText(Line(), Qt::ElideRight, width());
    painter.drawText(
        rect(), flags | static_cast<int>(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft)), shown);
}
