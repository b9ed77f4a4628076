#pragma once

#include "controls/ReportControl.h"
#include "core/CodePage.h"
#include "support/RecordingDoor.h"
#include "support/TempOffice.h"
#include "tracking/History.h"
#include "tracking/HistoryHost.h"
#include "tracking/MessageTracker.h"
#include "tracking/frmHistory.h"

#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <memory>

/// Notes what the history asks of the main window.
class FakeHistoryHost final : public HistoryHost {
public:
    QStringList Calls;
    QString Tail;
    QString Signature;

    void SetMessageText(const QString& text) override { Calls.append(QStringLiteral("text ") + text); }
    void UpdateStateDisplay() override { Calls.append(QStringLiteral("UpdateStateDisplay")); }
    [[nodiscard]] QString SelectedTail() const override { return Tail; }
    [[nodiscard]] QString SignatureText() const override { return Signature; }
};

/// A history window on a real office. The clock stands at 7 March 2026, 14:30:15.
class HistoryBench : public ::testing::Test {
public:
    TempOffice Office;
    CodePage Page{1252};
    mdlHistory History{Office.Files, Office.Folders, Office.Boxes, Page};
    MessageTracker Tracker{Office.OutboxValues, Office.AppSettings, Office.Time};
    RecordingDoor Door;
    FakeHistoryHost Host;
    std::unique_ptr<frmHistory> Form;

    /// A row of the outbox, sent `minutes` before now; the new msgID.
    qint32 AddRow(qint32 status, int minutes = 60, QVariantMap columns = {}) {
        columns.insert(QStringLiteral("msgStatus"), status);
        columns.insert(QStringLiteral("msgSendTime"), Office.Time.Time.addSecs(qint64{-60} * minutes));
        if (!columns.contains(QStringLiteral("msgRecipient"))) {
            columns.insert(QStringLiteral("msgRecipient"), QStringLiteral("Ann"));
        }
        if (!columns.contains(QStringLiteral("msgText"))) {
            columns.insert(QStringLiteral("msgText"), QStringLiteral("Hello - Tail"));
            columns.insert(QStringLiteral("msgBodyTextSize"), 5);
        }
        return Office.AddMessageRow(columns);
    }
    /// The same, submitted by this workstation.
    qint32 AddOwn(qint32 status, int minutes = 60, const QVariantMap& columns = {}) {
        const qint32 id = AddRow(status, minutes, columns);
        History.AddToHistory(id, QStringLiteral("Ann"), QStringLiteral("Hello"), Office.Time.Time);
        return id;
    }
    void SetStatus(qint32 id, qint32 status) {
        Office.ExecuteOnOutbox(
            QStringLiteral("UPDATE Message SET msgStatus = %1 WHERE msgID = %2").arg(status).arg(id));
    }

    /// As it stands in the outbox.
    [[nodiscard]] qint32 StatusOf(qint32 id) {
        const QList<QVariantMap> rows = Office.MessageRows();
        for (const QVariantMap& row : rows) {
            if (row.value(QStringLiteral("msgID")).toInt() == id) {
                return row.value(QStringLiteral("msgStatus")).toInt();
            }
        }
        ADD_FAILURE() << "no message " << id;
        return -1;
    }

    [[nodiscard]] HistoryServices Services() {
        return {Office.Outbox(), History, Tracker, Host, Door, Office.Boxes, Office.Pump, Office.Time};
    }
    void Open(bool isPublic = false) {
        Form = std::make_unique<frmHistory>(Services());
        if (isPublic) {
            Form->SetIsPublic(true);
        }
        Form->LoadHistory();
        Form->show();
    }

    [[nodiscard]] ReportControl& Grid() const { return *Form->findChild<ReportControl*>(); }
    [[nodiscard]] QPushButton& Button(const char* name) const {
        return *Form->findChild<QPushButton*>(QString::fromLatin1(name));
    }
    [[nodiscard]] QTimer& Timer() const { return *Form->findChild<QTimer*>(QStringLiteral("tmrUpdate")); }
    /// What happens when the timer's time has passed.
    void FireTimer() {
        QTimerEvent event(Timer().timerId());
        QCoreApplication::sendEvent(&Timer(), &event);
    }
    /// The IDs of the rows from the top.
    [[nodiscard]] QList<qint32> Rows() const {
        QList<qint32> ids;
        for (int row = 0; row < Grid().RowCount(); ++row) {
            ids.append(HistoryRows::MessageIDOf(Grid().RowRecord(row)));
        }
        return ids;
    }
    [[nodiscard]] const ReportRecord& RowOf(qint32 id) const {
        static const ReportRecord none;
        for (int row = 0; row < Grid().RowCount(); ++row) {
            if (HistoryRows::MessageIDOf(Grid().RowRecord(row)) == id) {
                return *Grid().RowRecord(row);
            }
        }
        ADD_FAILURE() << "no row for message " << id;
        return none;
    }
    [[nodiscard]] QString Sentence(qint32 id) const { return RowOf(id).Items.value(0).ToolTip; }
    void Select(const QList<qint32>& ids) {
        Grid().clearSelection();
        for (int row = 0; row < Grid().RowCount(); ++row) {
            if (ids.contains(HistoryRows::MessageIDOf(Grid().RowRecord(row)))) {
                Grid().selectionModel()->select(Grid().model()->index(row, 0),
                                                QItemSelectionModel::Select | QItemSelectionModel::Rows);
            }
        }
    }
    [[nodiscard]] QPoint PointOf(qint32 id) const {
        return Grid().visualRect(Grid().model()->index(static_cast<int>(Rows().indexOf(id)), 1)).center();
    }
    void RightClick(qint32 id) { QTest::mouseClick(Grid().viewport(), Qt::RightButton, {}, PointOf(id)); }
};
