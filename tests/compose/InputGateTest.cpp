#include "compose/InputGate.h"

#include "compose/SendButton.h"
#include "support/FakeMachine.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QDialog>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QSpinBox>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <optional>

namespace {

class InputGateTest : public ::testing::Test {
protected:
    void SetUp() override {
        auto* column = new QVBoxLayout(&Window);
        for (QWidget* widget : {static_cast<QWidget*>(Button), static_cast<QWidget*>(Line),
                                static_cast<QWidget*>(Text), static_cast<QWidget*>(Number)}) {
            column->addWidget(widget);
        }
        QObject::connect(Button, &QPushButton::clicked, &Window, [this] { ++Clicks; });
        auto* shortcut = new QShortcut(QKeySequence(Qt::ALT | Qt::Key_K), &Window);
        QObject::connect(shortcut, &QShortcut::activated, &Window, [this] { ++Shortcuts; });
        Pump.OnProcess = [this](int passes) { Real.Process(passes); };
        Window.show();
        Window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&Window));
    }
    void TryEverything() {
        QTest::mouseClick(Button, Qt::LeftButton);
        QTest::mouseDClick(Button, Qt::LeftButton);
        QTest::keyClick(Button, Qt::Key_Space);
        QTest::keyClick(Button, Qt::Key_Return);
        QTest::keyClick(&Window, Qt::Key_K, Qt::AltModifier);
        QTest::keyClick(Window.windowHandle(), Qt::Key_K, Qt::AltModifier);
        QTest::keyClicks(Line, QStringLiteral("abc"));
        QTest::keyClick(Text, Qt::Key_X);
        QWheelEvent wheel(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(0, 120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(Number, &wheel);
        QInputMethodEvent typed;
        typed.setCommitString(QStringLiteral("ime"));
        QApplication::sendEvent(Line, &typed);
        QMimeData data;
        data.setText(QStringLiteral("dropped"));
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(Text->viewport(), &drop);
        Window.close();
    }
    void ExpectUntouched() {
        EXPECT_EQ(Clicks, 0);
        EXPECT_EQ(Shortcuts, 0);
        EXPECT_EQ(Line->text(), QString());
        EXPECT_EQ(Text->toPlainText(), QString());
        EXPECT_EQ(Number->value(), 50);
        EXPECT_TRUE(Window.isVisible());
    }

    FakePump Pump;
    ApplicationEventPump Real;
    QWidget Window;
    QPushButton* Button = new QPushButton(QStringLiteral("Press"), &Window);
    QLineEdit* Line = new QLineEdit(&Window);
    QPlainTextEdit* Text = new QPlainTextEdit(&Window);
    QSpinBox* Number = [this] {
        auto* number = new QSpinBox(&Window);
        number->setValue(50);
        return number;
    }();
    int Clicks = 0;
    int Shortcuts = 0;
};

TEST_F(InputGateTest, TheSameInputDoesSomethingWithoutAGate) {
    QTest::mouseClick(Button, Qt::LeftButton);
    QTest::keyClick(&Window, Qt::Key_K, Qt::AltModifier);
    QTest::keyClicks(Line, QStringLiteral("abc"));
    QWheelEvent wheel(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(Number, &wheel);
    EXPECT_EQ(Clicks, 1);
    EXPECT_EQ(Shortcuts, 1);
    EXPECT_EQ(Line->text(), QStringLiteral("abc"));
    EXPECT_EQ(Number->value(), 51);
    Window.close();
    EXPECT_FALSE(Window.isVisible());
}

TEST_F(InputGateTest, NoInputReachesTheWindowWhileItIsShut) {
    const InputGate gate(Window, Pump);
    TryEverything();
    ExpectUntouched();
}

TEST_F(InputGateTest, WhatQueuedUpIsDroppedAtTheEnd) {
    {
        const InputGate gate(Window, Pump);
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QCoreApplication::postEvent(
                Button, new QMouseEvent(type, QPointF(5, 5), Button->mapToGlobal(QPointF(5, 5)),
                                        Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
        }
        QMetaObject::invokeMethod(
            Button, [this] { TryEverything(); }, Qt::QueuedConnection);
    }
    EXPECT_EQ(Pump.Calls.size(), 1);
    ExpectUntouched();
    Real.Process(2);
    ExpectUntouched();
}

TEST_F(InputGateTest, AfterItsEndTheWindowWorksAgain) {
    { const InputGate gate(Window, Pump); }
    QTest::mouseClick(Button, Qt::LeftButton);
    QTest::keyClicks(Line, QStringLiteral("abc"));
    EXPECT_EQ(Clicks, 1);
    EXPECT_EQ(Line->text(), QStringLiteral("abc"));
}

TEST_F(InputGateTest, OtherWindowsStayUsable) {
    const InputGate gate(Window, Pump);
    QDialog dialog(&Window);
    auto* line = new QLineEdit(&dialog);
    dialog.show();
    QTest::keyClicks(line, QStringLiteral("abc"));
    EXPECT_EQ(line->text(), QStringLiteral("abc"));
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(InputGateTest, GatesMayBeNested) {
    std::optional<InputGate> outer;
    outer.emplace(Window, Pump);
    { const InputGate inner(Window, Pump); }
    QTest::mouseClick(Button, Qt::LeftButton);
    EXPECT_EQ(Clicks, 0);
    outer.reset();
    QTest::mouseClick(Button, Qt::LeftButton);
    EXPECT_EQ(Clicks, 1);
}

TEST_F(InputGateTest, AButtonHeldDownBeforeDoesNotClickWhenItIsReleased) {
    QTest::mousePress(Button, Qt::LeftButton);
    EXPECT_TRUE(Button->isDown());
    {
        const InputGate gate(Window, Pump);
        QTest::mouseRelease(Button, Qt::LeftButton);
        EXPECT_FALSE(Button->isDown());
    }
    QTest::mouseRelease(Button, Qt::LeftButton);
    EXPECT_EQ(Clicks, 0);
}

TEST_F(InputGateTest, APumpThatFailsOpensTheGateAllTheSame) {
    Pump.OnProcess = [](int) { throw std::runtime_error("pump"); };
    { const InputGate gate(Window, Pump); }
    QTest::mouseClick(Button, Qt::LeftButton);
    EXPECT_EQ(Clicks, 1);
}

TEST_F(InputGateTest, ABusyPointerShowsWhileItIsShutEachTime) {
    for (int send = 0; send < 2; ++send) {
        {
            const InputGate gate(Window, Pump);
            EXPECT_EQ(Window.cursor().shape(), Qt::BusyCursor);
        }
        EXPECT_EQ(Window.cursor().shape(), Qt::ArrowCursor);
    }
}

class SendButtonTest : public ::testing::Test {
protected:
    void SetUp() override {
        QObject::connect(&Button, &QPushButton::clicked, &Button, [this] { ++Clicks; });
        Button.show();
    }
    void Key(QEvent::Type type, Qt::Key key, bool isRepeat) {
        QKeyEvent event(type, key, Qt::NoModifier, QString(), isRepeat);
        QApplication::sendEvent(&Button, &event);
    }
    /// A press and a release as the window system sends them, at `time` in ms.
    void ClickAt(quint64 time) {
        const QPointF place = Button.rect().center();
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            const Qt::MouseButtons held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
            QMouseEvent event(type, place, Button.mapToGlobal(place), Qt::LeftButton, held, Qt::NoModifier);
            event.setTimestamp(time);
            QApplication::sendEvent(&Button, &event);
        }
    }

    SendButton Button{QStringLiteral("Send")};
    int Clicks = 0;
};

TEST_F(SendButtonTest, AClickIsOnePress) {
    QTest::mouseClick(&Button, Qt::LeftButton);
    EXPECT_EQ(Clicks, 1);
}

TEST_F(SendButtonTest, ADoubleClickIsOnePress) {
    const QPoint place = Button.rect().center();
    QTest::mousePress(&Button, Qt::LeftButton, {}, place);
    QTest::mouseRelease(&Button, Qt::LeftButton, {}, place);
    QMouseEvent second(QEvent::MouseButtonDblClick, place, Button.mapToGlobal(place), Qt::LeftButton,
                       Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&Button, &second);
    QMouseEvent release(QEvent::MouseButtonRelease, place, Button.mapToGlobal(place), Qt::LeftButton,
                        Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&Button, &release);
    EXPECT_EQ(Clicks, 1);
    EXPECT_FALSE(Button.isDown());
}

TEST_F(SendButtonTest, ClicksAsQuickAsThoseOfADoubleClickAreOnePress) {
    ClickAt(10000);
    ClickAt(10060);
    ClickAt(10120);
    EXPECT_EQ(Clicks, 1);
    EXPECT_FALSE(Button.isDown());
    ClickAt(10120 + static_cast<quint64>(QApplication::doubleClickInterval()));
    EXPECT_EQ(Clicks, 2) << "a press after a pause is meant";
}

TEST_F(SendButtonTest, AHeldKeyPressesOnce) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        Clicks = 0;
        Key(QEvent::KeyPress, key, false);
        for (int repeat = 0; repeat < 30; ++repeat) {
            Key(QEvent::KeyRelease, key, true);
            Key(QEvent::KeyPress, key, true);
        }
        Key(QEvent::KeyRelease, key, false);
        EXPECT_EQ(Clicks, 1) << key;
    }
}

TEST_F(SendButtonTest, TheDefaultOneIsDrawnInTheColourOfTheHighlight) {
    Button.setDefault(true);
    QPalette palette = Button.palette();
    palette.setColor(QPalette::Highlight, QColor(10, 120, 200));
    Button.setPalette(palette);
    const auto isBluish = [this] {
        const QColor colour = Button.grab().toImage().pixelColor(6, Button.height() / 2);
        return colour.blue() > colour.red() + 80;
    };
    EXPECT_TRUE(isBluish());
    Button.setEnabled(false);
    EXPECT_FALSE(isBluish());
}

}  // namespace
