#include "shell/Application.h"

#include "core/Log.h"
#include "core/Product.h"
#include "core/Trap.h"
#include "platform/MessageBoxes.h"

#include <QScopedValueRollback>

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {
    // The process ends by the exit path, not because a window was closed.
    setQuitOnLastWindowClosed(false);
    setOrganizationName(Product::Company);
    setApplicationName(QStringLiteral("larkspan"));
    setApplicationVersion(QStringLiteral(LARKSPAN_VERSION));
    setDesktopFileName(QStringLiteral("larkspan"));
}

void Application::SetLastResort(Log* log, MessageBoxes* boxes) {
    m_log = log;
    m_boxes = boxes;
}

bool Application::notify(QObject* receiver, QEvent* event) {
    try {
        return m_keys.Deliver(receiver, event,
                              [this](QObject* to, QEvent* what) { return QApplication::notify(to, what); });
    } catch (const std::exception& failure) {
        Report(&failure);
    } catch (...) {
        Report(nullptr);
    }
    return false;
}

void Application::Report(const std::exception* failure) noexcept {
    if (m_log != nullptr && failure != nullptr) {
        m_log->WriteFailure(QStringLiteral("Unhandled Error: "), *failure);
    } else if (m_log != nullptr) {
        m_log->Write(QStringLiteral("Unhandled Error: 0 unknown"));
    }
    // While the box is open others may follow, from a timer say: they are logged, and one box is enough.
    if (m_boxes == nullptr || m_isReporting) {
        return;
    }
    const QScopedValueRollback<bool> reporting(m_isReporting, true);
    Trap([this] {
        m_boxes->Show(
            {Product::AppTitle,
             QStringLiteral("Something went wrong, and the last action may not have been completed."),
             BoxIcon::Critical, BoxButtons::Ok});
    });
}
