#include "app/EntryRoutine.h"

#include "app/AppContext.h"
#include "app/CommandLine.h"
#include "app/Machine.h"
#include "app/mdlInstance.h"
#include "app/mdlSetupWizard.h"
#include "core/Dates.h"
#include "core/Log.h"
#include "core/Product.h"
#include "core/TextRules.h"
#include "platform/Clock.h"
#include "platform/EventPump.h"
#include "platform/Folders.h"
#include "platform/LocalFiles.h"
#include "platform_ui/Instance.h"

EntryRoutine::EntryRoutine(AppContext& context, const Machine& machine, EntryScreens& screens,
                           const CommandLine& commandLine)
    : m_context(context), m_machine(machine), m_screens(screens), m_commandLine(commandLine) {}

StepTable EntryRoutine::Steps() {
    return {
        {QStringLiteral("StartFileLog"), [this] { StartFileLog(); }},
        {QStringLiteral("CheckPreviousInstance"), [this] { CheckPreviousInstance(); }},
        {QStringLiteral("SetBusyStartingUp"),
         [this] { m_context.AppBusyState.SetAppBusyState(Busy::StartingUp); }},
        {QStringLiteral("ReadLocaleCountry"), [this] { m_context.ReadLocaleCountry(); }},
        {QStringLiteral("CreateSettings"), [this] { CreateSettings(); }},
        {QStringLiteral("CheckSetupWizard"), [this] { CheckSetupWizard(); }},
        {QStringLiteral("ProcessEvents"), [this] { m_machine.Pump.Process(4); }},
        {QStringLiteral("ShowSplash"), [this] { ShowSplash(); }},
        {QStringLiteral("OpenOutbox"), [this] { OpenOutbox(); }},
        {QStringLiteral("RepaintSplash"), [this] { RepaintSplash(); }},
        {QStringLiteral("LoadSortBy"), [this] { m_context.LoadSortBy(); }},
        {QStringLiteral("OpenPhonebook"), [this] { mdlPhonebook::OpenPhonebook(m_context.Phonebook); }},
        {QStringLiteral("CheckPhonebookWizard"), [this] { CheckPhonebookWizard(); }},
        {QStringLiteral("BindHelpFile"), [this] { BindHelpFile(); }},
        {QStringLiteral("LoadMain"), [this] { m_screens.LoadMain(); }},
        {QStringLiteral("WriteInstanceHandle"),
         [this] { mdlInstance::WriteInstanceHandle(m_machine, m_screens.MainHandle()); }},
        {QStringLiteral("DropSplash"), [this] { DropSplash(); }},
        {QStringLiteral("SetBusyIdle"), [this] { m_context.AppBusyState.SetAppBusyState(Busy::Idle); }},
        {QStringLiteral("ShowMain"), [this] { ShowMain(); }},
    };
}

bool EntryRoutine::Run() {
    for (const NamedStep& step : Steps()) {
        Trap(step.Run);
        if (m_isEnding) {
            return false;
        }
    }
    return true;
}

void EntryRoutine::StartFileLog() {
    if (!m_commandLine.IsErrorLog()) {
        return;
    }
    m_machine.AppLog.LogToFile(Text::WithBackslash(m_machine.Places.ApplicationFolder()) +
                               QStringLiteral("applog.txt"));
    m_machine.AppLog.Write(QStringLiteral("Application started at ") +
                           Dates::Format(m_machine.Time.Now(), QStringLiteral("dd/mmm/yyyy hh:nn:ss")));
}

void EntryRoutine::CheckPreviousInstance() {
    if (m_machine.OneCopy.IsPreviousInstance()) {
        m_isEnding = true;
        mdlInstance::ActivatePreviousInstance(m_machine);
    }
}

void EntryRoutine::CreateSettings() {
    Settings& settings = m_context.AppSettings;
    settings.SetApplication(Product::AppTitle);
    if (!m_commandLine.DataFolder.isEmpty()) {
        settings.SetValue(SettingNames::SectionDB, SettingNames::Outbox, m_commandLine.DataFolder);
        settings.SetValue(SettingNames::SectionDB, SettingNames::Contacts, QString());
        mdlSetupWizard::SetSetupFinished(settings);
    }
}

void EntryRoutine::CheckSetupWizard() {
    if (!mdlSetupWizard::IsSetupWizardDue(m_context.AppSettings, m_machine.Files, m_commandLine)) {
        return;
    }
    m_context.AppBusyState.SetAppBusyState(Busy::SetupWizard);
    bool isFinished = false;
    Trap([&] { isFinished = m_screens.RunSetupWizard(); });
    if (isFinished) {
        mdlSetupWizard::SetSetupFinished(m_context.AppSettings);
    } else {
        m_isEnding = true;
    }
}

void EntryRoutine::ShowSplash() {
    m_screens.ShowSplash();
    m_screens.RepaintSplash();
    m_machine.Pump.Process(2);
}

void EntryRoutine::OpenOutbox() {
    constexpr qint16 SmallestMessageSize = 160;
    m_context.MaxMessageSize = SmallestMessageSize;
    mdlOutbox::OpenOutbox(m_context.Outbox);
}

void EntryRoutine::RepaintSplash() {
    m_screens.RepaintSplash();
    m_machine.Pump.Process(3);
}

void EntryRoutine::CheckPhonebookWizard() {
    if (mdlSetupWizard::IsPhonebookWizardDue(m_context, m_context.AppSettings, m_commandLine)) {
        m_machine.Pump.Process(3);
        m_screens.RunPhonebookWizard();
    }
}

void EntryRoutine::BindHelpFile() {
    const QString path =
        Text::WithBackslash(m_machine.Places.ApplicationFolder()) + QStringLiteral("larkspan.chm");
    if (m_machine.Files.Exists(path)) {
        m_context.HelpFile = path;
    }
}

void EntryRoutine::DropSplash() {
    m_screens.HideSplash();
    m_machine.Pump.Process(4);
    m_screens.DropSplash();
}

void EntryRoutine::ShowMain() {
    m_screens.ShowMain();
    m_machine.Pump.Process(2);
    m_screens.ContactListFocus(true);
    m_screens.RepaintMain();
    m_machine.Pump.Process(2);
}
