#pragma once

#include "app/EntryRoutine.h"

#include <memory>

class frmMain;
class frmSplash;

/// The windows of the start, for real: the splash and the main window.
class MainScreens final : public EntryScreens {
public:
    MainScreens(AppContext& context, const Machine& machine, const CommandLine& commandLine);
    ~MainScreens() override;

    /// None before LoadMain.
    [[nodiscard]] frmMain* Main() const { return m_main.get(); }

    void ShowSplash() override;
    void RepaintSplash() override;
    void HideSplash() override;
    void DropSplash() override;
    /// The setup is not part of the program yet: tells how a data folder is given, and, where there is one,
    /// which one the program works with. Counts as canceled.
    [[nodiscard]] bool RunSetupWizard() override;
    /// Not part of the program yet: notes in the log that the phonebook waits for it, as if it had been
    /// closed.
    void RunPhonebookWizard() override;
    /// A window that cannot be made is logged, and there is none.
    void LoadMain() override;
    [[nodiscard]] MainState StateOfMain() const override;
    [[nodiscard]] WindowHandle MainHandle() const override;
    void ShowMain() override;
    void ContactListFocus(bool home) override;
    void RepaintMain() override;

private:
    AppContext& m_context;
    const Machine& m_machine;
    const CommandLine& m_commandLine;
    std::unique_ptr<frmSplash> m_splash;
    std::unique_ptr<frmMain> m_main;
};
