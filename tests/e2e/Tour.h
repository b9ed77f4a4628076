#pragma once

#include "controls/ReportRecord.h"
#include "e2e/Driver.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

class AppContext;
class Contact;
class frmMain;
struct Machine;

/// What the outbox says of one message.
struct SentMessage {
    qint32 ID = 0;
    QString Recipient;
    qint32 Status = 0;
};

/// The tour of ./run where there is no display: a day of an office, driven through the controls of the real
/// program's window, with pictures. Throws DriverError where something is not as it is to be.
class Tour {
public:
    Tour(AppContext& context, const Machine& parts, frmMain& window, Driver hand)
        : m_context(context), m_parts(parts), m_window(window), m_hand(std::move(hand)) {}

    /// The whole day.
    void Run();
    /// What a screen of twice the pixels shows, in both palettes.
    void ShowScaled();
    [[nodiscard]] const Driver& Hand() const { return m_hand; }

private:
    // A send, from the people picked to the last status.
    void PickPeople();
    void Compose();
    void SendNow();
    void SendAtTime();
    void SeeItFinal();
    void CheckFiles() const;
    void ComposeForPictures();

    // Behind the window.
    void GoToTray();
    void SeePopupOverTray();
    void ComeBack();

    // The histories.
    void CancelOne();
    void WorkInHistory();
    void SeePublicHistory();

    void ShowLooks();

    [[nodiscard]] static int Recipients();
    [[nodiscard]] QStringList Names(const std::function<bool(const Contact&)>& isWanted, int count) const;
    [[nodiscard]] QStringList NamesWithConfirmation(bool isConfirm, int count) const;
    /// One whose number the gateway of the tour cannot reach.
    [[nodiscard]] QString NameOutOfReach() const;

    /// What became of the messages of this tour, as it stands in the outbox.
    [[nodiscard]] QList<SentMessage> Sent() const;
    /// Whether the client still follows a message.
    [[nodiscard]] bool HasPending() const;
    [[nodiscard]] bool IsShown(const QString& name) const;

    AppContext& m_context;
    const Machine& m_parts;
    frmMain& m_window;
    Driver m_hand;
    int m_expected = 0;
    /// The newest message of the history when it was closed.
    ReportRecord m_newest;
};
