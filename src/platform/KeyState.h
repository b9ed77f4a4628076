#pragma once

/// Whether a key is held down at this very moment, whatever events are still queued.
class KeyState {
public:
    enum class Key { Control, Shift, Alt };

    virtual ~KeyState() = default;
    /// Left or right one alike.
    [[nodiscard]] virtual bool IsKeyDown(Key key) const = 0;
};
