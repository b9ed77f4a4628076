#include "shell/frmMain.h"

#include "addressbook/PhonebookArea.h"
#include "app/AppContext.h"
#include "app/ExitPath.h"
#include "app/Machine.h"
#include "app/mdlInstance.h"
#include "compose/ComposeArea.h"
#include "compose/ComposeServices.h"
#include "controls/FormTools.h"
#include "core/Log.h"
#include "platform/EventPump.h"
#include "platform_ui/Instance.h"
#include "platform_ui/MainWindowProc.h"
#include "setup/AccessPasswords.h"
#include "shell/AlertStrip.h"
#include "shell/CommandStrip.h"
#include "shell/FormColours.h"
#include "shell/MainWindowKeys.h"
#include "shell/StatusPoll.h"
#include "shell/WindowPlace.h"

#include <QtWidgets>

frmMain::frmMain(AppContext& context, const Machine& machine, const CommandLine& commandLine)
    : m_context(context),
      m_machine(machine),
      m_commandLine(commandLine),
      m_phonebook(new PhonebookArea({context.Phonebook, context.AddressContacts, context.SortBy,
                                     context.LocaleCountry, IsInitialising, *this, machine.Door,
                                     machine.Boxes, machine.Pump, machine.AppLog, machine.Time,
                                     machine.Beeper, context.AppSettings})),
      m_compose(new ComposeArea(
          {context.Outbox, context.Phonebook, context.AddressContacts, context.RecipientContacts,
           context.History, context.MessageTracker, context.AppBusyState, context.SortBy, *this, machine.Door,
           machine.Keys, machine.Beeper, machine.Pump, machine.AppLog, machine.Time, context.AppSettings})),
      m_alert(new AlertStrip(this)),
      m_poll(new StatusPoll(
          context.AppBusyState, context.MessageTracker, [this] { ShowAlert(true); }, this)),
      m_splitter(new QSplitter(Qt::Horizontal, this)),
      m_passwords(
          std::make_unique<AccessPasswords>(context, machine.Door, machine.Pump, machine.Time, *this)),
      m_proc(std::make_unique<MainWindowProc>([this] { ComeForward(); })),
      m_exit(std::make_unique<ExitPath>(context, machine.AppLog, &QApplication::closeAllWindows,
                                        &QCoreApplication::quit)) {
    setObjectName(QStringLiteral("frmMain"));
    PlaceAreas();
    MakeKeys();
}

frmMain::~frmMain() = default;

void frmMain::PlaceAreas() {
    constexpr int PhonebookShare = 2;
    constexpr int ComposeShare = 3;
    constexpr int Gap = 10;
    auto* commands = new CommandStrip(this);
    connect(commands, &CommandStrip::ExitPressed, this, &QWidget::close);
    m_splitter->setObjectName(QStringLiteral("splitMain"));
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setHandleWidth(Gap);
    m_splitter->addWidget(m_phonebook);
    m_splitter->addWidget(m_compose);
    m_splitter->setStretchFactor(0, PhonebookShare);
    m_splitter->setStretchFactor(1, ComposeShare);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Gap, Gap, Gap, Gap);
    column->setSpacing(Gap);
    column->addWidget(commands);
    column->addWidget(m_splitter, 1);
    column->addWidget(m_alert);
    WindowPlace::Restore(*this, *m_splitter, m_context.AppSettings);
}

void frmMain::MakeKeys() {
    std::vector<MainWindowKey> keys = {
        {Qt::Key_E, false, [this] { Click(QStringLiteral("cmdEditContact")); }},
        {Qt::Key_M, false, [this] { m_compose->FocusMessage(); }},
        {Qt::Key_C, false, [this] { ContactListFocus(false); }},
        {Qt::Key_R, false, [this] { m_compose->FocusRecipients(); }},
        {Qt::Key_F, false, [this] { Click(QStringLiteral("cmdSearch")); }},
        {Qt::Key_F4, false, [this] { close(); }},
        {Qt::Key_Asterisk, true, [this] { m_phonebook->SelectEverything(); }},
    };
    constexpr int QuickfireButtons = 10;
    for (int digit = 0; digit < QuickfireButtons; ++digit) {
        const int button = (digit + QuickfireButtons - 1) % QuickfireButtons;  // 1 is the first, 0 the last
        keys.push_back({Qt::Key_0 + digit, false,
                        [this, button] { Click(QStringLiteral("cmdQuickFire%1").arg(button)); }});
    }
    new MainWindowKeys(*this, std::move(keys));
}

void frmMain::Click(const QString& name) {
    if (auto* button = findChild<QAbstractButton*>(name)) {
        button->click();
    }
}

void frmMain::Load() {
    RunSteps(LoadSteps(), [this](const std::exception& failure) {
        m_machine.AppLog.Write(QStringLiteral("frmMain_Load Error:") + QString::fromUtf8(failure.what()));
    });
}

StepTable frmMain::LoadSteps() {
    return {
        {QStringLiteral("SetCaption"),
         [this] {
             IsInitialising = true;
             FormTools::SetFormCaption(*this, QString());
         }},
        {QStringLiteral("SetAppWindowStyle"),
         [this] { m_machine.Desktop.SetAppWindowStyle(static_cast<WindowHandle>(winId()), true); }},
        {QStringLiteral("InitMainWindow"), [this] { InitMainWindow(); }},
        {QStringLiteral("CreateTracker"), [this] { m_context.CreateTracker(); }},
        {QStringLiteral("SetAdCursor"), [this] { AdCursor = QCursor(Qt::ArrowCursor); }},
        {QStringLiteral("SubclassMainWindow"), [this] { SubclassMainWindow(); }},
    };
}

void frmMain::InitMainWindow() {
    RunSteps(InitMainWindowSteps(), [this](const std::exception& failure) {
        m_machine.AppLog.Write(QStringLiteral("frmMain_Load Error:") + QString::fromUtf8(failure.what()));
    });
}

StepTable frmMain::InitMainWindowSteps() {
    return {
        {QStringLiteral("LayoutControls"), [this] { layout()->activate(); }},
        {QStringLiteral("InitColours"), [this] { InitColours(); }},
        {QStringLiteral("InitTabs"),
         [this] {
             InitAlphaTabs();
             InitGroupTabs();
             InitUserHeaders();
         }},
        {QStringLiteral("InitMessageSize"), [this] { InitMessageSize(); }},
        {QStringLiteral("InitMessageTails"), [this] { InitMessageTails(); }},
        {QStringLiteral("InitSortBy"), [this] { InitSortBy(); }},
        {QStringLiteral("LoadSignature"), [this] { m_compose->LoadSignature(); }},
        {QStringLiteral("HideAlert"), [this] { ShowAlert(false); }},
        {QStringLiteral("Reset"), [this] { Reset(); }},
        {QStringLiteral("EndInitialising"), [this] { IsInitialising = false; }},
        {QStringLiteral("ShowGroup"),
         [this] {
             ShowGroup();
             UpdateStateDisplay();
         }},
    };
}

void frmMain::SubclassMainWindow() {
    const auto handle = static_cast<WindowHandle>(winId());
    m_machine.Desktop.SetClassName(handle, mdlInstance::FormClass);
    m_proc->SubclassMainWindow(handle);
    m_machine.OneCopy.SetOnShow([this] { ComeForward(); });
}

void frmMain::UnsubclassMainWindow() {
    m_proc->UnsubclassMainWindow(static_cast<WindowHandle>(winId()));
    m_machine.OneCopy.SetOnShow({});
}

void frmMain::ComeForward() {
    if (IsInTray()) {
        ToTray(false);
    }
    ForceForeground();
}

void frmMain::ForceForeground() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
    m_machine.Desktop.ForceForeground(static_cast<WindowHandle>(winId()));
}

void frmMain::ToTray(bool hide) {
    m_isInTray = hide;
    if (hide) {
        showMinimized();
    } else {
        ForceForeground();
    }
}

StepTable frmMain::QueryUnloadSteps() {
    return {
        {QStringLiteral("DisableTimers"), [this] { m_poll->Stop(); }},
        {QStringLiteral("UnsubclassMainWindow"), [this] { UnsubclassMainWindow(); }},
        {QStringLiteral("SaveSignature"), [this] { m_compose->SaveSignature(); }},
        {QStringLiteral("SaveSortBy"), [this] { m_context.SaveSortBy(); }},
        {QStringLiteral("SaveTracker"), [this] { m_context.MessageTracker.SaveSettings(); }},
        {QStringLiteral("DeleteInstanceMarker"), [this] { mdlInstance::DeleteInstanceMarker(m_machine); }},
        {QStringLiteral("SaveTabOrder"), [this] { m_phonebook->SaveTabOrder(); }},
        {QStringLiteral("Hide"),
         [this] {
             WindowPlace::Save(*this, *m_splitter, m_context.AppSettings);
             hide();
             m_machine.Pump.Process(2);
         }},
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

void frmMain::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ApplicationPaletteChange) {
        FormColours::Apply(*this);
    }
}

void frmMain::mousePressEvent(QMouseEvent* event) {
    const bool isOnControl = qobject_cast<QAbstractButton*>(childAt(event->position().toPoint())) != nullptr;
    if (event->button() == Qt::LeftButton && !isOnControl && windowHandle() != nullptr) {
        windowHandle()->startSystemMove();
    }
}

void frmMain::InitColours() {
    FormColours::Apply(*this);
    m_compose->InitColours();
}

void frmMain::InitAlphaTabs() {
    m_phonebook->InitAlphaTabs();
}

void frmMain::InitGroupTabs() {
    m_phonebook->InitGroupTabs();
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
    m_alert->ShowAlert(show);
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

void frmMain::CreateGroupFromKeys(const QStringList& keys) {
    m_phonebook->CreateGroupFromKeys(keys);
}

void frmMain::StartTracking() {
    m_poll->Start();
}
