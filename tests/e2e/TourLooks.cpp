#include "e2e/Tour.h"

#include "shell/Look.h"
#include "shell/frmMain.h"

void Tour::Run() {
    m_hand.Picture(QStringLiteral("1-start"));
    SendAtTime();
    PickPeople();
    Compose();
    SendNow();
    GoToTray();
    SeePopupOverTray();
    SeeItFinal();
    ComeBack();
    CheckFiles();
    CancelOne();
    SeePublicHistory();
    ShowLooks();
}

void Tour::ShowLooks() {
    ComposeForPictures();
    m_window.resize(1100, 740);
    m_hand.PictureOf(m_window, QStringLiteral("main-window"));
    Look::Apply(QStringLiteral("dark"));
    m_window.ShowAlert(true);
    m_hand.PictureOf(m_window, QStringLiteral("main-window-dark"));
    Look::Apply(QStringLiteral("light"));
    m_window.resize(900, 600);
    m_hand.PictureOf(m_window, QStringLiteral("main-window-small"));
    m_window.ShowAlert(false);
    m_window.resize(1900, 1000);
    m_hand.PictureOf(m_window, QStringLiteral("main-window-large"));
}

void Tour::ShowScaled() {
    ComposeForPictures();
    m_window.ShowAlert(true);
    m_window.resize(900, 600);
    m_hand.PictureOf(m_window, QStringLiteral("main-window-scaled"));
    m_window.ShowAlert(false);
    Driver::WhenDialog(QStringLiteral("frmConfirmRecipient"),
                       [] { Driver::Click(QStringLiteral("cmdOkay")); });
    Driver::Click(QStringLiteral("cmdSendNow"));
    Driver::WaitFor(
        QStringLiteral("a popup that tells of messages"),
        [this] { return IsShown(QStringLiteral("pucFeedback")); }, 90);
    m_hand.Picture(QStringLiteral("popup-scaled"));
    Look::Apply(QStringLiteral("dark"));
    m_hand.Picture(QStringLiteral("popup-scaled-dark"));
    Driver::WhenDialog(QStringLiteral("frmHistory"), [this] {
        m_hand.Picture(QStringLiteral("history-scaled-dark"));
        Look::Apply(QStringLiteral("light"));
        m_hand.Picture(QStringLiteral("history-scaled"));
        Driver::Click(QStringLiteral("cmdClose"));
    });
    Driver::Click(QStringLiteral("cmdHistory"));
}
