#include "shell/MainScreens.h"

#include "app/Machine.h"
#include "core/Log.h"
#include "core/Product.h"
#include "platform/Clock.h"
#include "platform/MessageBoxes.h"
#include "shell/frmMain.h"
#include "shell/frmSplash.h"

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
    m_machine.Boxes.Show(
        {Product::AppTitle,
         QStringLiteral("The folder with your office's data is not known yet, or cannot be found.\r\n"
                        "\r\n"
                        "Start the program once with that folder:\r\n"
                        "    larkspan --data FOLDER\r\n"
                        "\r\n"
                        "If your office has none, make one first:\r\n"
                        "    larkspan-data create FOLDER"),
         BoxIcon::Information, BoxButtons::Ok});
    return false;
}

void MainScreens::RunPhonebookWizard() {
    m_machine.AppLog.Write(QStringLiteral("The phonebook has not been configured"));
}

void MainScreens::LoadMain() {
    m_main = std::make_unique<frmMain>(m_context, m_machine, m_commandLine);
    m_main->Load();
}

WindowHandle MainScreens::MainHandle() const {
    return m_main == nullptr ? 0 : static_cast<WindowHandle>(m_main->winId());
}

void MainScreens::ShowMain() {
    m_main->show();
}

void MainScreens::ContactListFocus(bool home) {
    m_main->ContactListFocus(home);
}

void MainScreens::RepaintMain() {
    m_main->repaint();
}
