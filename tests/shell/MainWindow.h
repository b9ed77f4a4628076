#pragma once

#include "app/AppContext.h"
#include "app/CommandLine.h"
#include "app/TestMachine.h"
#include "shell/Look.h"
#include "shell/frmMain.h"

#include <QAbstractButton>
#include <QTest>

#include <memory>

/// Gives an office forty contacts and seven groups.
inline void FullOffice(TestMachine& machine) {
    for (int i = 0; i < 40; ++i) {
        machine.Office.AddContact(QStringLiteral("Surname %1").arg(i), QStringLiteral("First"),
                                  QStringLiteral("+35386555%1").arg(1000 + i));
    }
    for (const char* name :
         {"Drivers", "Finance", "Management", "On call", "Reception", "Sales", "Support"}) {
        machine.Office.AddGroup(QString::fromLatin1(name));
    }
}

/// The main window, loaded on an office of its own and shown on the offscreen screen.
class MainWindow {
public:
    TestMachine Machine;
    CommandLine Arguments{QStringList()};
    ::Machine Seams{Machine.Seams()};
    AppContext Context{Seams};
    std::unique_ptr<frmMain> Form;

    /// `prepare` fills the office before the window loads.
    explicit MainWindow(const std::function<void(TestMachine&)>& prepare = {}) {
        Look::Apply(QStringLiteral("light"));
        Machine.StoreOffice();
        if (prepare) {
            prepare(Machine);
        }
        Machine.KeepLog();
        Machine.Office.Pump.OnProcess = [](int) { QCoreApplication::sendPostedEvents(); };
        Context.ReadLocaleCountry();
        Context.AppSettings.SetApplication(QStringLiteral("Larkspan Messenger"));
        Context.LoadSortBy();
        mdlOutbox::OpenOutbox(Context.Outbox);
        mdlPhonebook::OpenPhonebook(Context.Phonebook);
        Form = std::make_unique<frmMain>(Context, Seams, Arguments);
    }

    /// Loads and shows; what the entry routine does.
    void Open() {
        Form->Load();
        Form->show();
        Form->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(Form.get()));
        Form->ContactListFocus(true);
    }
    /// The control of this name; a missing one fails the test and names those that are there.
    template <typename Control = QWidget>
    Control* Find(const char* name) {
        auto* control = Form->findChild<Control*>(QString::fromLatin1(name));
        if (control == nullptr) {
            QStringList names;
            const auto all = Form->findChildren<QWidget*>();
            for (const QWidget* widget : all) {
                if (!widget->objectName().isEmpty()) {
                    names.append(widget->objectName());
                }
            }
            ADD_FAILURE() << "no control " << name << " among: " << names.join(u' ').toStdString();
        }
        return control;
    }
    void AltKey(Qt::Key key, Qt::KeyboardModifiers more = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget() != nullptr ? QApplication::focusWidget() : Form.get(),
                        key, Qt::AltModifier | more);
    }
};
