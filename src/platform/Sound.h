#pragma once

/// What the program makes heard.
class Sound {
public:
    virtual ~Sound() = default;
    /// The system's own short beep.
    virtual void Beep() = 0;
};
