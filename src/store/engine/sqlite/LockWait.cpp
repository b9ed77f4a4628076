#include "store/engine/sqlite/LockWait.h"

#include "platform/Clock.h"

#include <QRandomGenerator>

namespace engine::sqlite {

void LockWait::Start() {
    m_started = m_clock.Ticks();
}

bool LockWait::Pause() {
    if (m_clock.Ticks() - m_started >= MaxWait) {
        return false;
    }
    m_clock.Sleep(QRandomGenerator::global()->bounded(MinPause, MaxPause + 1));
    return true;
}

}  // namespace engine::sqlite
