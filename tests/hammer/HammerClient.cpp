// One client under load: the real dispatch loop, history file and tracker, without a window. Sends until its
// time is over or the outbox nears the end of the 16-bit numbers. What the user would have been shown as sent
// goes to the ack file.
//
// usage: hammer_client OUTBOX HOME TAG SECONDS RECIPIENTS ACKFILE

#include "addressbook/ContactList.h"
#include "compose/Dispatch.h"
#include "compose/MessageSize.h"
#include "core/CodePage.h"
#include "tracking/History.h"
#include "tracking/MessageTracker.h"

#include "hammer/HammerOffice.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTextStream>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr qint32 LastNumber = 30000;

/// Recipients that a press still lists; a removal is what the user sees as "sent".
class HammerComposition final : public Composition {
public:
    HammerComposition(ContactList& recipients, int ackFile) : m_recipients(recipients), m_ackFile(ackFile) {}

    QStringList Rows;

    [[nodiscard]] QStringList RecipientKeys() const override { return Rows; }
    [[nodiscard]] QString MessageText() const override { return QStringLiteral(" load @SN "); }
    [[nodiscard]] QString SignatureText() const override { return QStringLiteral("Desk"); }
    [[nodiscard]] QString GetTailText() const override {
        return BuildTailText(SignatureText(), QStringLiteral("Hartley House"));
    }
    void RemoveRecipientRows(const QStringList& keys) override {
        QByteArray lines;
        for (const QString& key : keys) {
            lines += m_names.value(key).toUtf8() + '\n';
            Rows.removeAll(key);
        }
        if (::write(m_ackFile, lines.constData(), static_cast<size_t>(lines.size())) != lines.size()) {
            qFatal("the ack file cannot be written");
        }
    }
    void Reset() override { m_recipients.Clear(); }

    void Fill(const QString& tag, int press, int count) {
        Rows.clear();
        m_names.clear();
        m_recipients.Clear();
        for (int i = 1; i <= count; ++i) {
            Contact contact;
            contact.SetID(static_cast<qint16>(i));
            contact.Surname = QStringLiteral("%1-%2-%3").arg(tag).arg(press).arg(i);
            contact.PhoneNumber = QStringLiteral("+35386555%1").arg(i, 4, 10, QChar(u'0'));
            Rows.append(contact.Key);
            m_names.insert(contact.Key, contact.Surname);
            m_recipients.Add(contact);
        }
    }

private:
    ContactList& m_recipients;
    QHash<QString, QString> m_names;
    int m_ackFile;
};

void Report(const HammerOffice& office, const MessageTracker& tracker, const QList<qint64>& presses) {
    QTextStream out(stdout);
    office.Report(out);
    for (const qint64 microseconds : office.Engine.Seen.InsertMicroseconds) {
        out << "insert " << microseconds << '\n';
    }
    for (const qint64 microseconds : presses) {
        out << "press " << microseconds << '\n';
    }
    for (int slot = 0; slot < MessageTracker::SlotCount; ++slot) {
        const MessageTracker::Slot& entry = tracker.SlotAt(slot);
        if (entry.msgID != 0) {
            out << "tracked " << entry.msgID << ' ' << entry.recipient << ' ' << entry.status << '\n';
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() != 7) {
        return 2;
    }
    qputenv("COMPUTERNAME", "LOAD");
    qputenv("USERNAME", arguments[3].toUtf8());
    HammerOffice office(arguments[1], arguments[2]);
    const int ackFile =
        ::open(QFile::encodeName(arguments[6]).constData(), O_WRONLY | O_CREAT | O_APPEND, 0600);

    ContactList recipients;
    mdlHistory history(office.Files, office.LocalFolders, office.Boxes, CodePage::System());
    MessageTracker tracker(office.State, office.AppSettings, office.Time);
    tracker.RefreshInterval = 0;
    HammerComposition composition(recipients, ackFile);
    const DispatchServices services{office.Outbox, recipients, history, tracker, office.Time};

    QElapsedTimer timer;
    timer.start();
    QList<qint64> presses;  // microseconds of each
    qint32 newest = 0;
    while (timer.elapsed() < arguments[4].toInt() * 1000 && newest < LastNumber) {
        composition.Fill(arguments[3], static_cast<int>(presses.size()) + 1, arguments[5].toInt());
        QElapsedTimer press;
        press.start();
        Dispatch::DoSend(services, composition, office.Time.Now(), true);
        presses.append(press.nsecsElapsed() / 1000);
        (void)tracker.Update();
        for (int slot = 0; slot < MessageTracker::SlotCount; ++slot) {
            newest = std::max(newest, tracker.SlotAt(slot).msgID);
        }
    }
    Report(office, tracker, presses);
    return 0;
}
