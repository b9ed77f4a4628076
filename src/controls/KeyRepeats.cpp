#include "controls/KeyRepeats.h"

#include <QKeyEvent>

namespace {

constexpr quint64 SameMoment = 1;  // ms

/// A press as it came, but marked.
class RepeatedKey final : public QKeyEvent {
public:
    explicit RepeatedKey(const QKeyEvent& press) : QKeyEvent(press) { m_autoRepeat = true; }
};

}  // namespace

bool KeyRepeats::Deliver(QObject* receiver, QEvent* event, const Delivery& deliver) {
    // Keys come to the window first, and only from there to a widget.
    if (!receiver->isWindowType()) {
        return deliver(receiver, event);
    }
    if (event->type() == QEvent::KeyRelease) {
        const auto* const release = static_cast<const QKeyEvent*>(event);
        m_releasedKey = release->nativeScanCode();
        m_releasedAt = release->timestamp();
    } else if (event->type() == QEvent::ShortcutOverride && IsRepeat(*static_cast<const QKeyEvent*>(event))) {
        event->accept();
        return true;
    } else if (event->type() == QEvent::KeyPress) {
        const auto* const press = static_cast<const QKeyEvent*>(event);
        if (!press->isAutoRepeat() && IsRepeat(*press)) {
            RepeatedKey marked(*press);
            const bool result = deliver(receiver, &marked);
            event->setAccepted(marked.isAccepted());
            return result;
        }
    }
    return deliver(receiver, event);
}

bool KeyRepeats::IsRepeat(const QKeyEvent& press) const {
    return press.isAutoRepeat() ||
           (m_releasedAt != 0 && press.nativeScanCode() == m_releasedKey &&
            press.timestamp() >= m_releasedAt && press.timestamp() - m_releasedAt <= SameMoment);
}
