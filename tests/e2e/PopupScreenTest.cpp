#include "controls/PopupControl.h"
#include "e2e/Desktop.h"

#include <QDialog>
#include <QGuiApplication>
#include <QLineEdit>
#include <QLocalServer>
#include <QMenu>
#include <QScreen>
#include <QTimer>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

/// The running program's popup, with something on it.
class PopupOnTheScreen : public ::testing::Test {
protected:
    RealOffice m_office;
    RealProgram m_program{m_office};
    PopupControl& m_popup = *m_program.Window().findChild<PopupControl*>(Q("pucFeedback"));

    PopupOnTheScreen() {
        m_popup.RemoveAllItems();
        m_popup.AddItem(0, 20, 320, 80, QString(), Mark.rgb());
        m_popup.SetSize(320, 100);
        // The end of its time is no matter here.
        m_popup.SetShowDelay(60000);
    }
    ~PopupOnTheScreen() override { m_popup.Close(); }

    /// Nothing else on the screen has it.
    const QColor Mark{0xF0, 0x10, 0xE0};

    [[nodiscard]] QPoint Middle() const { return m_popup.geometry().center(); }
    /// Whether the popup is what the user sees at its place.
    [[nodiscard]] bool IsSeen() const {
        const QPoint middle = Middle();
        return QGuiApplication::primaryScreen()
                   ->grabWindow(0, middle.x(), middle.y(), 1, 1)
                   .toImage()
                   .pixelColor(0, 0) == Mark;
    }
    void ClickOnIt() const {
        RealInput::Do({Q("mousemove"), QString::number(Middle().x()), QString::number(Middle().y()),
                       Q("sleep"), Q("0.1"), Q("click"), Q("1")});
    }
};

}  // namespace

TEST_F(PopupOnTheScreen, ItStandsAboveAWindowThatComesUpLaterAndLeavesItTheKeyboard) {
    m_popup.Show();
    Driver::WaitFor(Q("the popup"), [this] { return IsSeen(); });
    QLineEdit other;
    other.setWindowFlags(Qt::Window);
    other.setGeometry(QGuiApplication::primaryScreen()->geometry().adjusted(200, 100, 0, 0));
    other.show();
    Driver::WaitFor(Q("the other window"), [&] { return other.isActiveWindow(); });
    for (int turn = 0; turn < 2; ++turn) {
        RealInput::Do({Q("windowraise"), QString::number(other.winId())});
        Driver::WaitFor(Q("the popup above it"), [this] { return IsSeen(); });
    }
    EXPECT_TRUE(other.geometry().contains(Middle())) << "they do not meet";
    RealInput::Do({Q("type"), Q("a")});
    Driver::WaitFor(Q("the letter"), [&] { return other.text() == Q("a"); });
    EXPECT_EQ(RealInput::Output({Q("getactivewindow")}), QString::number(other.winId()));
}

TEST_F(PopupOnTheScreen, AWindowThatIsPutAboveItPastTheWindowManagerStaysThereForAMoment) {
    m_popup.Show();
    Driver::WaitFor(Q("the popup"), [this] { return IsSeen(); });
    QWidget cover(nullptr, Qt::X11BypassWindowManagerHint);
    cover.setGeometry(m_popup.geometry().adjusted(-20, -20, 5, 5));
    cover.show();
    Driver::WaitFor(Q("the popup covered"), [&] {
        cover.raise();
        return !IsSeen();
    });
    Driver::WaitFor(Q("the popup above it"), [this] { return IsSeen(); });
}

TEST_F(PopupOnTheScreen, AMenuThatIsOpenStaysAboveItAndGetsTheClick) {
    m_popup.Show();
    Driver::WaitFor(Q("the popup"), [this] { return IsSeen(); });
    QMenu menu;
    QString chosen;
    for (int entry = 0; entry < 12; ++entry) {
        const QString text = Q("An entry that is wide enough to cover half of the popup, %1").arg(entry);
        menu.addAction(text, &menu, [&chosen, text] { chosen = text; });
    }
    menu.popup(m_popup.pos() - QPoint(20, 100));
    Driver::WaitFor(Q("the menu"), [this] { return !IsSeen(); });
    m_popup.Show();  // as when the next message ends
    QTimer looks;
    int count = 0;
    bool wasSeen = false;
    QObject::connect(&looks, &QTimer::timeout, &looks, [&] {
        wasSeen = wasSeen || IsSeen();
        ++count;
    });
    looks.start(150);
    Driver::WaitFor(Q("the popup raised some times"), [&] { return count >= 8; });
    looks.stop();
    EXPECT_FALSE(wasSeen);
    ClickOnIt();
    Driver::WaitFor(Q("a choice"), [&] { return !chosen.isEmpty(); });
    EXPECT_TRUE(m_popup.isVisible());
    Driver::WaitFor(Q("the popup again"), [this] { return IsSeen(); });
}

TEST_F(PopupOnTheScreen, ItStandsInTheCornerOfTheTrayAndWithoutOneInTheLowerRight) {
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    m_popup.Show();
    EXPECT_GT(m_popup.y(), screen.height() / 2);
    EXPECT_GT(m_popup.x(), screen.width() / 2);
    const EmbeddingTray tray;  // above, to the right
    Driver::WaitFor(Q("the popup in the upper right corner"), [&] {
        m_popup.Show();
        return m_popup.geometry().bottom() < screen.height() / 2 && m_popup.x() > screen.width() / 2;
    });
    EXPECT_TRUE(screen.contains(m_popup.geometry()));
}

TEST_F(PopupOnTheScreen, AClickClosesItAlsoWhileADialogKeepsTheUserFromTheMainWindow) {
    m_popup.Show();
    Driver::WaitFor(Q("the popup"), [this] { return IsSeen(); });
    ClickOnIt();
    Driver::WaitFor(Q("the popup closed"), [this] { return !m_popup.isVisible(); });
    QDialog dialog(&m_program.Window());
    dialog.setModal(true);
    dialog.show();
    Driver::WaitFor(Q("the dialog"), [&] { return dialog.isActiveWindow(); });
    m_popup.Show();
    Driver::WaitFor(Q("the popup"), [this] { return IsSeen(); });
    ClickOnIt();
    Driver::WaitFor(Q("the popup closed"), [this] { return !m_popup.isVisible(); });
    EXPECT_TRUE(dialog.isActiveWindow());
}

TEST(SilentBus, ASessionBusThatTakesTheCallAndNeverAnswersKeepsTheProgramFromNothing) {
    RealOffice office;
    const QString socket = office.Root.filePath(Q("silent"));
    QLocalServer silent;
    ASSERT_TRUE(silent.listen(socket));
    const Started program(office, Q("unix:path=") + socket);
    program.WaitForWindow();
    RealInput::Do({Q("key"), Q("alt+h")});
    Driver::WaitFor(Q("the history"), [] {
        return RealInput::Output({Q("getactivewindow"), Q("getwindowname")}).endsWith(Q("Message History"));
    });
}
