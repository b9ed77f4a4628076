#include "app/RealMachine.h"

#include "core/CodePage.h"

RealMachine::RealMachine()
    : m_windows(MakeWindows()), m_instance(LocalInstance::RuntimeFolder(), LocalInstance::SessionName()) {}

Machine RealMachine::Seams() {
    return {m_clock, m_pump,    m_keys,   m_sound, m_notices,  m_tray,     m_web,    m_boxes,
            m_door,  m_folders, m_drives, m_files, *m_windows, m_instance, m_engine, CodePage::System(),
            m_log};
}
