#include "controls/ShrinkButton.h"

#include "controls/Icons.h"

#include <QStyleOptionToolButton>

ShrinkButton::ShrinkButton(const QString& name, const QString& icon, const QString& word, const QString& tip,
                           QWidget* parent)
    : QToolButton(parent) {
    setObjectName(name);
    setText(word);
    setToolTip(tip);
    setAccessibleName(tip.trimmed());
    setAutoRaise(!icon.isEmpty());
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    if (!icon.isEmpty()) {
        setIcon(Icons::Get(icon));
    }
    setToolButtonStyle(icon.isEmpty() ? Qt::ToolButtonTextOnly : Qt::ToolButtonTextBesideIcon);
}

QSize ShrinkButton::SizeFor(Qt::ToolButtonStyle style) const {
    QStyleOptionToolButton option;
    initStyleOption(&option);
    option.toolButtonStyle = style;
    const int wordWidth = fontMetrics().horizontalAdvance(text()) + fontMetrics().averageCharWidth();
    QSize content(option.iconSize.width(), qMax(option.iconSize.height(), fontMetrics().height()));
    if (style == Qt::ToolButtonTextBesideIcon) {
        content.rwidth() += wordWidth;
    } else if (style == Qt::ToolButtonTextOnly) {
        content.setWidth(wordWidth);
    }
    return this->style()->sizeFromContents(QStyle::CT_ToolButton, &option, content, this);
}

QSize ShrinkButton::sizeHint() const {
    return SizeFor(icon().isNull() ? Qt::ToolButtonTextOnly : Qt::ToolButtonTextBesideIcon);
}

QSize ShrinkButton::minimumSizeHint() const {
    return SizeFor(icon().isNull() ? Qt::ToolButtonTextOnly : Qt::ToolButtonIconOnly);
}

void ShrinkButton::resizeEvent(QResizeEvent* event) {
    QToolButton::resizeEvent(event);
    if (!icon().isNull()) {
        const bool isRoomy = width() >= sizeHint().width();
        setToolButtonStyle(isRoomy ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
    }
}
