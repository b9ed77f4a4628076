// Opening the message history over an outbox of 1,000,000 rows: the own history with its 100 messages, and
// the first pass of the public one, each against its bare query.
//
// usage: bench_history [ROWS]   (ROWS of the outbox, 1000000 unless told)

#include "BigOutbox.h"

#include "controls/ModalDoor.h"
#include "controls/ReportControl.h"
#include "core/CodePage.h"
#include "tracking/History.h"
#include "tracking/HistoryHost.h"
#include "tracking/HistoryRows.h"
#include "tracking/MessageTracker.h"
#include "tracking/frmHistory.h"

#include "hammer/HammerOffice.h"

#include <QApplication>
#include <QDir>

#include <memory>
#include <vector>

namespace {

constexpr int Opened = 20;

class NoHost final : public HistoryHost {
public:
    void SetMessageText(const QString&) override {}
    void UpdateStateDisplay() override {}
    [[nodiscard]] QString SelectedTail() const override { return {}; }
    [[nodiscard]] QString SignatureText() const override { return {}; }
};

struct Grid {
    explicit Grid(HammerOffice& office) : Rows(Control, office.State, office.Time) {}
    ReportControl Control;
    HistoryRows Rows;
};

class Bench {
public:
    Bench(const BigOutbox& big, const QString& home) : m_big(big), m_office(big.File(), home) {
        for (int i = HistorySlots::Count - 1; i >= 0; --i) {
            m_history.AddToHistory(big.IDOf(i), QStringLiteral("Aoife Ahern"), QStringLiteral("text"),
                                   m_office.Time.Now());
        }
    }

    /// Milliseconds of the first pass: opening the outbox, the query, the rows in the grid. The grids are
    /// there before, so that the passes follow one another as the bare queries do.
    double FirstPass(bool isPublic) {
        std::vector<std::unique_ptr<Grid>> grids;
        for (int i = 0; i < Opened; ++i) {
            Grid& grid = *grids.emplace_back(std::make_unique<Grid>(m_office));
            grid.Rows.IsPublic = isPublic;
            grid.Rows.SetupColumns();
            if (!isPublic) {
                grid.Rows.MsgArray.LoadHistoryIDs(m_history.ReadHistory());
            }
        }
        const double all = Ratio::Time([&] {
            for (const auto& grid : grids) {
                if (m_office.State.OutboxDB->OpenDatabase(engine::Mode::ReadShared)) {
                    grid->Rows.Update(true);
                    m_office.State.OutboxDB->CloseDatabase();
                }
            }
        });
        return all / Opened;
    }
    /// Milliseconds from an empty window to one that is ready to be shown: the local file as well.
    double Load(bool isPublic) {
        double sum = 0;
        for (int i = 0; i < Opened; ++i) {
            frmHistory form({m_office.Outbox, m_history, m_tracker, m_host, m_door, m_office.Boxes,
                             m_office.Pump, m_office.Time});
            form.SetIsPublic(isPublic);
            sum += Ratio::Time([&] { form.LoadHistory(); });
        }
        return sum / Opened;
    }
    /// The bare query, with opening and closing, as a pass has them.
    double Query(const QByteArray& sql) const {
        return TimeOfOne(Opened, [&] {
            BareOutbox opened(m_big.File());
            (void)opened.Read(sql);
        });
    }
    [[nodiscard]] QByteArray OwnQuery() const {
        QByteArray filter;
        for (int i = 0; i < HistorySlots::Count; ++i) {
            filter += " OR msgID = " + QByteArray::number(m_big.IDOf(i));
        }
        return "SELECT msgID, msgSendTime, msgStatus, msgRecipient, msgText, msgBodyTextSize, "
               "msgDeliveryStatus, msgDeliveryTime, msgErrorReason FROM Message WHERE " +
               filter.mid(4) + " ORDER BY msgSendTime DESC";
    }
    [[nodiscard]] static QByteArray PublicQuery() {
        return "SELECT msgSendTime, msgID, msgComplete, msgStatus, msgDeliveryStatus, msgRecipient, msgText, "
               "msgSignature, msgStation, msgBodyTextSize, msgDeliveryTime, msgErrorReason FROM Message "
               "WHERE "
               "msgSendTime <= '2099-01-01 00:00:00' ORDER BY msgSendTime DESC, msgID DESC LIMIT 100";
    }

private:
    const BigOutbox& m_big;
    HammerOffice m_office;
    mdlHistory m_history{m_office.Files, m_office.LocalFolders, m_office.Boxes, CodePage::System()};
    MessageTracker m_tracker{m_office.State, m_office.AppSettings, m_office.Time};
    NoHost m_host;
    ScreenModalDoor m_door;
};

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const int rows = argc > 1 ? std::max(1000, QString::fromLocal8Bit(argv[1]).toInt()) : 1000000;
    // Beside the program and not in /tmp, which may be memory.
    const QTemporaryDir folder(QCoreApplication::applicationDirPath() + QStringLiteral("/bench-XXXXXX"));
    const BigOutbox big(folder, rows);
    QDir(folder.path()).mkpath(QStringLiteral("home"));
    Bench bench(big, folder.filePath(QStringLiteral("home")));
    constexpr int Rounds = 9;
    const auto own = [&] { return bench.Query(bench.OwnQuery()); };
    const auto open = [&] { return bench.Query(Bench::PublicQuery()); };
    Ratio::Print("own history opened, history.sms read, 100 messages",
                 Ratio::Measure(
                     Rounds, [&] { return bench.Load(false); }, own),
                 2.0);
    Ratio::Print("own history, first pass",
                 Ratio::Measure(
                     Rounds, [&] { return bench.FirstPass(false); }, own),
                 2.0);
    Ratio::Print("public history, first pass",
                 Ratio::Measure(
                     Rounds, [&] { return bench.FirstPass(true); }, open),
                 2.0);
    return 0;
}
