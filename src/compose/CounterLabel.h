#pragma once

#include <QLabel>

/// A label that holds nothing but a number, which changes with every key. Its size follows the number of
/// digits, so that the layouts around it are at rest while a number only counts up or down.
class CounterLabel final : public QLabel {
    Q_OBJECT
public:
    using QLabel::QLabel;

    /// Shows the number in plain decimal.
    void SetNumber(int number);

protected:
    void changeEvent(QEvent* event) override;

private:
    void FitToDigits();
};
