#pragma once

#include "app/Steps.h"
#include "platform_ui/Windows.h"

class AppContext;
class CommandLine;
struct Machine;

/// What has become of the main window: it was not loaded (or could not be), it is there, or it was unloaded
/// again and the exit path has run.
enum class MainState { None, Open, Unloaded };

/// The windows that the entry routine brings up. The shell makes them.
class EntryScreens {
public:
    virtual ~EntryScreens() = default;
    /// Loads the splash and shows it, not modally.
    virtual void ShowSplash() = 0;
    /// Paints it at once: the event loop is not reached for a while.
    virtual void RepaintSplash() = 0;
    virtual void HideSplash() = 0;
    /// Unloads it; there is none from now on.
    virtual void DropSplash() = 0;
    /// False if the user did not finish the setup: the program then ends.
    [[nodiscard]] virtual bool RunSetupWizard() = 0;
    /// However it ends, the start goes on.
    virtual void RunPhonebookWizard() = 0;
    /// Loads the main window, which fills itself.
    virtual void LoadMain() = 0;
    /// What has become of the main window by now.
    [[nodiscard]] virtual MainState StateOfMain() const = 0;
    /// 0 without a main window.
    [[nodiscard]] virtual WindowHandle MainHandle() const = 0;
    virtual void ShowMain() = 0;
    /// Moves the focus to the contact list; with `home` its first row takes the cursor.
    virtual void ContactListFocus(bool home) = 0;
    virtual void RepaintMain() = 0;
};

/// The program's entry: decides whether this process may run at all, opens the two databases behind a splash,
/// loads the main window and hands over to it. Nineteen fixed steps; a step that fails is skipped and the
/// next one runs, and the calls within a step go by the same rule.
class EntryRoutine {
public:
    EntryRoutine(AppContext& context, const Machine& machine, EntryScreens& screens,
                 const CommandLine& commandLine);

    /// The nineteen steps in their order; Run runs them.
    [[nodiscard]] StepTable Steps();
    /// True if the process lives on in the main window's event loop, false if it is to end at once: there is
    /// another copy, the setup was canceled, --data names a folder without a phonebook, the main window was
    /// closed while the start let events through, or it did not come up at all, which a box has told.
    [[nodiscard]] bool Run();
    /// What the process ends with if Run returned false: 0 where that is no failure (another copy was brought
    /// to the front, the window was closed again), StartFailed or OptionUnusable otherwise.
    [[nodiscard]] int ExitStatus() const { return m_exitStatus; }

    /// The setup was not finished, or there is no main window.
    static constexpr int StartFailed = 1;
    /// The value of an option cannot be used, as in CommandLine::Problem.
    static constexpr int OptionUnusable = 2;

private:
    [[nodiscard]] bool IsOver() const;
    /// The start ends here, with this status.
    void End(int status);
    void StartFileLog();
    void CheckPreviousInstance();
    /// Says in the log that --data does nothing where the running copy works with another folder.
    void RefuseDataFolderOfSecondStart();
    void CreateSettings();
    /// Writes what --data asks for. The folder's own phonebook counts; one that lies elsewhere stays in use
    /// if the folder has none. With neither there is nothing to work with: a box says so, no setting is
    /// touched, and the program ends.
    void TakeDataFolder();
    void CheckSetupWizard();
    void ShowSplash();
    void OpenOutbox();
    void RepaintSplash();
    void CheckPhonebookWizard();
    void BindHelpFile();
    void DropSplash();
    void ShowMain();

    AppContext& m_context;
    const Machine& m_machine;
    EntryScreens& m_screens;
    const CommandLine& m_commandLine;
    bool m_isEnding = false;
    int m_exitStatus = 0;
};
