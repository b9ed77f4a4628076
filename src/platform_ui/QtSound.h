#pragma once

#include "platform/Sound.h"

#include <memory>

class Log;
class QSoundEffect;

/// The desktop's own sounds, and sound files through the machine's sound card.
class QtSound final : public Sound {
public:
    /// The log is told once when there is no sound card, or when a file cannot be played.
    explicit QtSound(Log& log);
    ~QtSound() override;

    void Beep() override;
    void Play(const QString& path) override;

private:
    void TellOnce(const QString& line);

    Log& m_log;
    std::unique_ptr<QSoundEffect> m_effect;
    bool m_hasTold = false;
};
