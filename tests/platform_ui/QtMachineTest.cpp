#include "controls/Icons.h"
#include "core/Log.h"
#include "platform/Clock.h"
#include "platform/LocalFiles.h"
#include "platform_ui/DBusNotices.h"
#include "platform_ui/QtKeyState.h"
#include "platform_ui/QtMessageBoxes.h"
#include "platform_ui/QtSound.h"
#include "platform_ui/Windows.h"

#include "controls/ModalDoor.h"
#include "core/Log.h"
#include "platform/LocalFiles.h"
#include "support/FakeMachine.h"

#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>

namespace {

/// Looks at the box that would be shown, and answers it.
class AnsweringDoor final : public ModalDoor {
public:
    std::function<void(QMessageBox&)> OnBox;
    void ShowModal(QDialog& dialog, QWidget*) override {
        dialog.show();
        OnBox(dynamic_cast<QMessageBox&>(dialog));
        dialog.hide();
    }
    QAction* ShowMenu(QMenu&, const QPoint&) override { return nullptr; }
};

BoxRequest Question() {
    return {QStringLiteral("Larkspan Messenger"), QStringLiteral("DELETE the Drivers Group?"),
            BoxIcon::Question, BoxButtons::YesNo};
}

}  // namespace

TEST(QtMessageBoxes, ShowTitleAndTextAsGiven) {
    AnsweringDoor door;
    QtMessageBoxes boxes(door);
    door.OnBox = [](QMessageBox& box) {
        EXPECT_EQ(box.windowTitle(), QStringLiteral("Larkspan Messenger"));
        EXPECT_EQ(box.text(), QStringLiteral("first\nsecond <b>line</b>"));
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
    };
    const BoxRequest request{QStringLiteral("Larkspan Messenger"),
                             QStringLiteral("first\r\nsecond <b>line</b>"), BoxIcon::Critical,
                             BoxButtons::Ok};
    EXPECT_EQ(boxes.Show(request), BoxAnswer::Ok);
}

TEST(QtMessageBoxes, ShowTheProgramsOwnPictureSharpOnTheirScreen) {
    AnsweringDoor door;
    QtMessageBoxes boxes(door);
    const std::pair<BoxIcon, const char*> pictures[] = {{BoxIcon::Information, "info"},
                                                        {BoxIcon::Question, "question"},
                                                        {BoxIcon::Critical, "critical"},
                                                        {BoxIcon::None, "none"}};
    QList<QImage> shapes;
    for (const auto& [icon, name] : pictures) {
        door.OnBox = [&shapes, drawing = Icons::Get(QString::fromLatin1(name))](QMessageBox& box) {
            const QPixmap shown = box.iconPixmap();
            const QSize side = shown.size() / box.devicePixelRatioF();
            EXPECT_EQ(shown.toImage(), drawing.pixmap(side, box.devicePixelRatioF()).toImage());
            EXPECT_EQ(shown.isNull(), drawing.isNull());
            const QImage shape = shown.toImage().convertToFormat(QImage::Format_Alpha8);
            EXPECT_FALSE(shapes.contains(shape)) << "told apart without colour";
            shapes.append(shape);
        };
        BoxRequest request = Question();
        request.Icon = icon;
        boxes.Show(request);
    }
}

TEST(QtMessageBoxes, AQuestionsDefaultIsNoAndYesHasToBeChosen) {
    AnsweringDoor door;
    QtMessageBoxes boxes(door);
    door.OnBox = [](QMessageBox& box) {
        EXPECT_EQ(box.standardButton(box.defaultButton()), QMessageBox::No);
        QTest::keyClick(&box, Qt::Key_Return);
    };
    EXPECT_EQ(boxes.Show(Question()), BoxAnswer::No);
    door.OnBox = [](QMessageBox& box) { QTest::mouseClick(box.button(QMessageBox::Yes), Qt::LeftButton); };
    EXPECT_EQ(boxes.Show(Question()), BoxAnswer::Yes);
    door.OnBox = [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); };
    EXPECT_EQ(boxes.Show(Question()), BoxAnswer::No);
    door.OnBox = [](QMessageBox&) {};
    EXPECT_EQ(boxes.Show(Question()), BoxAnswer::No) << "closed without a choice";
}

TEST(QtMessageBoxes, ABoxThatGoesWithItsOwnerCountsAsRefused) {
    ScreenModalDoor door;
    QtMessageBoxes boxes(door);
    auto owner = std::make_unique<QWidget>();
    owner->show();
    owner->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(owner.get()));
    QTimer::singleShot(0, owner.get(), [&owner] { owner = nullptr; });
    EXPECT_EQ(boxes.Show(Question()), BoxAnswer::No);
    EXPECT_EQ(owner, nullptr);
}

TEST(QtMachine, NoKeyIsDownWhenNobodyPressesOne) {
    const QtKeyState keys;
    EXPECT_FALSE(keys.IsKeyDown(KeyState::Key::Control));
    EXPECT_FALSE(keys.IsKeyDown(KeyState::Key::Shift));
    EXPECT_FALSE(keys.IsKeyDown(KeyState::Key::Alt));
}

/// A log in a file of its own.
class KeptLog {
public:
    KeptLog() { Kept.LogToFile(m_folder.filePath(QStringLiteral("log"))); }
    [[nodiscard]] qsizetype Lines() const {
        QFile file(m_folder.filePath(QStringLiteral("log")));
        return file.open(QIODevice::ReadOnly) ? file.readAll().count('\n') : 0;
    }

private:
    QTemporaryDir m_folder;
    DiskFiles m_files;
    SystemClock m_clock;

public:
    Log Kept{m_files, m_clock};
};

TEST(QtMachine, ABeepIsHarmlessWithoutASpeaker) {
    KeptLog log;
    QtSound(log.Kept).Beep();
    EXPECT_EQ(log.Lines(), 0);
}

TEST(QtMachine, ASoundThatCannotBePlayedIsOneLineInTheLogAndNoMore) {
    KeptLog log;
    QtSound sound(log.Kept);
    sound.Play(QString());
    EXPECT_EQ(log.Lines(), 0) << "a file that is not there plays nothing";
    // Without a sound card it is the machine that cannot, with one it is the file.
    const QString noSound = QStringLiteral("/nonexistent/any.wav");
    sound.Play(noSound);
    EXPECT_TRUE(QTest::qWaitFor([&] { return log.Lines() == 1; }));
    sound.Play(noSound);
    QCoreApplication::processEvents();
    EXPECT_EQ(log.Lines(), 1);
}

TEST(QtMachine, NoticesWithoutASessionBusAreOneLineInTheLogAndNoMore) {
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    KeptLog log;
    DBusNotices notices(log.Kept);
    notices.Show(QStringLiteral("Title"), QStringLiteral("Text"), BalloonIcon::Information);
    notices.Show(QStringLiteral("Title"), QStringLiteral("Text"), BalloonIcon::Error);
    EXPECT_EQ(log.Lines(), 1);
}

TEST(Windows, WithoutAnXServerThereAreNoWindowsToReach) {
    const auto windows = MakeWindows();
    EXPECT_FALSE(windows->IsReachable());
    EXPECT_TRUE(windows->EnumWindows().isEmpty());
    EXPECT_FALSE(windows->SendShowRequest(12));
    EXPECT_FALSE(windows->ForceForeground(12));
}
