#include "compose/CounterLabel.h"

#include <QEvent>

void CounterLabel::SetNumber(int number) {
    const QString digits = QString::number(number);
    if (digits == text()) {
        return;
    }
    const bool isOtherWidth = digits.size() != text().size();
    setText(digits);
    setAccessibleDescription(digits);
    if (isOtherWidth) {
        FitToDigits();
    }
}

void CounterLabel::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        FitToDigits();
    }
}

void CounterLabel::FitToDigits() {
    const QString widest(text().size(), u'0');
    setFixedSize(fontMetrics().horizontalAdvance(widest) + 1, fontMetrics().height());
}
