#include "shell/MainScreens.h"

#include "app/AppContext.h"
#include "app/Machine.h"
#include "core/Log.h"
#include "core/Product.h"
#include "core/Trap.h"
#include "platform/Clock.h"
#include "platform/Drives.h"
#include "platform/LocalFiles.h"
#include "platform/MessageBoxes.h"
#include "shell/frmMain.h"
#include "shell/frmSplash.h"

namespace {

QString UnknownOffice() {
    return QStringLiteral(
        "The folder with your office's data is not known yet, or cannot be found.\r\n"
        "\r\n"
        "Start the program once with that folder:\r\n"
        "    larkspan --data FOLDER\r\n"
        "\r\n"
        "If your office has none, make one first:\r\n"
        "    larkspan-data create FOLDER");
}

QString KnownOffice(const QString& phonebook) {
    return QStringLiteral(
               "The setup cannot be run from here yet. Your office's phonebook is\r\n"
               "    %1\r\n"
               "\r\n"
               "To work with this folder or another one, start the program once with it:\r\n"
               "    larkspan --data FOLDER")
        .arg(NativePath(phonebook));
}

}  // namespace

MainScreens::MainScreens(AppContext& context, const Machine& machine, const CommandLine& commandLine)
    : m_context(context), m_machine(machine), m_commandLine(commandLine) {}

MainScreens::~MainScreens() = default;

void MainScreens::ShowSplash() {
    m_splash =
        std::make_unique<frmSplash>(m_machine.Time.Now().date().year(), QStringLiteral(LARKSPAN_VERSION));
    m_splash->show();
}

void MainScreens::RepaintSplash() {
    if (m_splash != nullptr) {
        m_splash->repaint();
    }
}

void MainScreens::HideSplash() {
    if (m_splash != nullptr) {
        m_splash->hide();
    }
}

void MainScreens::DropSplash() {
    m_splash = nullptr;
}

bool MainScreens::RunSetupWizard() {
    const QString phonebook = mdlPhonebook::GetPhonebookPath(m_context.AppSettings);
    const bool isKnown = !phonebook.isEmpty() && m_machine.Files.Exists(phonebook);
    m_machine.Boxes.Show({Product::AppTitle, isKnown ? KnownOffice(phonebook) : UnknownOffice(),
                          BoxIcon::Information, BoxButtons::Ok});
    return false;
}

void MainScreens::RunPhonebookWizard() {
    m_machine.AppLog.Write(QStringLiteral("The phonebook has not been configured"));
}

void MainScreens::LoadMain() {
    TrapTo(
        [this] { m_main = std::make_unique<frmMain>(m_context, m_machine, m_commandLine); },
        [this](const std::exception& failure) {
            m_machine.AppLog.Write(QStringLiteral("frmMain_Load Error:") + QString::fromUtf8(failure.what()));
        });
    if (m_main != nullptr) {
        m_main->Load();
    }
}

MainState MainScreens::StateOfMain() const {
    if (m_main == nullptr) {
        return MainState::None;
    }
    return m_main->IsUnloaded() ? MainState::Unloaded : MainState::Open;
}

WindowHandle MainScreens::MainHandle() const {
    return m_main == nullptr ? 0 : static_cast<WindowHandle>(m_main->winId());
}

void MainScreens::ShowMain() {
    if (m_main != nullptr) {
        m_main->show();
    }
}

void MainScreens::ContactListFocus(bool home) {
    if (m_main != nullptr) {
        m_main->ContactListFocus(home);
    }
}

void MainScreens::RepaintMain() {
    if (m_main != nullptr) {
        m_main->repaint();
    }
}
