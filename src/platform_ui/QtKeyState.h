#pragma once

#include "platform/KeyState.h"

/// The keyboard as the window system has it now.
class QtKeyState final : public KeyState {
public:
    [[nodiscard]] bool IsKeyDown(Key key) const override;
};
