#include "app/ExitPath.h"

#include "core/Log.h"
#include "store/Phonebook.h"

#include <utility>

ExitPath::ExitPath(PhonebookState& phonebook, Log& log, std::function<void()> unloadForms,
                   std::function<void()> endProcess)
    : m_phonebook(phonebook),
      m_log(log),
      m_unloadForms(std::move(unloadForms)),
      m_endProcess(std::move(endProcess)) {}

StepTable ExitPath::Steps() {
    return {
        {QStringLiteral("UnloadForms"), m_unloadForms},
        {QStringLiteral("ClosePhonebook"),
         [this] {
             if (m_phonebook.PhonebookDB != nullptr && m_phonebook.PhonebookDB->IsConnected()) {
                 m_phonebook.PhonebookDB->CloseDatabase();
             }
         }},
        {QStringLiteral("LogTerminated"), [this] { m_log.Write(QStringLiteral("Application Terminated")); }},
        {QStringLiteral("EndProcess"), m_endProcess},
    };
}

void ExitPath::ApplicationTerminate() {
    if (std::exchange(m_isTerminated, true)) {
        return;
    }
    RunSteps(Steps());
}
