#include "app/EntryRoutine.h"

#include "app/AppContext.h"
#include "app/CommandLine.h"
#include "app/FolderReport.h"
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
#include "platform/MessageBoxes.h"
#include "platform/SuppliedFiles.h"
#include "platform_ui/Instance.h"

#include <optional>

namespace {

/// A setting with ".mdb" anywhere in it names a file and no folder.
bool IsTakenForFile(const QString& folder) {
    return mdlOutbox::OutboxFile(folder) == folder;
}

QString OutboxIn(const QString& folder) {
    return Text::WithBackslash(folder) + QStringLiteral("smsmessages.mdb");
}

QString PhonebookIn(const QString& folder) {
    return Text::WithBackslash(folder) + QStringLiteral("smscontacts.mdb");
}

}  // namespace

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
        if (IsOver()) {
            return false;
        }
    }
    if (m_screens.StateOfMain() == MainState::Open) {
        return true;
    }
    m_machine.Boxes.Show({Product::AppTitle,
                          QStringLiteral("The main window could not be opened. The program ends now."),
                          BoxIcon::Critical, BoxButtons::Ok});
    End(StartFailed);
    return false;
}

void EntryRoutine::End(int status) {
    m_isEnding = true;
    m_exitStatus = status;
}

// The exit path cannot end an event loop that does not run yet, so a window closed during the start is looked
// for here.
bool EntryRoutine::IsOver() const {
    return m_isEnding || m_screens.StateOfMain() == MainState::Unloaded;
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
        End(0);
        Trap([this] { RefuseDataFolderOfSecondStart(); });
        mdlInstance::ActivatePreviousInstance(m_machine);
    }
}

void EntryRoutine::RefuseDataFolderOfSecondStart() {
    Settings settings;
    settings.SetApplication(Product::AppTitle);
    const QString inUse = settings.GetValue(SettingNames::SectionDB, SettingNames::Outbox, QString());
    const QString& asked = m_commandLine.DataFolder;
    if (!asked.isEmpty() && mdlOutbox::OutboxFile(inUse) != OutboxIn(asked)) {
        m_exitStatus = OptionUnusable;
        m_machine.AppLog.Write(
            QStringLiteral("--data is not used: the running copy keeps the folder it works with."));
    }
}

void EntryRoutine::CreateSettings() {
    Settings& settings = m_context.AppSettings;
    settings.SetApplication(Product::AppTitle);
    if (!m_commandLine.DataFolder.isEmpty()) {
        TakeDataFolder();
    }
    FolderReport::Write(m_machine, settings.FileName());
}

void EntryRoutine::TakeDataFolder() {
    Settings& settings = m_context.AppSettings;
    const QString& folder = m_commandLine.DataFolder;
    const bool hasPhonebook = m_machine.Files.Exists(PhonebookIn(folder));
    const QString contacts = settings.GetValue(SettingNames::SectionDB, SettingNames::Contacts, QString());
    if (!hasPhonebook && !m_machine.Files.Exists(contacts)) {
        End(OptionUnusable);
        const QString text =
            QStringLiteral("There is no smscontacts.mdb in %1.\r\nThe settings stay as they are.");
        m_machine.Boxes.Show({Product::AppTitle, text.arg(folder), BoxIcon::Critical, BoxButtons::Ok});
        return;
    }
    settings.SetValue(SettingNames::SectionDB, SettingNames::Outbox,
                      IsTakenForFile(folder) ? OutboxIn(folder) : folder);
    if (hasPhonebook) {
        // In a folder the phonebook is found by itself, beside a file it is not.
        settings.SetValue(SettingNames::SectionDB, SettingNames::Contacts,
                          IsTakenForFile(folder) ? PhonebookIn(folder) : QString());
    }
    mdlSetupWizard::SetSetupFinished(settings);
}

void EntryRoutine::CheckSetupWizard() {
    if (!mdlSetupWizard::IsSetupWizardDue(m_context.AppSettings, m_machine.Files, m_commandLine)) {
        return;
    }
    m_context.AppBusyState.SetAppBusyState(Busy::SetupWizard);
    std::optional<bool> isFinished;
    Trap([&] { isFinished = m_screens.RunSetupWizard(); });
    if (isFinished == false) {
        End(StartFailed);
        return;
    }
    // A wizard that could not be shown is passed over, and stays due.
    if (isFinished) {
        mdlSetupWizard::SetSetupFinished(m_context.AppSettings);
    }
    m_context.AppBusyState.SetAppBusyState(Busy::StartingUp);
}

void EntryRoutine::ShowSplash() {
    Trap([this] { m_screens.ShowSplash(); });
    Trap([this] { m_screens.RepaintSplash(); });
    m_machine.Pump.Process(2);
}

void EntryRoutine::OpenOutbox() {
    constexpr qint16 SmallestMessageSize = 160;
    m_context.MaxMessageSize = SmallestMessageSize;
    mdlOutbox::OpenOutbox(m_context.Outbox);
}

void EntryRoutine::RepaintSplash() {
    Trap([this] { m_screens.RepaintSplash(); });
    m_machine.Pump.Process(3);
}

void EntryRoutine::CheckPhonebookWizard() {
    if (mdlSetupWizard::IsPhonebookWizardDue(m_context, m_context.AppSettings, m_commandLine)) {
        m_machine.Pump.Process(3);
        m_screens.RunPhonebookWizard();
    }
}

void EntryRoutine::BindHelpFile() {
    const QString path = FindSuppliedFile(m_machine.Places, m_machine.Files, QStringLiteral("larkspan.chm"));
    if (!path.isEmpty()) {
        m_context.HelpFile = path;
    }
}

void EntryRoutine::DropSplash() {
    Trap([this] { m_screens.HideSplash(); });
    Trap([this] { m_machine.Pump.Process(4); });
    Trap([this] { m_screens.DropSplash(); });
}

void EntryRoutine::ShowMain() {
    const StepTable calls = {
        {QStringLiteral("Show"), [this] { m_screens.ShowMain(); }},
        {QStringLiteral("ProcessEvents"), [this] { m_machine.Pump.Process(2); }},
        {QStringLiteral("ContactListFocus"), [this] { m_screens.ContactListFocus(true); }},
        {QStringLiteral("Repaint"), [this] { m_screens.RepaintMain(); }},
        {QStringLiteral("ProcessEventsAgain"), [this] { m_machine.Pump.Process(2); }},
    };
    for (const NamedStep& call : calls) {
        if (!IsOver()) {
            Trap(call.Run);
        }
    }
}
