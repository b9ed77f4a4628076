// Sending to 1,000 recipients, and the poll of 50 slots in an outbox of 1,000,000 rows.
//
// usage: bench_outbox [ROWS]   (in the current folder's file system; ROWS of the big outbox, 1000000 unless
// told)

#include "BareOutbox.h"
#include "BigOutbox.h"
#include "support/Ratio.h"

#include "addressbook/ContactList.h"
#include "compose/Dispatch.h"
#include "compose/MessageSize.h"
#include "core/CodePage.h"
#include "tracking/History.h"
#include "tracking/MessageTracker.h"

#include "hammer/HammerOffice.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

namespace {

constexpr int Recipients = 1000;

class BenchComposition final : public Composition {
public:
    QStringList Rows;
    [[nodiscard]] QStringList RecipientKeys() const override { return Rows; }
    [[nodiscard]] QString MessageText() const override {
        return QStringLiteral(
            "Dear @FN, the canteen closes at 14:00 on @TD. Please collect orders before then.");
    }
    [[nodiscard]] QString SignatureText() const override { return QStringLiteral("Front Desk"); }
    [[nodiscard]] QString GetTailText() const override {
        return BuildTailText(SignatureText(), QStringLiteral("Hartley House"));
    }
    void RemoveRecipientRows(const QStringList&) override { Rows.clear(); }
    void Reset() override {}
};

void Fill(ContactList& recipients, BenchComposition& composition) {
    for (int i = 1; i <= Recipients; ++i) {
        Contact contact;
        contact.SetID(static_cast<qint16>(i));
        contact.Surname = QStringLiteral("Ahern %1").arg(i);
        contact.Firstnames = QStringLiteral("Aoife");
        contact.PhoneNumber = QStringLiteral("+353865550142");
        composition.Rows.append(contact.Key);
        recipients.Add(contact);
    }
}

void BenchSend(const QTemporaryDir& folder) {
    QDir(folder.path()).mkpath(QStringLiteral("home"));
    const auto send = [&] {
        // The local files lie in a folder of their own, as they do beside a shared data folder.
        HammerOffice office(FreshOutbox(folder, QStringLiteral("send.mdb")),
                            folder.filePath(QStringLiteral("home")));
        ContactList recipients;
        BenchComposition composition;
        Fill(recipients, composition);
        mdlHistory history(office.Files, office.LocalFolders, office.Boxes, CodePage::System());
        MessageTracker tracker(office.State, office.AppSettings, office.Time);
        const DispatchServices services{office.Outbox, recipients, history, tracker, office.Time};
        return Ratio::Time([&] { Dispatch::DoSend(services, composition, office.Time.Now(), true); });
    };
    const auto bare = [&] {
        BareOutbox outbox(FreshOutbox(folder, QStringLiteral("bare.mdb")));
        return Ratio::Time([&] { outbox.Insert(Recipients); });
    };
    Ratio::Print("DoSend to 1,000 recipients", Ratio::Measure(5, send, bare), 1.25);
}

/// What a poll asks, in SQLite's own words.
QByteArray PollOf(const BigOutbox& big) {
    QByteArray filter;
    for (int slot = 0; slot < MessageTracker::SlotCount; ++slot) {
        filter += " OR msgID = " + QByteArray::number(big.IDOf(slot));
    }
    return "SELECT msgID, msgStatus, msgDeliveryTime FROM Message WHERE " + filter.mid(4);
}

void FillTracker(const BigOutbox& big, MessageTracker& tracker) {
    tracker.RefreshInterval = 0;
    for (int slot = 0; slot < MessageTracker::SlotCount; ++slot) {
        tracker.Track(big.IDOf(slot), QStringLiteral("Aoife Ahern"), QStringLiteral("+353"),
                      QStringLiteral("text"));
    }
}

void BenchPollOfOpenOutbox(HammerOffice& office, const BigOutbox& big) {
    constexpr int Polls = 100;
    const auto poll = [&] {
        MessageTracker tracker(office.State, office.AppSettings, office.Time);
        FillTracker(big, tracker);
        if (!office.State.OutboxDB->OpenDatabase(engine::Mode::ReadShared)) {
            qFatal("the outbox cannot be opened");
        }
        const double time = TimeOfOne(Polls, [&] { (void)tracker.CheckDB(); });
        office.State.OutboxDB->CloseDatabase();
        return time;
    };
    BareOutbox outbox(big.File());
    const QByteArray sql = PollOf(big);
    const auto bare = [&] { return TimeOfOne(Polls, [&] { (void)outbox.Read(sql); }); };
    Ratio::Print("poll of 50 slots, the statement on an open outbox", Ratio::Measure(9, poll, bare), 2.0);
}

void BenchPollThatOpens(HammerOffice& office, const BigOutbox& big) {
    constexpr int Polls = 50;
    const auto poll = [&] {
        MessageTracker tracker(office.State, office.AppSettings, office.Time);
        FillTracker(big, tracker);
        return TimeOfOne(Polls, [&] { (void)tracker.CheckDB(); });
    };
    const QByteArray sql = PollOf(big);
    const auto bare = [&] {
        return TimeOfOne(Polls, [&] {
            BareOutbox opened(big.File());
            (void)opened.Read(sql);
        });
    };
    Ratio::Print("poll of 50 slots, opening and closing included", Ratio::Measure(9, poll, bare), 2.0);
}

void BenchPoll(const QTemporaryDir& folder, int rows) {
    const BigOutbox big(folder, rows);
    HammerOffice office(big.File(), folder.path());
    BenchPollOfOpenOutbox(office, big);
    BenchPollThatOpens(office, big);
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const int rows = argc > 1 ? std::max(100, QString::fromLocal8Bit(argv[1]).toInt()) : 1000000;
    // Beside the program and not in /tmp, which may be memory: the disk is what both sides wait for.
    const QTemporaryDir folder(QCoreApplication::applicationDirPath() + QStringLiteral("/bench-XXXXXX"));
    BenchSend(folder);
    BenchPoll(folder, rows);
    return 0;
}
