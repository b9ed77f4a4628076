#include "controls/ListView.h"
#include "e2e/RealProgram.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

ListView& List(const char* name) {
    return Driver::Find<ListView>(Q(name));
}

void Press(const QStringList& keys) {
    for (const QString& key : keys) {
        RealInput::Do({Q("key"), key});
    }
}

/// Presses Delete, and `answer` in the question that it brings. The text of the question.
QString DeleteAndAnswer(const char* answer) {
    QString question;
    Driver::WhenDialog(Q("MessageBox"), [&question, answer] {
        question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())->text();
        Press({Q(answer)});
    });
    Press({Q("Delete")});
    Driver::WaitFor(Q("a question, and its end"),
                    [&] { return !question.isEmpty() && QApplication::activeModalWidget() == nullptr; });
    return question;
}

}  // namespace

TEST(EditKeysOnTheScreen, CtrlASelectsAllContactsAndDeleteAsksBeforeItDeletes) {
    RealOffice office;
    RealProgram program(office);
    ListView& contacts = List("lvContacts");
    const int all = contacts.Rows().Count();
    const QString first = contacts.Rows().At(0).Text;
    Press({Q("alt+c"), Q("ctrl+a")});
    Driver::WaitFor(Q("all selected"), [&] { return contacts.SelectedCount() == all; });

    EXPECT_EQ(DeleteAndAnswer("Escape"), Q("DELETE %1 Contacts from the Address Book").arg(all));
    EXPECT_EQ(contacts.Rows().Count(), all);
    EXPECT_EQ(contacts.SelectedCount(), all) << "a No leaves everything as it is";

    Press({Q("Home")});
    EXPECT_EQ(DeleteAndAnswer("alt+y"), Q("DELETE %1 from the Address Book").arg(first));
    Driver::WaitFor(Q("one contact less"), [&] { return contacts.Rows().Count() == all - 1; });
    Driver::WaitFor(Q("the focus back in the list"), [&] { return contacts.hasFocus(); });
}

TEST(EditKeysOnTheScreen, DeleteOnAGroupsTabTakesTheContactOutOfTheGroupAlone) {
    RealOffice office;
    RealProgram program(office);
    const int all = List("lvContacts").Rows().Count();
    const QString group = mdlPhonebook::GetGroups(program.Context)->Value(u"grpName").toString();
    Driver::ClickTab(Q("tabGroup"), group);
    const int members = List("lvContacts").Rows().Count();
    const QString first = List("lvContacts").Rows().At(0).Text;
    Press({Q("alt+c"), Q("Home")});
    EXPECT_EQ(DeleteAndAnswer("alt+y"), Q("REMOVE %1 from the %2 Group").arg(first, group));
    Driver::WaitFor(Q("one member less"), [&] { return List("lvContacts").Rows().Count() == members - 1; });
    Driver::ClickTab(Q("tabGroup"), Q("*"));
    EXPECT_EQ(List("lvContacts").Rows().Count(), all);
}

TEST(EditKeysOnTheScreen, DeleteTakesTheSelectedRecipientsOffTheListAndCtrlASelectsThemAll) {
    RealOffice office;
    RealProgram program(office);
    const QStringList keys = List("lvContacts").Rows().KeyList().mid(0, 4);
    program.Window().AddKeysToRecipients(keys);
    program.Window().UpdateStateDisplay();
    ListView& recipients = List("lvRecipients");
    Press({Q("alt+m")});
    RealInput::Do({Q("type"), Q("Lunch")});
    const auto& send = Driver::Find<QAbstractButton>(Q("cmdSendNow"));
    Driver::WaitFor(Q("the send button"), [&] { return send.isEnabled(); });

    Press({Q("alt+r"), Q("Home"), Q("Down"), Q("shift+Down"), Q("Delete")});
    Driver::WaitFor(Q("two recipients less"), [&] { return recipients.Rows().Count() == 2; });
    EXPECT_EQ(recipients.Rows().KeyList(), (QStringList{keys[0], keys[3]}));
    EXPECT_TRUE(send.isEnabled());

    Press({Q("ctrl+a"), Q("Delete")});
    Driver::WaitFor(Q("no recipients"), [&] { return recipients.Rows().Count() == 0; });
    EXPECT_FALSE(send.isEnabled());
    EXPECT_FALSE(Driver::Find<QAbstractButton>(Q("cmdSendLater")).isEnabled());
    EXPECT_EQ(program.Context.RecipientContacts.Count(), 4) << "who was deleted comes back with a refresh";
}
