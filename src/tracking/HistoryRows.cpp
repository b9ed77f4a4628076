#include "tracking/HistoryRows.h"

#include "controls/Icons.h"
#include "controls/ReportControl.h"
#include "core/Trap.h"
#include "platform/Clock.h"
#include "store/Outbox.h"
#include "tracking/HistoryStatus.h"
#include "tracking/MessageRow.h"

#include <QFontMetrics>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

constexpr int StatusItem = 0;
constexpr int TimeColumn = 1;
constexpr qsizetype MostItems = 4;
constexpr int StatusColumnWidth = 32;
constexpr int LastColumnMargin = 4;
constexpr int CellMargin = 12;  // the room that a text needs beside itself in a column
const QColor PaperWhite(255, 255, 255);
const QColor Grey(92, 92, 92);
const QColor GoodGreen(0, 128, 0);
const QColor BadRed(128, 0, 0);
const QString TimeFormat = QStringLiteral("dd mmm hh:nn");
const QString TagLetter = QStringLiteral("M");

/// imgStatus.
QList<QIcon> StatusImages() {
    QList<QIcon> images;
    for (const char* name : {"waiting", "sending", "canceled", "enroute", "failed", "delivered",
                             "undelivered", "unconfirmed", "unusual"}) {
        images.append(Icons::Get(QStringLiteral("history-") + QString::fromLatin1(name)));
    }
    return images;
}

void ShowRowStatus(ReportRecord& record, const MessageState& state) {
    ReportItem& item = record.Items[StatusItem];
    item.Icon = HistoryStatus::StatusIcon(state.Status);
    item.Value = state.Status;
    item.ToolTip = HistoryStatus::StatusSentence(state);
    item.TextColour = HistoryStatus::IsBadNews(state.Status) ? BadRed : GoodGreen;
}

ReportRecord RecordOf(const MessageRow& row, qint32 messageID, const MessageState& state) {
    ReportRecord record;
    record.Tag = TagLetter + QString::number(messageID);
    record.Items.reserve(MostItems);
    ReportItem& status = record.Items.emplaceBack();
    status.HideText = true;
    status.BackColour = PaperWhite;
    ReportItem& time = record.Items.emplaceBack();
    time.Format = TimeFormat;
    time.TextColour = Grey;
    time.BackColour = PaperWhite;
    ReportItem& recipient = record.Items.emplaceBack();
    recipient.BackColour = PaperWhite;
    Trap([&] { time.Value = row.SendTime(); });
    Trap([&] { recipient.Value = row.Recipient(); });
    Trap([&] { record.PreviewText = row.Body(); });
    ShowRowStatus(record, state);
    return record;
}

template <typename Step>
void ForEachRow(engine::Recordset& rows, Step&& step) {
    Trap([&] {
        const MessageRow row(rows);
        for (; !rows.EndOfFile(); rows.MoveNext()) {
            Trap([&] { step(row); });
        }
    });
    Trap([&] { rows.Close(); });
}

}  // namespace

/// A row of the own history on its way to the grid.
struct HistoryRows::OwnRow {
    qint32 MessageID = 0;
    ReportRecord Record;
    [[nodiscard]] const QVariant& SendTime() const { return Record.Items[TimeColumn].Value; }
};

HistoryRows::HistoryRows(ReportControl& grid, const OutboxState& outbox, const Clock& clock)
    : m_grid(grid), m_outbox(outbox), m_clock(clock) {}

void HistoryRows::SetupColumns() {
    const QFontMetrics metrics = m_grid.fontMetrics();
    const auto widthOf = [&](const QString& sample) {
        return metrics.horizontalAdvance(sample) + CellMargin;
    };
    m_grid.AddColumn(QString(), StatusColumnWidth, false, Qt::AlignHCenter);
    m_grid.AddColumn(QStringLiteral("Time"), widthOf(QStringLiteral("00 www 00:00")), true);
    m_grid.AddColumn(QStringLiteral("Recipient"), widthOf(QStringLiteral("wwwwPeter M. Merriottwwww")), true);
    if (IsPublic) {
        m_grid.AddColumn(QStringLiteral("From"), 0, true);
    }
    SizeLastColumn();
    m_grid.SetImages(StatusImages());
    m_grid.SetSortColumn(TimeColumn, Qt::DescendingOrder);
    m_grid.SetPreviewMode(true);
}

void HistoryRows::SizeLastColumn() {
    m_grid.SizeLastColumn(LastColumnMargin);
}

void HistoryRows::Update(bool initial) {
    if (IsPublic) {
        UpdatePublicRows(initial);
    } else {
        UpdateOwnRows(initial);
    }
}

qint32 HistoryRows::MessageIDOf(const ReportRecord* record) {
    return record == nullptr ? 0 : record->Tag.mid(TagLetter.size()).toInt();
}

bool HistoryRows::IsPending(const ReportRecord& record) {
    return !record.Items.isEmpty() && record.Items[StatusItem].Value == QVariant(0);
}

std::unique_ptr<engine::Recordset> HistoryRows::OpenHistorySet(bool initial) {
    const QString sql = IsPublic  ? HistorySlots::PublicSQL(m_clock.Now())
                        : initial ? MsgArray.OwnLoadSQL()
                                  : MsgArray.OwnRefreshSQL();
    if (sql.isEmpty() || m_outbox.OutboxDB == nullptr) {
        return nullptr;
    }
    return m_outbox.OutboxDB->OpenDynaset(sql, engine::CursorType::ForwardOnly, engine::LockType::ReadOnly);
}

void HistoryRows::UpdateOwnRows(bool initial) {
    const auto rows = OpenHistorySet(initial);
    if (rows == nullptr) {
        return;
    }
    if (initial) {
        AddOwnRows(*rows);
        m_grid.Populate();
        return;
    }
    bool isChanged = false;
    ForEachRow(*rows, [&](const MessageRow& row) { isChanged = RefreshOwnRow(row) || isChanged; });
    if (isChanged) {
        m_grid.Redraw();
    }
}

void HistoryRows::AddOwnRows(engine::Recordset& rows) {
    // All messages of one send have one send time. Their slots stand newest first, and so must their records,
    // or each would show another one's status.
    std::vector<OwnRow> sameTime;
    const auto addThese = [&] {
        std::stable_sort(sameTime.begin(), sameTime.end(), [](const OwnRow& one, const OwnRow& other) {
            return one.MessageID > other.MessageID;
        });
        for (OwnRow& row : sameTime) {
            AddOwnRow(std::move(row));
        }
        sameTime.clear();
    };
    ForEachRow(rows, [&](const MessageRow& row) {
        const qint32 messageID = row.ID();
        OwnRow own{messageID, RecordOf(row, messageID, row.State())};
        if (!sameTime.empty() && sameTime.front().SendTime() != own.SendTime()) {
            addThese();
        }
        sameTime.push_back(std::move(own));
    });
    addThese();
}

void HistoryRows::AddOwnRow(OwnRow row) {
    const int slot = MsgArray.FindSlot(row.MessageID);
    if (slot < 0) {
        return;
    }
    // Whatever the status is: the next pass asks for every message once more.
    MsgArray.At(slot).Status = 0;
    m_grid.AddRecord(std::move(row.Record));
}

bool HistoryRows::RefreshOwnRow(const MessageRow& row) {
    const int slot = MsgArray.FindSlot(row.ID());
    const MessageState state = row.State();
    if (slot < 0 || MsgArray.At(slot).Status == state.Status) {
        return false;
    }
    if (ReportRecord* record = m_grid.Record(slot); record != nullptr) {
        ShowRowStatus(*record, state);
    }
    MsgArray.At(slot).Status = state.Status;
    return true;
}

void HistoryRows::UpdatePublicRows(bool initial) {
    const auto rows = OpenHistorySet(initial);
    if (rows == nullptr) {
        return;
    }
    bool isChanged = false;
    ForEachRow(*rows, [&](const MessageRow& row) { isChanged = MergePublicRow(row, initial) || isChanged; });
    if (isChanged) {
        m_grid.Populate();
    }
}

bool HistoryRows::MergePublicRow(const MessageRow& row, bool initial) {
    const qint32 messageID = row.ID();
    const MessageState state = row.State();
    int slot = MsgArray.FindSlot(messageID);
    if (slot < 0) {
        slot = TakePublicSlot(initial);
        if (slot < 0) {
            return false;
        }
        MsgArray.At(slot).MessageID = messageID;
        ReportRecord record = RecordOf(row, messageID, state);
        ReportItem& sender = record.Items.emplaceBack();
        sender.Value = row.Sender();
        sender.TextColour = Grey;
        m_grid.InsertRecord(slot, std::move(record));
    } else if (MsgArray.At(slot).Status == state.Status) {
        return false;
    } else if (ReportRecord* record = m_grid.Record(slot); record != nullptr) {
        ShowRowStatus(*record, state);
    }
    MsgArray.At(slot).Status = state.Status;
    return true;
}

int HistoryRows::TakePublicSlot(bool initial) {
    if (m_grid.RecordCount() == HistorySlots::Count) {
        m_grid.RemoveRecord(HistorySlots::Count - 1);
    }
    if (initial) {
        return MsgArray.FindSlot(0);
    }
    MsgArray.ScrollMsgArray();
    return 0;
}
