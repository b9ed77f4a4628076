#pragma once

#include <QString>

/// What the program makes heard.
class Sound {
public:
    virtual ~Sound() = default;
    /// The system's own short beep.
    virtual void Beep() = 0;
    /// Plays a sound file and returns at once. A file that is not there, or a machine without a sound card,
    /// plays nothing.
    virtual void Play(const QString& path) = 0;
};
