#include "common/ProgressBar.h"

#include <unistd.h>

namespace {
// Back to the start of the line, and clear to its end.
constexpr QStringView NewStart = u"\r\033[K";
}  // namespace

ProgressBar::~ProgressBar() {
    if (m_percent >= 0) {
        m_stream << NewStart;
        m_stream.flush();
    }
}

void ProgressBar::Show(const QString& step, int done, int total) {
    const int percent = total > 0 ? static_cast<int>(100LL * done / total) : 100;
    if (!m_isTerminal || (percent == m_percent && step == m_step)) {
        return;
    }
    m_percent = percent;
    m_step = step;
    const QString filled(Width * percent / 100, u'#');
    m_stream << NewStart << QChar(u'[') << filled.leftJustified(Width) << QStringLiteral("] ")
             << QStringLiteral("%1% ").arg(percent, 3) << step;
    m_stream.flush();
}

bool ProgressBar::IsErrorTerminal() {
    return isatty(STDERR_FILENO) == 1;
}
