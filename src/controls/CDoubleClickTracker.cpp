#include "controls/CDoubleClickTracker.h"

#include "platform/Clock.h"

#include <cmath>

namespace {

constexpr float Nowhere = -1000;
constexpr float MaxDistance = 4;

}  // namespace

CDoubleClickTracker::CDoubleClickTracker(Clock& clock, int doubleClickTime)
    : m_clock(clock), m_doubleClickTime(doubleClickTime) {
    Clear();
}

bool CDoubleClickTracker::IsDoubleClick(float x, float y) {
    const qint64 now = m_clock.Ticks();
    const bool isPair = now - m_lastTime <= m_doubleClickTime && std::abs(x - m_lastX) <= MaxDistance &&
                        std::abs(y - m_lastY) <= MaxDistance;
    m_lastTime = now;
    m_lastX = x;
    m_lastY = y;
    if (isPair) {
        Clear();
    }
    return isPair;
}

void CDoubleClickTracker::Clear() {
    m_lastX = Nowhere;
    m_lastY = Nowhere;
    m_lastTime = 0;
}
