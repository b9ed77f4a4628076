#pragma once

#include "controls/WaitCursor.h"
#include "tracking/HistoryRows.h"

#include <QDialog>

#include <optional>

class Clock;
class EventPump;
class HistoryHost;
class mdlHistory;
class MessageBoxes;
class MessageTracker;
class ModalDoor;
class QPushButton;
class QTimer;
struct OutboxServices;

/// What the history window works with.
struct HistoryServices {
    OutboxServices& Outbox;
    mdlHistory& History;
    MessageTracker& Tracker;
    HistoryHost& Host;
    ModalDoor& Door;
    MessageBoxes& Boxes;
    EventPump& Pump;
    const Clock& Time;
};

/// Shows what became of the messages, and lets the user cancel those that still wait, take an old text back
/// into the message box, clear and print. Made anew for each use; holds no message data of its own: each pass
/// reads the table Message again. Own history: this workstation's messages, as far as their IDs stand in
/// history.sms. Public history: the newest 100 of the whole outbox, with who sent them.
///
/// cmdCancel is on offer while a selected message is pending; that is looked at after each pass too, since
/// the gateway may have taken it. Enter presses the button that has the focus and elsewhere closes: taking a
/// text back replaces the message, which wants a double click or the menu.
///
/// While a pass or a cancel waits for the outbox the window stays, and with it the main window takes no
/// input: a send in the middle of it would take the outbox away. Who closes it meanwhile is obeyed when the
/// work is over; only the end of the program does not wait.
class frmHistory final : public QDialog {
    Q_OBJECT
public:
    static constexpr int UpdateInterval = 15000;  // ms, from the end of a pass to the next one

    explicit frmHistory(const HistoryServices& services, QWidget* parent = nullptr);
    ~frmHistory() override;

    /// Chooses the mode, before LoadHistory.
    void SetIsPublic(bool isPublic);
    /// The first pass, and from then on one after another.
    void LoadHistory();

    /// Cancels the selected messages that are pending, after asking. From the first use on the window no
    /// longer updates itself, whatever was answered.
    void DoCancel();
    /// How many selected rows are pending.
    [[nodiscard]] qint16 PendingCount() const;
    [[nodiscard]] static bool IsPending(const ReportRecord& record) { return HistoryRows::IsPending(record); }
    /// The body of a text that GetTailText had put its tail behind.
    [[nodiscard]] QString StripTail(const QString& text) const;
    /// See HistorySlots.
    void ScrollMsgArray() { m_rows.MsgArray.ScrollMsgArray(); }

    /// One pass. Where the outbox cannot be opened it is dropped, and the hourglass stays until a pass gets
    /// through.
    void UpdateHistory(bool initial);

    /// Esc.
    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    class Work;

    /// Hides the window, at once or when the work is over that runs.
    void Leave();
    [[nodiscard]] QPushButton* NewButton(const QString& name, const QString& text, const QString& toolTip);
    void Lay();
    void Connect();
    /// Fills the slots and sets up the columns, once the mode is known.
    void LoadRows();
    void Tick();
    void EnableCancel();
    void CancelMessages(const QList<qint32>& messageIDs);
    /// The outbox is open. A line for each message that could not be canceled.
    [[nodiscard]] QString CancelEach(const QList<qint32>& messageIDs);
    void ShowRowMenu(const QPoint& point);
    void Clear();

    HistoryServices m_services;
    ReportControl* m_rptHistory;
    QPushButton* m_cmdCancel;
    QPushButton* m_cmdClear;
    QPushButton* m_cmdPrint;
    QPushButton* m_cmdClose;
    QTimer* m_tmrUpdate;
    HistoryRows m_rows;
    std::optional<WaitCursor> m_pointer;
    int m_works = 0;  // that run, one inside the other
    bool m_isCloseWanted = false;
    bool m_isUpdating = false;
    bool m_isCanceling = false;
    bool m_isCancelWanted = false;  // pressed in the middle of a pass
    bool m_isUpdateOver = false;    // DoCancel was used
};
