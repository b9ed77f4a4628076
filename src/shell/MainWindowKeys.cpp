#include "shell/MainWindowKeys.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

#include <utility>

MainWindowKeys::MainWindowKeys(QWidget& window, std::vector<MainWindowKey> keys)
    : QObject(&window), m_window(window), m_keys(std::move(keys)) {
    // On the application: the controls must not see these keys first.
    QCoreApplication::instance()->installEventFilter(this);
}

const MainWindowKey* MainWindowKeys::Find(const QKeyEvent& event) const {
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    if ((modifiers & ~Qt::KeypadModifier) != Qt::AltModifier) {
        return nullptr;
    }
    const bool isKeypad = modifiers.testFlag(Qt::KeypadModifier);
    for (const MainWindowKey& key : m_keys) {
        if (key.Key == event.key() && key.IsKeypad == isKeypad) {
            return &key;
        }
    }
    return nullptr;
}

void MainWindowKeys::Do(const MainWindowKey& key) {
    if (key.Run) {
        key.Run();
    } else if (auto* button = m_window.findChild<QAbstractButton*>(key.Button)) {
        button->click();
    }
}

bool MainWindowKeys::eventFilter(QObject* watched, QEvent* event) {
    const bool isPress = event->type() == QEvent::KeyPress;
    if (!isPress && event->type() != QEvent::ShortcutOverride) {
        return false;
    }
    const auto* widget = qobject_cast<const QWidget*>(watched);
    if (widget == nullptr || widget->window() != &m_window) {
        return false;
    }
    const MainWindowKey* key = Find(*static_cast<const QKeyEvent*>(event));
    if (key == nullptr) {
        return false;
    }
    event->accept();  // an accepted override comes back as a press instead of a mnemonic
    if (isPress) {
        Do(*key);
    }
    return true;
}
