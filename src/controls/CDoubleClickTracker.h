#pragma once

#include <QtGlobal>

class Clock;

/// Tells a double click from two clicks on a control that has no such event of its own.
class CDoubleClickTracker {
public:
    /// `doubleClickTime` in milliseconds: the most that may lie between two presses of a pair.
    CDoubleClickTracker(Clock& clock, int doubleClickTime);

    /// A press at this point, in any unit: true if it and the one before make a double click, which takes no
    /// longer than the double click time and moves no more than 4 units either way. A third press starts a
    /// new pair. The desktop's own tolerances are not asked for: the distance is the same on every screen.
    [[nodiscard]] bool IsDoubleClick(float x, float y);

private:
    void Clear();

    Clock& m_clock;
    float m_lastX;
    float m_lastY;
    qint64 m_lastTime;  // ms; wide enough never to begin anew
    int m_doubleClickTime;
};
