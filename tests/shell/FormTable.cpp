#include "shell/FormTable.h"

#include "addressbook/ContactItems.h"
#include "addressbook/ContactList.h"
#include "addressbook/frmTabName.h"
#include "compose/frmConfirmRecipient.h"
#include "compose/frmGetTime.h"
#include "controls/ReportControl.h"
#include "controls/frmGeneralInfo.h"
#include "core/Settings.h"
#include "setup/frmPassword.h"
#include "shell/MainControls.h"
#include "shell/MainWindow.h"
#include "shell/TipOfDay.h"
#include "shell/frmAbout.h"
#include "shell/frmSplash.h"
#include "tracking/frmHistory.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QTimeEdit>

#include <gtest/gtest.h>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

/// Shown, and in front if it is a window that comes to the front.
void Show(QWidget& form) {
    form.show();
    if (form.windowType() == Qt::SplashScreen) {
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&form));
        return;
    }
    form.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&form));
}

class OpenMain final : public OpenForm {
public:
    OpenMain() : m_window(&FullOffice) {
        m_window.Open();
        m_window.Form->ShowAlert(true);
        // Those that have nothing to do yet belong to the form all the same.
        for (const MainControl& control : MainControls()) {
            m_window.Find(control.Name)->setEnabled(true);
        }
    }
    QWidget& Form() override { return *m_window.Form; }

private:
    MainWindow m_window;
};

/// A dialog that is asked, and answers IsCanceled.
template <typename Dialog>
class OpenDialog final : public OpenForm {
public:
    /// `make` gets the clock and the sound of this machine.
    template <typename Make>
    explicit OpenDialog(Make make) : m_dialog(make(m_clock, m_sound)) {
        Show(*m_dialog);
    }
    QWidget& Form() override { return *m_dialog; }
    [[nodiscard]] std::optional<bool> IsCanceled() const override { return m_dialog->IsCanceled(); }

private:
    FakeClock m_clock;
    FakeSound m_sound;
    std::unique_ptr<Dialog> m_dialog;
};

class OpenConfirm final : public OpenForm {
public:
    OpenConfirm() {
        for (int i = 1; i <= 3; ++i) {
            Contact contact;
            contact.SetID(static_cast<qint16>(i));
            contact.Surname = Q("Surname %1").arg(i);
            contact.IsConfirmSend = true;
            m_contacts.Add(contact);
            ContactItems::AddContactItem(m_list, contact, false, 0);
        }
        m_dialog.SetRecipients(m_list);
        Show(m_dialog);
    }
    QWidget& Form() override { return m_dialog; }
    [[nodiscard]] std::optional<bool> IsCanceled() const override { return m_dialog.IsCanceled(); }

private:
    FakeClock m_clock;
    ContactList m_contacts;
    ListView m_list;
    frmConfirmRecipient m_dialog{m_contacts, m_clock};
};

/// With a short tip first, and then one that needs more room.
class OpenTip final : public OpenForm {
public:
    OpenTip() {
        m_settings.SetApplication(Q("Larkspan Messenger"));
        m_dialog =
            std::make_unique<TipOfDay>(QStringList{Q("Short."), Q("A tip of many words. ").repeated(25)},
                                       Q("Brenmoor"), Q("Larkspan Messenger"), m_settings, 2026);
        Show(*m_dialog);
        m_dialog->findChild<QAbstractButton*>(Q("cmdNextTip"))->click();
    }
    QWidget& Form() override { return *m_dialog; }

private:
    FreshSettings m_fresh;
    Settings m_settings;
    std::unique_ptr<TipOfDay> m_dialog;
};

class NoHistoryHost final : public HistoryHost {
public:
    void SetMessageText(const QString&) override {}
    void UpdateStateDisplay() override {}
    [[nodiscard]] QString SelectedTail() const override { return {}; }
    [[nodiscard]] QString SignatureText() const override { return {}; }
};

/// With messages, the first of which can be canceled.
class OpenHistory final : public OpenForm {
public:
    OpenHistory() {
        for (const int status : {5, 7, 0}) {
            const qint32 id = m_machine.Office.AddMessageRow(
                {{Q("msgRecipient"), Q("Surname, First")},
                 {Q("msgText"), Q("Hello")},
                 {Q("msgStatus"), status},
                 {Q("msgSendTime"), m_machine.Office.Time.Time.addSecs(qint64{-600} * status)}});
            m_history.AddToHistory(id, Q("Surname, First"), Q("Hello"), m_machine.Office.Time.Time);
        }
        m_dialog.LoadHistory();
        Show(m_dialog);
    }
    QWidget& Form() override { return m_dialog; }

private:
    TestMachine m_machine;
    mdlHistory m_history{m_machine.Office.Files, m_machine.Office.Folders, m_machine.Office.Boxes,
                         m_machine.Page};
    MessageTracker m_tracker{m_machine.Office.OutboxValues, m_machine.Office.AppSettings,
                             m_machine.Office.Time};
    NoHistoryHost m_host;
    frmHistory m_dialog{{m_machine.Office.Outbox(), m_history, m_tracker, m_host, m_machine.Door,
                         m_machine.Office.Boxes, m_machine.Office.Pump, m_machine.Office.Time}};
};

class OpenInfo final : public OpenForm {
public:
    OpenInfo() {
        m_dialog.SetTitle(Q("Cancel Messages"));
        m_dialog.SetMessaage(Q("The following messages could not be canceled:\r\n\r\nMessage ID#17\r\n"));
        Show(m_dialog);
    }
    QWidget& Form() override { return m_dialog; }

private:
    frmGeneralInfo m_dialog;
};

class OpenAbout final : public OpenForm {
public:
    OpenAbout() { Show(m_dialog); }
    QWidget& Form() override { return m_dialog; }

private:
    FakeWeb m_web;
    frmAbout m_dialog{2026, Q("1.2.3"), 4, m_web};
};

class OpenSplash final : public OpenForm {
public:
    OpenSplash() { Show(m_splash); }
    QWidget& Form() override { return m_splash; }

private:
    frmSplash m_splash{2026, Q("1.2.3")};
};

std::vector<FormControl> ControlsOfMain() {
    std::vector<FormControl> controls;
    for (const MainControl& control : MainControls()) {
        controls.push_back({control.Name, control.IsType, control.Key != MainControl::NoFocus});
    }
    return controls;
}

}  // namespace

const std::vector<FormRow>& FormTable() {
    using namespace FormTypes;
    static const std::vector<FormRow> table = {
        {"frmMain", [] { return std::make_unique<OpenMain>(); }, ControlsOfMain(), "cmdSendNow",
         Ending::StaysOpen, Ending::StaysOpen},
        {"frmGetTime",
         [] {
             return std::make_unique<OpenDialog<frmGetTime>>(
                 [](const Clock& clock, Sound&) { return std::make_unique<frmGetTime>(clock); });
         },
         {{"lblDate", Label, false},
          {"dtDate", &Is<QDateEdit>, true},
          {"lblTime", Label, false},
          {"dtTime", &Is<QTimeEdit>, true},
          {"cmdOK", Button, true},
          {"cmdCancel", Button, true}},
         "cmdOK",
         Ending::Accepted,
         Ending::Canceled},
        {"frmConfirmRecipient",
         [] { return std::make_unique<OpenConfirm>(); },
         {{"Please", Label, false},
          {"lvRecipient", &Is<ListView>, true},
          {"cmdOkay", Button, true},
          {"cmdCancel", Button, true}},
         "cmdOkay",
         Ending::Accepted,
         Ending::Canceled},
        {"frmTabName",
         [] {
             return std::make_unique<OpenDialog<frmTabName>>(
                 [](const Clock& clock, Sound& sound) { return std::make_unique<frmTabName>(sound, clock); });
         },
         {{"gbName", &Is<QGroupBox>, false}, {"txtName", &Is<QLineEdit>, true}},
         nullptr,
         Ending::Accepted,
         Ending::Canceled},
        {"frmPassword",
         [] {
             return std::make_unique<OpenDialog<frmPassword>>(
                 [](const Clock& clock, Sound&) { return std::make_unique<frmPassword>(clock); });
         },
         {{"gbMain", &Is<QGroupBox>, false}, {"txtPassword", &Is<QLineEdit>, true}},
         nullptr,
         Ending::Accepted,
         Ending::Canceled},
        {"dlgTipOfDay",
         [] { return std::make_unique<OpenTip>(); },
         {{"imgTip", Label, false},
          {"lblHead", Label, false},
          {"lblTip", Label, false},
          {"chkShowAtStartup", &Is<QCheckBox>, true},
          {"cmdNextTip", Button, true},
          {"cmdClose", Button, true}},
         "cmdClose",
         Ending::Closed,
         Ending::Closed},
        {"frmHistory",
         [] { return std::make_unique<OpenHistory>(); },
         {{"rptHistory", &Is<ReportControl>, true},
          {"cmdCancel", Button, true},
          {"cmdClear", Button, true},
          {"cmdPrint", Button, true},
          {"cmdClose", Button, true}},
         "cmdClose",
         Ending::Closed,
         Ending::Closed,
         "C"},
        {"frmGeneralInfo",
         [] { return std::make_unique<OpenInfo>(); },
         {{"txtMessage", &Is<QPlainTextEdit>, true}, {"cmdOK", Button, true}},
         "cmdOK",
         Ending::Closed,
         Ending::Closed},
        {"frmAbout",
         [] { return std::make_unique<OpenAbout>(); },
         {{"imgAbout", Label, false},
          {"lblApp", Label, false},
          {"lblVer", Label, false},
          {"lblSuite", Label, false},
          {"lblManufacturer", &Is<QWidget>, true},
          {"cmdClose", Button, true}},
         "cmdClose",
         Ending::Closed,
         Ending::Closed},
        {"frmSplash",
         [] { return std::make_unique<OpenSplash>(); },
         {{"imgSplash", Label, false},
          {"lblApp", Label, false},
          {"lblVer", Label, false},
          {"lblSuite", Label, false}},
         nullptr,
         Ending::StaysOpen,
         Ending::StaysOpen},
    };
    return table;
}
