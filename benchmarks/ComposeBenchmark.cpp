// One key in the message box, and many contacts that come into the recipient list and leave it again.
//
// usage: bench_compose   (on the offscreen platform unless told otherwise)

#include "support/Ratio.h"

#include "compose/ComposeBench.h"
#include "compose/RecipientPanel.h"

#include <QApplication>
#include <QPlainTextEdit>

namespace {

constexpr double KeyAim = 1.0;  // ms more than in a bare text box
constexpr double TenfoldAim = 12.0;
constexpr int ListedRecipients = 500;
constexpr int KeysARound = 50;
constexpr int Rounds = 15;

/// The composing side without a test around it.
class Bench final : public ComposeBench {
public:
    void TestBody() override {}
    void Open() {
        SetUp();
        Window.show();
    }
    void FillContacts(int count) {
        for (int id = AddressContacts.Count() + 1; id <= count; ++id) {
            m_keys.append(ShowContact(static_cast<qint16>(id), QStringLiteral("Name%1").arg(id)));
        }
    }
    [[nodiscard]] QStringList Keys(int count) const { return m_keys.mid(0, count); }
    MessageEdit& Box() { return txtMessage(); }
    ListView& List() { return lvRecipients(); }
    void SetSize(qint16 size) { SetMaxMessageSize(size); }

private:
    QStringList m_keys;
};

/// Milliseconds of one key, painting included: a letter goes in and comes out again.
double TimeOfKey(QPlainTextEdit& box) {
    box.moveCursor(QTextCursor::End);
    QCoreApplication::processEvents();
    return Ratio::Time([&box] {
               for (int key = 0; key < KeysARound / 2; ++key) {
                   QTest::keyClick(&box, Qt::Key_X);
                   QCoreApplication::processEvents();
                   QTest::keyClick(&box, Qt::Key_Backspace);
                   QCoreApplication::processEvents();
               }
           }) /
           KeysARound;
}

void BenchKey(Bench& bench, int characters) {
    bench.SetSize(static_cast<qint16>(characters + 100));
    bench.Area->AddKeysToRecipients(bench.Keys(ListedRecipients));
    const QString text(characters, u'x');
    bench.Box().SetText(text);
    QPlainTextEdit bare;
    bare.resize(bench.Box().size());
    bare.setPlainText(text);
    bare.show();
    const Ratio::Result result = Ratio::Measure(
        Rounds, [&] { return TimeOfKey(bench.Box()); }, [&] { return TimeOfKey(bare); });
    const double more = result.Work - result.Limit;
    std::printf(
        "one key, %4d characters, %d recipients listed %15.3f ms %10.3f ms  %.3f ms more  aim %.3f ms  %s\n",
        characters, ListedRecipients, result.Work, result.Limit, more, KeyAim,
        more <= KeyAim ? "met" : "MISSED");
}

double TimeOfAddAndRemove(Bench& bench, int contacts) {
    const QStringList keys = bench.Keys(contacts);
    return Ratio::Time([&] {
        bench.Area->AddKeysToRecipients(keys);
        bench.Area->UpdateStateDisplay();
        bench.List().SelectAllRows();
        bench.Area->Recipients().RemoveSelectedRecipients();
        bench.Area->UpdateStateDisplay();
        QCoreApplication::processEvents();
    });
}

void BenchRecipients(Bench& bench) {
    bench.FillContacts(10000);
    const auto run = [&bench](int contacts) {
        bench.RecipientContacts.Clear();
        return TimeOfAddAndRemove(bench, contacts);
    };
    Ratio::Print("10,000 recipients in and out, against 1,000",
                 Ratio::Measure(
                     Rounds, [&] { return run(10000); }, [&] { return run(1000); }),
                 TenfoldAim);
}

}  // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    Bench bench;
    bench.Open();
    bench.FillContacts(ListedRecipients);
    for (const int characters : {160, 1600}) {
        BenchKey(bench, characters);
    }
    bench.Area->Reset();
    BenchRecipients(bench);
    return 0;
}
