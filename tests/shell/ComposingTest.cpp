#include "shell/MainWindow.h"

#include "compose/MessageEdit.h"
#include "controls/ListView.h"
#include "support/FolderWatch.h"

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

/// Notes the messages that have reached a final status and clears them.
class NotingSink final : public DeliverySink {
public:
    QMap<qint32, qint32> Final;  // number of the message: status

    qint16 PopupNotify(MessageTracker& tracker) override {
        for (int slot = 0; slot < MessageTracker::SlotCount; ++slot) {
            const MessageTracker::Slot entry = tracker.SlotAt(slot);
            if (entry.msgID != 0 && mdlOutbox::IsMessageFinal(entry.status)) {
                Final.insert(entry.msgID, entry.status);
                tracker.ClearSlot(slot);
            }
        }
        return 0;
    }
};

/// The main window on an office of `people` contacts whose messages may have `size` characters.
std::unique_ptr<MainWindow> NewWindow(int people, int size) {
    auto window = std::make_unique<MainWindow>([people, size](TestMachine& machine) {
        machine.Office.ExecuteOnPhonebook(
            Q("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "
              "INSERT INTO Contact (cntSurname, cntPhone) SELECT 'S' || i, '+35386' || i FROM n")
                .arg(people));
        machine.Office.ExecuteOnOutbox(Q("UPDATE System SET sysSMSMaxMessageSize = %1").arg(size));
    });
    window->Open();
    return window;
}

void AddRecipient(MainWindow& window, int row) {
    window.Form->AddKeysToRecipients({window.Find<ListView>("lvContacts")->Rows().At(row).Key});
    window.Form->UpdateStateDisplay();
}

class TypingInTheMainWindow : public ::testing::TestWithParam<int> {};

}  // namespace

TEST_P(TypingInTheMainWindow, OpensReadsAndWritesNoFile) {
    const auto window = NewWindow(500, GetParam() + 20);
    auto* message = window->Find<MessageEdit>("txtMessage");
    auto* used = window->Find<QLabel>("lblUsed");
    window->Form->AddKeysToRecipients(window->Find<ListView>("lvContacts")->Rows().KeyList());
    ASSERT_EQ(window->Find<ListView>("lvRecipients")->Rows().Count(), 500);
    message->SetText(QString(GetParam(), u'x'));
    message->setFocus();
    QApplication::processEvents();

    TempOffice& office = window->Machine.Office;
    FolderWatch watch({office.DataFolder.path(), office.Folders.ApplicationFolder()});
    const int looks = office.Files.Looks;
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_Space, Qt::Key_BracketLeft, Qt::Key_Backspace, Qt::Key_Home,
                              Qt::Key_Delete, Qt::Key_Return, Qt::Key_B}) {
        QTest::keyClick(message, key);
        QApplication::processEvents();
    }
    EXPECT_EQ(used->text(), QString::number(GetParam() + 2));
    EXPECT_EQ(watch.Events(), QStringList());
    EXPECT_EQ(office.Files.Looks, looks);

    EXPECT_TRUE(office.Files.Read(office.PhonebookPath()).has_value());
    EXPECT_TRUE(watch.Events().contains(Q("read smscontacts.mdb"))) << "such an access would have been seen";
}

INSTANTIATE_TEST_SUITE_P(OnTextsOf, TypingInTheMainWindow, ::testing::Values(160, 1600),
                         [](const auto& text) { return std::to_string(text.param) + "Characters"; });

TEST(Polling, StartsWithTheFirstImmediateSendForTheScheduledMessagesToo) {
    const auto window = NewWindow(2, 160);
    auto* timer = window->Find<QTimer>("tmrCheckMsgStatus");
    MessageTracker& tracker = window->Context.MessageTracker;
    NotingSink sink;
    tracker.SetSink(&sink);
    timer->setInterval(1);
    TempOffice& office = window->Machine.Office;

    AddRecipient(*window, 0);
    window->Find<MessageEdit>("txtMessage")->SetText(Q("later"));
    window->Machine.Door.ExpectDialog([](QDialog& dialog) {
        QTest::mouseClick(dialog.findChild<QPushButton*>(Q("cmdOK")), Qt::LeftButton);
    });
    QTest::mouseClick(window->Find<QPushButton>("cmdSendLater"), Qt::LeftButton);
    EXPECT_EQ(tracker.SlotAt(0).msgID, 1);
    office.ExecuteOnOutbox(Q("UPDATE Message SET msgStatus = 5"));
    EXPECT_FALSE(timer->isActive());
    QTimer witness;
    int ticks = 0;
    QObject::connect(&witness, &QTimer::timeout, &witness, [&ticks] { ++ticks; });
    witness.start(timer->interval());
    ASSERT_TRUE(
        QTest::qWaitFor([&ticks] { return ticks >= 20; }, 60000));  // as many as the other would have had
    EXPECT_TRUE(sink.Final.isEmpty()) << "nobody asks yet";
    EXPECT_FALSE(tracker.NextCheck().isValid());

    AddRecipient(*window, 1);
    window->Find<MessageEdit>("txtMessage")->SetText(Q("now"));
    QTest::mouseClick(window->Find<QPushButton>("cmdSendNow"), Qt::LeftButton);
    EXPECT_TRUE(timer->isActive());
    ASSERT_TRUE(QTest::qWaitFor([&] { return sink.Final.size() == 1; }, 60000));
    EXPECT_EQ(sink.Final.value(1), 5) << "the scheduled one";

    office.ExecuteOnOutbox(Q("UPDATE Message SET msgStatus = 6 WHERE msgID = 2"));
    office.Time.Time = office.Time.Time.addSecs(tracker.RefreshInterval);
    ASSERT_TRUE(QTest::qWaitFor([&] { return sink.Final.size() == 2; }, 60000));
    EXPECT_EQ(sink.Final.value(2), 6);
    EXPECT_EQ(tracker.SlotAt(0).msgID + tracker.SlotAt(1).msgID, 0);
    tracker.SetSink(nullptr);
}
