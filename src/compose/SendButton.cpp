#include "compose/SendButton.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionButton>
#include <QStylePainter>

bool IsPressKey(const QKeyEvent& key) {
    switch (key.key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
        case Qt::Key_Select:
            return true;
        default:
            return false;
    }
}

SendButton::SendButton(const QString& text, QWidget* parent) : QPushButton(text, parent) {
    setAutoDefault(false);
}

void SendButton::initStyleOption(QStyleOptionButton* option) const {
    QPushButton::initStyleOption(option);
    if (isDefault() && isEnabled()) {
        option->palette.setColor(QPalette::Button, palette().color(QPalette::Highlight));
        option->palette.setColor(QPalette::ButtonText, palette().color(QPalette::HighlightedText));
    }
}

void SendButton::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    painter.drawControl(QStyle::CE_PushButton, option);
}

void SendButton::keyPressEvent(QKeyEvent* event) {
    if (IsPressKey(*event) && event->isAutoRepeat()) {
        event->accept();
        return;
    }
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        event->accept();
        click();
        return;
    }
    QPushButton::keyPressEvent(event);
}

void SendButton::mouseDoubleClickEvent(QMouseEvent* event) {
    event->accept();
}
