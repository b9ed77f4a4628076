// A list of 30,000 contacts on screen.
//
// usage: bench_phonebook [CONTACTS]   (on the offscreen platform unless told otherwise)

#include "support/Ratio.h"

#include "addressbook/ContactList.h"
#include "addressbook/PhonebookArea.h"
#include "addressbook/PhonebookHost.h"
#include "addressbook/PhonebookSide.h"
#include "controls/ListView.h"
#include "core/Log.h"
#include "store/office/SampleOffice.h"
#include "support/RecordingDoor.h"
#include "support/TempOffice.h"

#include <QAbstractListModel>
#include <QApplication>
#include <QListView>

namespace {

constexpr double ShowAim = 2.0;
constexpr int Rounds = 9;

/// The rest of the window, which this work does not need.
class NoHost final : public PhonebookHost {
public:
    void AddKeysToRecipients(const QStringList&) override {}
    void DropGroupByID(qint32) override {}
    void ScrollRecipientsTo(int) override {}
    void UpdateRecipient(const Contact&, const QString&) override {}
    void RefreshRecipientList() override {}
    void UpdateStateDisplay() override {}
    bool IsPasswordOK(bool) override { return true; }
};

/// So many rows of one text.
class ConstantModel final : public QAbstractListModel {
public:
    explicit ConstantModel(int rows) : m_rows(rows) {}
    [[nodiscard]] int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : m_rows;
    }
    [[nodiscard]] QVariant data(const QModelIndex&, int role) const override {
        return role == Qt::DisplayRole ? QVariant(QStringLiteral("Ahern, Aoife")) : QVariant();
    }
    void Restart() {
        beginResetModel();
        endResetModel();
    }

private:
    int m_rows;
};

void FillPhonebook(TempOffice& office, int contacts) {
    const auto connection = office.FileEngine.NewConnection();
    connection->Mode = engine::Mode::ReadWriteShared;
    connection->Open(office.PhonebookPath());
    SampleOffice::Plan plan;
    plan.Contacts = contacts;
    if (!SampleOffice(plan).WriteTo(*connection)) {
        qFatal("the contacts could not be written");
    }
}

/// Until nothing is left to be painted.
void Paint() {
    QApplication::processEvents();
}

void BenchShowGroup(int contacts) {
    TempOffice office;
    FillPhonebook(office, contacts);
    ContactList addressContacts;
    qint32 sortBy = 0;
    const bool isInitialising = false;
    NoHost host;
    RecordingDoor door;
    Log log(office.Files, office.Time);
    PhonebookArea area({office.Phonebook(), addressContacts, sortBy, QStringLiteral("IE"), isInitialising,
                        host, door, office.Boxes, office.Pump, log, office.Time, office.Sound,
                        office.AppSettings});
    area.InitAlphaTabs();
    area.InitGroupTabs();
    area.resize(450, 700);
    area.show();
    Paint();

    ConstantModel model(contacts);
    QListView plain;
    plain.setUniformItemSizes(true);
    plain.setModel(&model);
    plain.resize(450, 700);
    plain.show();
    Paint();

    const auto show = [&] {
        return Ratio::Time([&] {
            area.ShowGroup();
            Paint();
        });
    };
    const auto query = [&] {
        return Ratio::Time([&] {
            const auto rows = mdlPhonebook::GetContacts(office.PhonebookValues, QStringLiteral("*"), sortBy);
            for (; !rows->EndOfFile(); rows->MoveNext()) {
            }
            model.Restart();
            Paint();
        });
    };
    const Ratio::Result result = Ratio::Measure(Rounds, show, query);
    if (addressContacts.Count() != contacts) {
        qFatal("%d contacts on show instead of %d", addressContacts.Count(), contacts);
    }
    Ratio::Print("ShowGroup of 30,000 contacts, on screen", result, ShowAim);
}

}  // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    BenchShowGroup(argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 30000);
    return 0;
}
