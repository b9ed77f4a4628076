#include "shell/MainWindowKeys.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

#include <array>
#include <utility>

namespace {

/// Where the letters and digits of the table stand on a keyboard: numbers of the keys as X11 and Wayland
/// count them, the same for every layout.
struct PlaceOfKey {
    quint32 ScanCode;
    int Key;
};
constexpr std::array Places = {
    PlaceOfKey{26, Qt::Key_E}, PlaceOfKey{27, Qt::Key_R}, PlaceOfKey{41, Qt::Key_F},
    PlaceOfKey{54, Qt::Key_C}, PlaceOfKey{58, Qt::Key_M}, PlaceOfKey{10, Qt::Key_1},
    PlaceOfKey{11, Qt::Key_2}, PlaceOfKey{12, Qt::Key_3}, PlaceOfKey{13, Qt::Key_4},
    PlaceOfKey{14, Qt::Key_5}, PlaceOfKey{15, Qt::Key_6}, PlaceOfKey{16, Qt::Key_7},
    PlaceOfKey{17, Qt::Key_8}, PlaceOfKey{18, Qt::Key_9}, PlaceOfKey{19, Qt::Key_0},
};

bool IsDigit(int key) {
    return key >= Qt::Key_0 && key <= Qt::Key_9;
}

/// The key as the table names it. The row of digits types other signs on many layouts and counts by its place
/// then; a letter key does so only on a layout of another script, since the Latin ones merely have their
/// letters elsewhere.
int KeyOf(const QKeyEvent& event) {
    constexpr int LastLatin = 0x24F;
    constexpr int FirstWithoutSign = 0x01000000;  // Escape, Tab, F4 ...
    const int key = event.key();
    const bool isLatinLetter = key >= Qt::Key_A && key <= Qt::Key_Z;
    const bool isOnPad = event.modifiers().testFlag(Qt::KeypadModifier);
    if (isLatinLetter || IsDigit(key) || key >= FirstWithoutSign || isOnPad) {
        return key;
    }
    for (const PlaceOfKey& place : Places) {
        if (place.ScanCode == event.nativeScanCode() && (IsDigit(place.Key) || key > LastLatin)) {
            return place.Key;
        }
    }
    return key;
}

}  // namespace

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
    const int pressed = KeyOf(event);
    for (const MainWindowKey& key : m_keys) {
        if (key.Key == pressed && key.IsKeypad == isKeypad) {
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
