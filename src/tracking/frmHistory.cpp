#include "tracking/frmHistory.h"

#include "controls/Cmenu.h"
#include "controls/FormTools.h"
#include "controls/ModalDoor.h"
#include "controls/ReportControl.h"
#include "controls/frmGeneralInfo.h"
#include "controls/mdlWinAPI.h"
#include "core/Product.h"
#include "core/TextRules.h"
#include "core/Trap.h"
#include "platform/Clock.h"
#include "platform/EventPump.h"
#include "platform/MessageBoxes.h"
#include "store/Outbox.h"
#include "tracking/History.h"
#include "tracking/HistoryHost.h"
#include "tracking/MessageTracker.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace {

constexpr int CaptionIndent = 2;
constexpr int PassesAfterLoad = 4;
constexpr int RecipientItem = 2;
constexpr int MenuCancel = 1;
constexpr int MenuNewMessage = 2;
constexpr qsizetype MenuTextWidth = 30;
constexpr int CharsWide = 96;
constexpr int RowsShown = 13;
const QString LineBreak = QStringLiteral("\r\n");

/// `text` without `end` and the blanks before it, if it ends so.
QString WithoutEnd(const QString& text, const QString& end) {
    return text.endsWith(end) ? Text::Trim(text.chopped(end.size())) : text;
}

}  // namespace

/// A piece of work that lets events run; the window outlasts it.
class frmHistory::Work {
public:
    explicit Work(frmHistory& form) : m_form(form) { ++m_form.m_works; }
    ~Work() {
        if (--m_form.m_works == 0 && std::exchange(m_form.m_isCloseWanted, false)) {
            m_form.hide();
        }
    }
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;

private:
    frmHistory& m_form;
};

frmHistory::frmHistory(const HistoryServices& services, QWidget* parent)
    : QDialog(parent),
      m_services(services),
      m_rptHistory(new ReportControl(this)),
      m_cmdCancel(NewButton(QStringLiteral("cmdCancel"), QStringLiteral("&Cancel"),
                            QStringLiteral(" Cancel selected messages "))),
      m_cmdClear(NewButton(QStringLiteral("cmdClear"), QStringLiteral("C&lear"),
                           QStringLiteral(" Clears your message history "))),
      m_cmdPrint(NewButton(QStringLiteral("cmdPrint"), QStringLiteral("&Print"), QString())),
      m_cmdClose(NewButton(QStringLiteral("cmdClose"), QStringLiteral("&Close"), QString())),
      m_tmrUpdate(new QTimer(this)),
      m_rows(*m_rptHistory, services.Outbox.State, services.Time) {
    setObjectName(QStringLiteral("frmHistory"));
    m_rptHistory->setObjectName(QStringLiteral("rptHistory"));
    m_rptHistory->setAccessibleName(QStringLiteral("Messages"));
    m_cmdCancel->setEnabled(false);
    m_cmdClose->setDefault(true);
    m_tmrUpdate->setObjectName(QStringLiteral("tmrUpdate"));
    m_tmrUpdate->setInterval(UpdateInterval);
    m_tmrUpdate->setSingleShot(true);
    Lay();
    Connect();
    FormTools::SetFormCaption(*this, QStringLiteral("Message History"), CaptionIndent);
    FormTools::KeepTitleWhole(*this);
    FormTools::ExpandPlaceholders(*this, services.Time.Now().date().year());
    if (parent != nullptr) {
        setWindowIcon(parent->window()->windowIcon());
    }
}

frmHistory::~frmHistory() {
    m_rptHistory->DeleteAllRecords();
}

QPushButton* frmHistory::NewButton(const QString& name, const QString& text, const QString& toolTip) {
    auto* button = new QPushButton(text, this);
    button->setObjectName(name);
    button->setToolTip(toolTip);
    button->setAccessibleName(QString(text).remove(u'&'));
    return button;
}

void frmHistory::Lay() {
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_cmdCancel);
    buttons->addWidget(m_cmdClear);
    buttons->addWidget(m_cmdPrint);
    buttons->addStretch(1);
    buttons->addWidget(m_cmdClose);
    auto* column = new QVBoxLayout(this);
    column->addWidget(m_rptHistory, 1);
    column->addLayout(buttons);
    resize(fontMetrics().averageCharWidth() * CharsWide, m_rptHistory->RowHeight() * RowsShown);
}

void frmHistory::Connect() {
    connect(m_cmdCancel, &QAbstractButton::clicked, this, &frmHistory::DoCancel);
    connect(m_cmdClear, &QAbstractButton::clicked, this, &frmHistory::Clear);
    connect(m_cmdPrint, &QAbstractButton::clicked, this, [this] {
        Trap([this] { m_rptHistory->Print(m_services.Door, Text::Trim(windowTitle()), true); });
    });
    connect(m_cmdClose, &QAbstractButton::clicked, this, &frmHistory::Leave);
    connect(m_tmrUpdate, &QTimer::timeout, this, &frmHistory::Tick);
    connect(m_rptHistory, &ReportControl::RowSelectionChanged, this, &frmHistory::EnableCancel);
    connect(m_rptHistory, &ReportControl::ContextMenuRequested, this, &frmHistory::ShowRowMenu);
    connect(m_rptHistory, &ReportControl::RowDoubleClicked, this, [this](const ReportRecord* record) {
        if (record != nullptr) {
            const QString text = record->PreviewText;
            Trap([&] { m_services.Host.SetMessageText(text); });
            Leave();
        }
    });
}

void frmHistory::Leave() {
    if (m_works > 0) {
        m_isCloseWanted = true;
    } else {
        hide();
    }
}

void frmHistory::reject() {
    Leave();
}

void frmHistory::closeEvent(QCloseEvent* event) {
    // The user's click on the frame can wait; a program that ends closes its windows by itself.
    if (event->spontaneous()) {
        Leave();
        event->setAccepted(!isVisible());
    } else {
        hide();
    }
}

void frmHistory::SetIsPublic(bool isPublic) {
    m_rows.IsPublic = isPublic;
    if (!isPublic) {
        return;
    }
    FormTools::SetFormCaption(*this, QStringLiteral("Public Message History"), CaptionIndent);
    FormTools::KeepTitleWhole(*this);
    for (QPushButton* button : {m_cmdCancel, m_cmdClear, m_cmdPrint}) {
        button->hide();
    }
}

void frmHistory::LoadRows() {
    m_rows.MsgArray.InitMsgArray();
    if (!m_rows.IsPublic) {
        Trap([this] { m_rows.MsgArray.LoadHistoryIDs(m_services.History.ReadHistory()); });
    }
    Trap([this] { m_rows.SetupColumns(); });
    m_services.Pump.Process(PassesAfterLoad);
}

void frmHistory::LoadHistory() {
    LoadRows();
    UpdateHistory(true);
    m_rptHistory->SelectFirstRow();
    EnableCancel();
    if (!m_isUpdateOver) {
        m_tmrUpdate->start();
    }
}

void frmHistory::Tick() {
    const Work work(*this);
    UpdateHistory(false);
    m_services.Pump.Process(PassesAfterLoad);
    if (!m_isUpdateOver) {
        m_tmrUpdate->start();
    }
}

void frmHistory::UpdateHistory(bool initial) {
    if (m_isUpdating) {
        return;
    }
    const Work work(*this);
    {
        const QScopedValueRollback<bool> updating(m_isUpdating, true);
        if (!m_pointer.has_value()) {
            m_pointer.emplace(*this);
        }
        DB* database = m_services.Outbox.State.OutboxDB.get();
        if (database != nullptr && database->OpenDatabase(engine::Mode::ReadShared)) {
            Trap([&] { m_rows.Update(initial); });
            database->CloseDatabase();
            m_pointer.reset();
        }
    }
    EnableCancel();
    // Nobody is asked who has closed the window meanwhile.
    if (std::exchange(m_isCancelWanted, false) && isVisible() && !m_isCloseWanted) {
        DoCancel();
    }
}

void frmHistory::EnableCancel() {
    m_cmdCancel->setEnabled(PendingCount() > 0);
}

qint16 frmHistory::PendingCount() const {
    const QList<const ReportRecord*> selected = m_rptHistory->SelectedRecords();
    return static_cast<qint16>(std::count_if(selected.cbegin(), selected.cend(),
                                             [](const ReportRecord* record) { return IsPending(*record); }));
}

void frmHistory::DoCancel() {
    m_tmrUpdate->stop();
    m_isUpdateOver = true;
    if (m_isCanceling) {
        return;  // an impatient press while the messages of the one before are being canceled
    }
    if (m_isUpdating) {
        m_isCancelWanted = true;  // the outbox is in use
        return;
    }
    QList<qint32> messageIDs;
    const QList<const ReportRecord*> selected = m_rptHistory->SelectedRecords();
    for (const ReportRecord* record : selected) {
        if (IsPending(*record)) {
            messageIDs.append(HistoryRows::MessageIDOf(record));
        }
    }
    if (messageIDs.isEmpty()) {
        return;
    }
    const QString question =
        QStringLiteral("Are you sure you want to CANCEL %1 message").arg(messageIDs.size()) +
        (messageIDs.size() > 1 ? QStringLiteral("s") : QString());
    if (m_services.Boxes.Show({Product::AppTitle, question, BoxIcon::Question, BoxButtons::YesNo}) ==
        BoxAnswer::Yes) {
        const Work work(*this);
        const QScopedValueRollback<bool> canceling(m_isCanceling, true);
        CancelMessages(messageIDs);
        UpdateHistory(false);
    }
}

void frmHistory::CancelMessages(const QList<qint32>& messageIDs) {
    DB* database = m_services.Outbox.State.OutboxDB.get();
    if (database == nullptr || !database->OpenDatabase(engine::Mode::ReadWriteShared)) {
        const QString reason = database == nullptr ? QString() : database->LastError();
        m_services.Boxes.Show({Product::AppTitle,
                               QStringLiteral("Could not open the Message database") + LineBreak + reason,
                               BoxIcon::Critical, BoxButtons::Ok});
        return;
    }
    const QString refused = CancelEach(messageIDs);
    if (!refused.isEmpty()) {
        ShowGeneralInfo(m_services.Door, *this, QStringLiteral("Cancel Messages"),
                        QStringLiteral("The following messages could not be canceled:") + LineBreak +
                            LineBreak + refused);
    }
    database->CloseDatabase();
}

QString frmHistory::CancelEach(const QList<qint32>& messageIDs) {
    QString refused;
    for (const qint32 messageID : messageIDs) {
        bool isCanceled = false;
        Trap([&] { isCanceled = mdlOutbox::CancelMessage(m_services.Outbox, messageID).value_or(false); });
        if (isCanceled) {
            m_services.Tracker.CancelTracking(messageID);
        } else {
            refused += QStringLiteral("Message ID#") + QString::number(messageID) + LineBreak;
        }
    }
    return refused;
}

void frmHistory::ShowRowMenu(const QPoint& point) {
    mdlWinAPI::FlushMouseMessages(*this, m_services.Pump);
    if (!isVisible()) {
        return;
    }
    const ReportRecord* record = m_rptHistory->HitTest(point);
    if (HistoryRows::MessageIDOf(record) == 0) {
        return;
    }
    // A pass may replace the record while the menu is open.
    const QString text = record->PreviewText;
    Cmenu menu;
    const qint16 pending = m_rows.IsPublic ? qint16{0} : PendingCount();
    if (pending == 1) {
        menu.AddItem(MenuCancel, QStringLiteral("Cancel message to ") + record->TextOf(RecipientItem));
    } else if (pending > 1) {
        menu.AddItem(MenuCancel, QStringLiteral("Cancel %1 Messages").arg(pending));
    }
    menu.AddItem(MenuNewMessage,
                 QStringLiteral("New Message with '") + text.left(MenuTextWidth) + QStringLiteral("...'"));
    const int chosen = menu.TrackPopup(m_services.Door, m_rptHistory->viewport()->mapToGlobal(point));
    if (chosen == MenuCancel) {
        DoCancel();
    } else if (chosen == MenuNewMessage) {
        Trap([&] { m_services.Host.SetMessageText(text); });
        Trap([this] { m_services.Host.UpdateStateDisplay(); });
        Leave();
    }
}

void frmHistory::Clear() {
    if (m_services.Boxes.Show({Product::AppTitle,
                               QStringLiteral("Do you wish to clear your message history?"),
                               BoxIcon::Question, BoxButtons::YesNo}) == BoxAnswer::No) {
        return;
    }
    m_rptHistory->DeleteAllRecords();
    m_rptHistory->Populate();
    Trap([this] { m_services.History.ClearHistory(); });
}

QString frmHistory::StripTail(const QString& text) const {
    const QString body = WithoutEnd(Text::Trim(text), m_services.Host.SelectedTail());
    return WithoutEnd(body, QStringLiteral(" : ") + m_services.Host.SignatureText() + QStringLiteral(" -"));
}
