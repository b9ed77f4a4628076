#pragma once

#include <QObject>

class QWidget;

/// Keeps what is dragged out of the program's own lists (see IsKeyData) away from a text control: it would
/// write the keys of contacts as text. A text from another program is still welcome.
class DropGuard final : public QObject {
    Q_OBJECT
public:
    /// Lives as long as `control`.
    explicit DropGuard(QWidget& control);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};
