#include "platform_ui/QtKeyState.h"

#include <QGuiApplication>

bool QtKeyState::IsKeyDown(Key key) const {
    const Qt::KeyboardModifiers down = QGuiApplication::queryKeyboardModifiers();
    switch (key) {
        case Key::Control:
            return down.testFlag(Qt::ControlModifier);
        case Key::Shift:
            return down.testFlag(Qt::ShiftModifier);
        case Key::Alt:
            return down.testFlag(Qt::AltModifier);
    }
    return false;
}
