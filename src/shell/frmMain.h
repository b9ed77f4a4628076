#pragma once

#include "addressbook/PhonebookHost.h"
#include "app/Steps.h"
#include "compose/ComposeHost.h"
#include "tracking/HistoryHost.h"

#include <QCursor>
#include <QWidget>

#include <memory>

class AccessPasswords;
class AppContext;
class CommandLine;
class CommandStrip;
class ComposeArea;
class DeliveryArea;
class ExitPath;
class HistoryOpening;
class MainLayout;
class PhonebookArea;
class ShowRequests;
class TrayArea;
struct Machine;

/// The one main window of a run, and the system's main loop: once it is shown, everything that happens comes
/// from its controls, keys and timers. It composes nothing itself: the phonebook side and the composing side
/// are areas of their own; the window places them, wires one to the other, passes its fixed public members
/// on, and owns start, end and timers.
class frmMain final : public QWidget, public PhonebookHost, public ComposeHost, public HistoryHost {
    Q_OBJECT
public:
    /// Everything given outlives the window.
    frmMain(AppContext& context, const Machine& machine, const CommandLine& commandLine);
    ~frmMain() override;

    /// True from the start of the load until InitMainWindow has done its work: lists are not refilled
    /// meanwhile.
    bool IsInitialising = false;
    /// The pointer over imgAd: the arrow, or the hand while the picture on show has a link.
    QCursor AdCursor;

    /// Fills the window. Failures are logged, and the next step runs; a window that is closed meanwhile loads
    /// no further.
    void Load() { RunLoadSteps(LoadSteps()); }
    /// What Load runs, and what its step InitMainWindow runs; each in order.
    [[nodiscard]] StepTable LoadSteps();
    [[nodiscard]] StepTable InitMainWindowSteps();
    /// What is saved and closed before the window goes. What was not loaded yet is not saved: the settings
    /// keep it.
    [[nodiscard]] StepTable QueryUnloadSteps();

    /// Steps of InitMainWindow, each of the area that it is named after: see PhonebookArea and ComposeArea.
    void InitColours();
    void InitAlphaTabs();
    void InitGroupTabs();
    void InitMessageSize();
    void InitMessageTails();
    void InitSortBy();
    void InitUserHeaders();
    /// Passed on to PhonebookArea and ComposeArea, where each says what it does.
    void ShowGroup();
    void ShowAlphaGroup(const QString& letter);
    void AddKeyToRecipients(const QString& key, bool select);
    void ShowRemainingChars();
    void EnableButtons();
    void Reset();
    void UpdateStateDisplay() override;
    void ContactListFocus(bool home) override;
    [[nodiscard]] QString GetTailText() const;
    [[nodiscard]] static int CountChar(const QString& text, QChar character);
    [[nodiscard]] static qint16 SMSLength(const QString& text);
    /// Hides the window, or brings it back to the front. Without a notification area it is minimised.
    void ToTray(bool hide);
    [[nodiscard]] bool IsInTray() const;
    /// True once the window was closed: the exit path has begun, and nothing shows it again.
    [[nodiscard]] bool IsUnloaded() const { return m_isUnloaded; }
    /// The warning that messages were not delivered.
    void ShowAlert(bool show);
    /// The three locks of AccessPasswords; each may ask for its password.
    [[nodiscard]] bool PublicHistoryPasswordCheck();
    [[nodiscard]] bool ReportPasswordCheck();
    [[nodiscard]] bool IsPasswordOK(bool hidden) override;

    // For the phonebook side: see PhonebookHost.
    void AddKeysToRecipients(const QStringList& keys) override;
    void DropGroupByID(qint32 groupID) override;
    void ScrollRecipientsTo(int index) override;
    void UpdateRecipient(const Contact& contact, const QString& toolTip) override;
    void RefreshRecipientList() override;

    // For the composing side: see ComposeHost.
    void ClearContactInfo() override;
    void CreateGroupFromSelection(const ListView& list, bool onlySelected) override;
    void StartTracking() override;

    // For the history.
    void SetMessageText(const QString& text) override;
    [[nodiscard]] QString SelectedTail() const override;
    [[nodiscard]] QString SignatureText() const override;

protected:
    void closeEvent(QCloseEvent* event) override;
    bool event(QEvent* event) override;

private:
    void MakeKeys();
    void RunLoadSteps(const StepTable& steps);
    /// What a second start of the program asks for.
    void ComeForward();

    AppContext& m_context;
    const Machine& m_machine;
    const CommandLine& m_commandLine;
    CommandStrip* m_commands;
    PhonebookArea* m_phonebook;
    ComposeArea* m_compose;
    std::unique_ptr<DeliveryArea> m_delivery;
    MainLayout* m_layout;
    std::unique_ptr<AccessPasswords> m_passwords;
    std::unique_ptr<HistoryOpening> m_history;
    std::unique_ptr<ShowRequests> m_requests;
    TrayArea* m_tray;
    std::unique_ptr<ExitPath> m_exit;
    /// What stands in the window as the settings had it.
    struct {
        bool Signature = false;
        bool Tracker = false;
        bool Tabs = false;
    } m_loaded;
    bool m_isUnloaded = false;
};
