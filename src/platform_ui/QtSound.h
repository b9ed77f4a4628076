#pragma once

#include "platform/Sound.h"

/// The desktop's own sounds.
class QtSound final : public Sound {
public:
    void Beep() override;
};
