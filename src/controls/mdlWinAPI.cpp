#include "controls/mdlWinAPI.h"

#include "core/Trap.h"
#include "platform/EventPump.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <QWidget>

namespace {

/// The first pass brings in what the window system has sent, the second what came of it.
constexpr int FlushPasses = 2;

/// Takes the mouse input of a window away as long as it lives.
class MouseSieve final : public QObject {
public:
    explicit MouseSieve(QWidget& window) : m_window(&window) {
        QCoreApplication::instance()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (!IsMouse(event->type()) || !IsInside(watched)) {
            return false;
        }
        event->accept();  // an event that nobody took would go on to the parents
        return true;
    }

private:
    static bool IsMouse(QEvent::Type type) {
        return type == QEvent::MouseMove || type == QEvent::MouseButtonPress ||
               type == QEvent::MouseButtonRelease || type == QEvent::MouseButtonDblClick;
    }
    [[nodiscard]] bool IsInside(const QObject* target) const {
        // Native windows are passed over: the toolkit's own bookkeeping of the buttons happens there.
        if (m_window == nullptr || !target->isWidgetType()) {
            return false;
        }
        const auto* widget = static_cast<const QWidget*>(target);
        return widget == m_window || m_window->isAncestorOf(widget);
    }

    QPointer<QWidget> m_window;
};

}  // namespace

void mdlWinAPI::FlushMouseMessages(QWidget& window, EventPump& pump) {
    const MouseSieve sieve(window);
    Trap([&] { pump.Process(FlushPasses); });
}
