#include "compose/SendButton.h"

#include "controls/HeldKeyGuard.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace {

/// How much darker than the highlight the face is: the style draws it with a light sheen, and the text has to
/// stand out from that.
constexpr int FaceDarkness = 125;  // per cent
constexpr int FocusFrameInset = 3;

/// The shape of an icon in one colour.
QIcon Tinted(const QIcon& icon, const QSize& size, double ratio, const QColor& colour) {
    QPixmap shape = icon.pixmap(size, ratio);
    if (!shape.isNull()) {
        QPainter painter(&shape);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(QRect(QPoint(), size), colour);
    }
    return QIcon(shape);
}

}  // namespace

SendButton::SendButton(const QString& text, QWidget* parent) : QPushButton(text, parent) {
    setAutoDefault(false);
}

void SendButton::initStyleOption(QStyleOptionButton* option) const {
    QPushButton::initStyleOption(option);
    if (isDefault() && isEnabled()) {
        const QColor text = palette().color(QPalette::HighlightedText);
        option->palette.setColor(QPalette::Button, palette().color(QPalette::Highlight).darker(FaceDarkness));
        option->palette.setColor(QPalette::ButtonText, text);
        if (!option->icon.isNull()) {
            option->icon = Tinted(option->icon, option->iconSize, devicePixelRatioF(), text);
        }
    }
}

void SendButton::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    painter.drawControl(QStyle::CE_PushButton, option);
    if (hasFocus() && isDefault() && isEnabled()) {
        // The style's own mark of the focus has the colour of the face.
        QPen pen(palette().color(QPalette::HighlightedText));
        pen.setStyle(Qt::DotLine);
        painter.setPen(pen);
        painter.drawRect(
            rect().adjusted(FocusFrameInset, FocusFrameInset, -FocusFrameInset - 1, -FocusFrameInset - 1));
    }
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

void SendButton::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QPushButton::mousePressEvent(event);
        return;
    }
    // The third click of three comes as a new press.
    const auto pause = static_cast<quint64>(QApplication::doubleClickInterval());
    const bool isBurst = m_lastPress != 0 && event->timestamp() - m_lastPress < pause;
    m_lastPress = event->timestamp();
    if (isBurst) {
        event->accept();
        return;
    }
    QPushButton::mousePressEvent(event);
}

void SendButton::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        m_lastPress = event->timestamp();
    }
    event->accept();
}
