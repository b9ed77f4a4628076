#include "shell/frmMain.h"

#include "addressbook/PhonebookArea.h"
#include "app/AppContext.h"
#include "app/ExitPath.h"
#include "app/Machine.h"
#include "compose/ComposeArea.h"
#include "controls/FormTools.h"
#include "core/Log.h"
#include "platform/Clock.h"
#include "platform/EventPump.h"
#include "setup/AccessPasswords.h"
#include "shell/AboutBox.h"
#include "shell/BackgroundDrag.h"
#include "shell/CommandStrip.h"
#include "shell/DeliveryArea.h"
#include "shell/FormColours.h"
#include "shell/HistoryOpening.h"
#include "shell/MainLayout.h"
#include "shell/MainWindowKeys.h"
#include "shell/ShowRequests.h"
#include "shell/TipOfDay.h"
#include "shell/TrayArea.h"

#include <QApplication>
#include <QCloseEvent>

frmMain::frmMain(AppContext& context, const Machine& machine, const CommandLine& commandLine)
    : m_context(context),
      m_machine(machine),
      m_commandLine(commandLine),
      m_commands(new CommandStrip),
      m_phonebook(new PhonebookArea({context.Phonebook, context.AddressContacts, context.SortBy,
                                     context.LocaleCountry, IsInitialising, *this, machine.Door,
                                     machine.Boxes, machine.Pump, machine.AppLog, machine.Time,
                                     machine.Beeper, context.AppSettings})),
      m_compose(new ComposeArea(
          {context.Outbox, context.Phonebook, context.AddressContacts, context.RecipientContacts,
           context.History, context.MessageTracker, context.AppBusyState, context.SortBy, *this, machine.Door,
           machine.Keys, machine.Beeper, machine.Pump, machine.AppLog, machine.Time, context.AppSettings})),
      m_delivery(std::make_unique<DeliveryArea>(
          context, *this, [this] { ShowAlert(true); }, [this] { return m_tray->Place(); })),
      m_layout(new MainLayout(*this, m_commands, m_phonebook, m_compose, m_delivery->Alert())),
      m_passwords(
          std::make_unique<AccessPasswords>(context, machine.Door, machine.Pump, machine.Time, *this)),
      m_history(std::make_unique<HistoryOpening>(
          context, machine,
          HistoryOpeningParts{*this, *this, *m_compose, [this] { return PublicHistoryPasswordCheck(); },
                              [this] { return IsUnloaded(); }})),
      m_requests(std::make_unique<ShowRequests>(*this, machine, [this] { ComeForward(); })),
      m_tray(new TrayArea(*this, machine,
                          {[this] { m_requests->ForceForeground(); }, [this] { m_commands->PressExit(); }})),
      m_exit(std::make_unique<ExitPath>(context, machine.AppLog, &QApplication::closeAllWindows, [this] {
          m_requests->ReleaseInstance();
          QCoreApplication::quit();
      })) {
    setObjectName(QStringLiteral("frmMain"));
    m_layout->Restore(context.AppSettings);
    connect(m_commands, &CommandStrip::HistoryPressed, this, [this] { m_history->Open(); });
    connect(m_commands, &CommandStrip::AboutPressed, this,
            [this] { AboutBox::Show(*this, m_machine, m_context.cfgVersion); });
    connect(m_commands, &CommandStrip::MinimizePressed, this, [this] { ToTray(true); });
    connect(m_commands, &CommandStrip::ExitPressed, this, &QWidget::close);
    new BackgroundDrag(*this);
    MakeKeys();
}

frmMain::~frmMain() {
    m_delivery->Release();
}

void frmMain::MakeKeys() {
    std::vector<MainWindowKey> keys = {
        {Qt::Key_E, false, {}, QStringLiteral("cmdEditContact")},
        {Qt::Key_M, false, [this] { m_compose->FocusMessage(); }, {}},
        {Qt::Key_C, false, [this] { ContactListFocus(false); }, {}},
        {Qt::Key_R, false, [this] { m_compose->FocusRecipients(); }, {}},
        {Qt::Key_F, false, {}, QStringLiteral("cmdSearch")},
        {Qt::Key_F4, false, [this] { close(); }, {}},
        {Qt::Key_Asterisk, true, [this] { m_phonebook->SelectEverything(); }, {}},
    };
    constexpr int QuickfireButtons = 10;
    for (int digit = 0; digit < QuickfireButtons; ++digit) {
        const int button = (digit + QuickfireButtons - 1) % QuickfireButtons;  // 1 is the first, 0 the last
        keys.push_back({Qt::Key_0 + digit, false, {}, QStringLiteral("cmdQuickFire%1").arg(button)});
    }
    new MainWindowKeys(*this, std::move(keys));
}

void frmMain::RunLoadSteps(const StepTable& steps) {
    for (const NamedStep& step : steps) {
        if (m_isUnloaded) {
            return;
        }
        TrapTo(step.Run, [this](const std::exception& failure) {
            m_machine.AppLog.Write(QStringLiteral("frmMain_Load Error:") + QString::fromUtf8(failure.what()));
        });
    }
}

StepTable frmMain::LoadSteps() {
    return {
        {QStringLiteral("SetCaption"),
         [this] {
             IsInitialising = true;
             FormTools::SetFormCaption(*this, QString());
             m_tray->SetText();
         }},
        {QStringLiteral("InitTrayIcon"), [this] { m_tray->InitTrayIcon(); }},
        {QStringLiteral("ExpandPlaceholders"),
         [this] { FormTools::ExpandPlaceholders(*this, m_machine.Time.Now().date().year()); }},
        {QStringLiteral("SetAppWindowStyle"), [this] { m_requests->SetAppWindowStyle(); }},
        {QStringLiteral("InitMainWindow"), [this] { RunLoadSteps(InitMainWindowSteps()); }},
        {QStringLiteral("CreateTracker"),
         [this] {
             m_delivery->CreateTracker(m_tray->Balloon());
             m_loaded.Tracker = true;
         }},
        {QStringLiteral("SetAdCursor"), [this] { AdCursor = QCursor(Qt::ArrowCursor); }},
        {QStringLiteral("ShowTipOfTheDay"),
         [this] { TipOfDay::ShowIfDue(m_machine, m_context.AppSettings, m_commandLine); }},
        {QStringLiteral("SubclassMainWindow"), [this] { m_requests->SubclassMainWindow(); }},
    };
}

StepTable frmMain::InitMainWindowSteps() {
    return {
        {QStringLiteral("LayoutControls"), [this] { m_layout->Activate(); }},
        {QStringLiteral("InitColours"), [this] { InitColours(); }},
        {QStringLiteral("InitAlphaTabs"), [this] { InitAlphaTabs(); }},
        {QStringLiteral("InitGroupTabs"), [this] { InitGroupTabs(); }},
        {QStringLiteral("InitUserHeaders"), [this] { InitUserHeaders(); }},
        {QStringLiteral("InitMessageSize"), [this] { InitMessageSize(); }},
        {QStringLiteral("InitMessageTails"), [this] { InitMessageTails(); }},
        {QStringLiteral("InitSortBy"), [this] { InitSortBy(); }},
        {QStringLiteral("LoadSignature"),
         [this] {
             m_compose->LoadSignature();
             m_loaded.Signature = true;
         }},
        {QStringLiteral("HideAlert"), [this] { ShowAlert(false); }},
        {QStringLiteral("Reset"), [this] { Reset(); }},
        {QStringLiteral("EndInitialising"), [this] { IsInitialising = false; }},
        {QStringLiteral("ShowGroup"), [this] { ShowGroup(); }},
        {QStringLiteral("UpdateStateDisplay"), [this] { UpdateStateDisplay(); }},
    };
}

void frmMain::ComeForward() {
    if (m_isUnloaded) {
        return;
    }
    if (IsInTray()) {
        ToTray(false);
    }
    m_requests->ForceForeground();
}

void frmMain::ToTray(bool hide) {
    m_tray->ToTray(hide);
}

bool frmMain::IsInTray() const {
    return m_tray->IsInTray();
}

StepTable frmMain::QueryUnloadSteps() {
    return {
        {QStringLiteral("DisableTimers"),
         [this] {
             m_commands->StopBanner();
             m_delivery->StopPoll();
             m_delivery->Release();  // a poll that is under way tells nobody what it finds
         }},
        {QStringLiteral("UnsubclassMainWindow"), [this] { m_requests->UnsubclassMainWindow(); }},
        {QStringLiteral("SaveSignature"),
         [this] {
             if (m_loaded.Signature) {
                 m_compose->SaveSignature();
             }
         }},
        {QStringLiteral("SaveSortBy"), [this] { m_context.SaveSortBy(); }},
        {QStringLiteral("SaveTracker"),
         [this] {
             if (m_loaded.Tracker) {
                 m_context.MessageTracker.SaveSettings();
             }
         }},
        {QStringLiteral("DeleteInstanceMarker"), [this] { m_requests->DeleteInstanceMarker(); }},
        {QStringLiteral("RestoreIcons"), [this] { m_tray->RestoreIcons(); }},
        {QStringLiteral("SaveTabOrder"),
         [this] {
             if (m_loaded.Tabs) {
                 m_phonebook->SaveTabOrder();
             }
         }},
        {QStringLiteral("SaveLayout"), [this] { m_layout->Save(m_context.AppSettings); }},
        {QStringLiteral("Hide"),
         [this] {
             m_tray->Close();
             hide();
         }},
        {QStringLiteral("ProcessEvents"), [this] { m_machine.Pump.Process(2); }},
    };
}

void frmMain::closeEvent(QCloseEvent* event) {
    event->accept();
    if (m_isUnloaded) {
        return;
    }
    m_isUnloaded = true;
    RunSteps(QueryUnloadSteps());
    m_machine.Pump.Process(2);
    m_exit->ApplicationTerminate();
}

bool frmMain::event(QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange) {
        FormColours::Apply(*this);
    }
    return QWidget::event(event);
}

void frmMain::InitColours() {
    FormColours::Apply(*this);
    m_compose->InitColours();
}

void frmMain::InitAlphaTabs() {
    m_phonebook->InitAlphaTabs();
}

void frmMain::InitGroupTabs() {
    m_loaded.Tabs = false;
    m_phonebook->InitGroupTabs();
    m_loaded.Tabs = true;
}

void frmMain::InitMessageSize() {
    m_compose->InitMessageSize();
}

void frmMain::InitMessageTails() {
    m_compose->InitMessageTails();
}

void frmMain::InitSortBy() {
    m_phonebook->InitSortBy();
}

void frmMain::InitUserHeaders() {
    m_phonebook->InitUserHeaders();
}

void frmMain::ShowGroup() {
    m_phonebook->ShowGroup();
}

void frmMain::ShowAlphaGroup(const QString& letter) {
    m_phonebook->ShowAlphaGroup(letter);
}

void frmMain::AddKeyToRecipients(const QString& key, bool select) {
    m_compose->AddKeyToRecipients(key, select);
}

void frmMain::ShowRemainingChars() {
    m_compose->ShowRemainingChars();
}

QString frmMain::GetTailText() const {
    return m_compose->GetTailText();
}

int frmMain::CountChar(const QString& text, QChar character) {
    return ComposeArea::CountChar(text, character);
}

qint16 frmMain::SMSLength(const QString& text) {
    return ComposeArea::SMSLength(text);
}

void frmMain::EnableButtons() {
    m_compose->EnableButtons();
}

void frmMain::Reset() {
    m_compose->Reset();
}

void frmMain::UpdateStateDisplay() {
    m_compose->UpdateStateDisplay();
}

void frmMain::ContactListFocus(bool home) {
    m_phonebook->ContactListFocus(home);
}

void frmMain::ShowAlert(bool show) {
    m_delivery->ShowAlert(show);
}

bool frmMain::PublicHistoryPasswordCheck() {
    return m_passwords->PublicHistoryPasswordCheck();
}

bool frmMain::ReportPasswordCheck() {
    return m_passwords->ReportPasswordCheck();
}

bool frmMain::IsPasswordOK(bool hidden) {
    return m_passwords->IsPasswordOK(hidden);
}

void frmMain::AddKeysToRecipients(const QStringList& keys) {
    m_compose->AddKeysToRecipients(keys);
}

void frmMain::DropGroupByID(qint32 groupID) {
    m_compose->DropGroupByID(groupID);
}

void frmMain::ScrollRecipientsTo(int index) {
    m_compose->ScrollRecipientsTo(index);
}

void frmMain::UpdateRecipient(const Contact& contact, const QString& toolTip) {
    m_compose->UpdateRecipient(contact, toolTip);
}

void frmMain::RefreshRecipientList() {
    m_compose->RefreshRecipientList();
}

void frmMain::ClearContactInfo() {
    m_phonebook->ShowContactInfo(QString());
}

void frmMain::CreateGroupFromSelection(const ListView& list, bool onlySelected) {
    m_phonebook->CreateGroupFromSelection(list, onlySelected);
}

void frmMain::StartTracking() {
    m_delivery->StartPoll();
}

void frmMain::SetMessageText(const QString& text) {
    m_compose->SetMessageText(text);
}

QString frmMain::SelectedTail() const {
    return m_compose->SelectedTail();
}

QString frmMain::SignatureText() const {
    return m_compose->SignatureText();
}
