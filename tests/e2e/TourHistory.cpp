#include "e2e/Tour.h"

#include "app/AppContext.h"
#include "controls/ReportControl.h"
#include "e2e/RealInput.h"
#include "shell/Look.h"
#include "shell/frmMain.h"
#include "store/Outbox.h"

#include <QApplication>
#include <QDateTimeEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include <cstdio>

namespace {

/// The office's password for the public history while it lives; then the one from before, as a run of the
/// tour that stops halfway must not lock people out of theirs.
class PublicPassword {
public:
    /// Throws DriverError if the phonebook cannot be read or written.
    PublicPassword(AppContext& context, const QString& password)
        : m_phonebook(context.Database), m_before(Read(context)) {
        Write(password);
    }
    ~PublicPassword() {
        try {
            Write(m_before);
        } catch (const DriverError& failure) {
            std::fprintf(stderr, "%s\n", failure.what());
        }
    }
    PublicPassword(const PublicPassword&) = delete;
    PublicPassword& operator=(const PublicPassword&) = delete;

private:
    QString Read(const AppContext& context) {
        m_phonebook.Filename = context.PhonebookDB->Filename;
        const auto rows =
            m_phonebook.OpenDatabase(engine::Mode::ReadWriteShared)
                ? m_phonebook.OpenDynaset(QStringLiteral("SELECT * FROM Config"),
                                          engine::CursorType::ForwardOnly, engine::LockType::ReadOnly)
                : nullptr;
        if (rows == nullptr || rows->EndOfFile()) {
            throw DriverError(QStringLiteral("the password could not be read"));
        }
        return rows->Value(QStringLiteral("cfgPublicHistoryPassword")).toString();
    }
    void Write(const QString& password) {
        if (!m_phonebook.Execute(QStringLiteral("UPDATE Config SET cfgPublicHistoryPassword='%1'")
                                     .arg(mdlOutbox::QuoteSQL(password)))) {
            throw DriverError(QStringLiteral("the password could not be set"));
        }
    }

    DB m_phonebook;
    QString m_before;
};

}  // namespace

/// A message for tomorrow is taken back before the gateway gets it.
void Tour::CancelOne() {
    Driver::ClickTab(QStringLiteral("tabGroup"), QStringLiteral("*"));
    Driver::DoubleClickRow(QStringLiteral("lvContacts"), NamesWithConfirmation(false, 5)[4]);
    Driver::Type(QStringLiteral("txtMessage"), QStringLiteral("Your appointment is tomorrow at ten."));
    Driver::WhenDialog(QStringLiteral("frmGetTime"), [] {
        auto& date = Driver::Find<QDateTimeEdit>(QStringLiteral("dtDate"));
        date.setDate(date.date().addDays(1));
        Driver::Click(QStringLiteral("cmdOK"));
    });
    Driver::Click(QStringLiteral("cmdSendLater"));
    Driver::WaitFor(QStringLiteral("an empty composition"), [] { return Recipients() == 0; });
    Driver::WhenDialog(QStringLiteral("frmHistory"), [this] { WorkInHistory(); });
    Driver::Click(QStringLiteral("cmdHistory"));
    if (m_newest.Items.value(0).Value != QVariant(2)) {
        throw DriverError(QStringLiteral("the message for tomorrow was not canceled"));
    }
    std::printf("    a message for tomorrow was canceled before it was sent\n");
}

void Tour::WorkInHistory() {
    auto& grid = Driver::Find<ReportControl>(QStringLiteral("rptHistory"));
    m_hand.Picture(QStringLiteral("11-history"));
    Driver::WhenMenu([this](QMenu& menu) {
        m_hand.Picture(QStringLiteral("12-history-menu"));
        menu.close();
    });
    QTest::mouseClick(grid.viewport(), Qt::RightButton, {},
                      grid.visualRect(grid.model()->index(0, 2)).center());
    Driver::WhenDialog(QStringLiteral("MessageBox"), [this] {
        m_hand.Picture(QStringLiteral("13-cancel"));
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        box->button(QMessageBox::Yes)->click();
    });
    Driver::Click(QStringLiteral("cmdCancel"));
    m_hand.Picture(QStringLiteral("14-canceled"));
    m_newest = *grid.RowRecord(0);
    Look::Apply(QStringLiteral("dark"));
    m_hand.Picture(QStringLiteral("15-history-dark"));
    Look::Apply(QStringLiteral("light"));
    Driver::Click(QStringLiteral("cmdClose"));
}

void Tour::SeePublicHistory() {
    const QString password = QStringLiteral("harbour");
    const PublicPassword here(m_context, password);
    Driver::WhenDialog(QStringLiteral("frmPassword"), [this, password] {
        RealInput::Do({QStringLiteral("keyup"), QStringLiteral("ctrl")});
        Driver::Type(QStringLiteral("txtPassword"), password);
        m_hand.Picture(QStringLiteral("16-password"));
        Driver::WhenDialog(QStringLiteral("frmHistory"), [this] {
            m_hand.Picture(QStringLiteral("17-public-history"));
            if (IsShown(QStringLiteral("cmdCancel")) ||
                Driver::Find<ReportControl>(QStringLiteral("rptHistory")).RecordCount() < m_expected) {
                throw DriverError(QStringLiteral("this is not the history of all workstations"));
            }
            Driver::Click(QStringLiteral("cmdClose"));
        });
        Driver::Press(QStringLiteral("txtPassword"), Qt::Key_Return);
    });
    RealInput::Do({QStringLiteral("keydown"), QStringLiteral("ctrl")});
    Driver::Click(QStringLiteral("cmdHistory"));
    std::printf("    the public history opened with Ctrl and its password\n");
}
