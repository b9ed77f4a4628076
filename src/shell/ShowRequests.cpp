#include "shell/ShowRequests.h"

#include "app/Machine.h"
#include "app/mdlInstance.h"
#include "platform_ui/Instance.h"

#include <QWidget>

#include <utility>

ShowRequests::ShowRequests(QWidget& form, const Machine& machine, std::function<void()> onShow)
    : m_form(form), m_machine(machine), m_onShow(std::move(onShow)), m_proc(m_onShow) {}

ShowRequests::~ShowRequests() {
    m_machine.OneCopy.SetOnShow({});
}

WindowHandle ShowRequests::Handle() const {
    return static_cast<WindowHandle>(m_form.winId());
}

void ShowRequests::SetAppWindowStyle() {
    m_machine.Desktop.SetAppWindowStyle(Handle(), true);
}

void ShowRequests::SubclassMainWindow() {
    m_machine.Desktop.SetClassName(Handle(), mdlInstance::FormClass);
    m_proc.SubclassMainWindow(Handle());
    m_machine.OneCopy.SetOnShow(m_onShow);
}

void ShowRequests::UnsubclassMainWindow() {
    m_proc.UnsubclassMainWindow(Handle());
    m_machine.OneCopy.SetOnShow({});
}

void ShowRequests::ReleaseInstance() {
    m_machine.OneCopy.Release();
}

void ShowRequests::DeleteInstanceMarker() {
    mdlInstance::DeleteInstanceMarker(m_machine);
}

bool ShowRequests::ForceForeground() {
    if (m_form.isVisible() && !m_form.isMinimized() && m_form.isActiveWindow()) {
        return true;
    }
    m_form.setWindowState(m_form.windowState() & ~Qt::WindowMinimized);
    m_form.show();
    m_form.raise();
    m_form.activateWindow();
    return m_machine.Desktop.ForceForeground(Handle());
}
