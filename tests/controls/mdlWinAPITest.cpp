#include "controls/mdlWinAPI.h"

#include "support/FakeMachine.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace {

class FlushMouse : public ::testing::Test {
protected:
    FlushMouse() {
        Pump.OnProcess = [this](int passes) { Real.Process(passes); };
        auto* column = new QVBoxLayout(&Window);
        for (QWidget* widget :
             {static_cast<QWidget*>(Button), static_cast<QWidget*>(Line), static_cast<QWidget*>(Number)}) {
            column->addWidget(widget);
        }
        for (const QPushButton* button : {Button, &Other}) {
            QObject::connect(button, &QPushButton::clicked, &Window, [this] { ++Clicks; });
        }
        Window.show();
        Other.show();
    }
    /// A click that has happened and was not looked at yet.
    static void PostClick(QWidget& target, Qt::MouseButton button = Qt::LeftButton) {
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QCoreApplication::postEvent(
                &target,
                new QMouseEvent(type, QPointF(5, 5), target.mapToGlobal(QPointF(5, 5)), button,
                                type == QEvent::MouseButtonPress ? button : Qt::NoButton, Qt::NoModifier));
        }
    }

    FakePump Pump;
    ApplicationEventPump Real;
    QWidget Window;
    QPushButton Other;
    QPushButton* Button = new QPushButton(QStringLiteral("Press"), &Window);
    QLineEdit* Line = new QLineEdit(&Window);
    QSpinBox* Number = new QSpinBox(&Window);
    int Clicks = 0;
};

TEST_F(FlushMouse, PendingClicksOnAControlAreGone) {
    PostClick(*Button);
    mdlWinAPI::FlushMouseMessages(*Button, Pump);
    Real.Process(2);
    EXPECT_EQ(Clicks, 0);
    EXPECT_FALSE(Button->isDown());
}

TEST_F(FlushMouse, AWindowStandsForAllThatLiesInIt) {
    PostClick(*Button);
    mdlWinAPI::FlushMouseMessages(Window, Pump);
    Real.Process(2);
    EXPECT_EQ(Clicks, 0);
}

TEST_F(FlushMouse, ClicksThatReachTheNativeWindowAreGoneToo) {
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&Window));
    Pump.OnProcess = [this](int) {
        QTest::mouseClick(Window.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          Button->mapTo(&Window, QPoint(5, 5)));
    };
    mdlWinAPI::FlushMouseMessages(Window, Pump);
    EXPECT_EQ(Clicks, 0);
    Pump.OnProcess(1);
    EXPECT_EQ(Clicks, 1) << "the same click afterwards";
}

TEST_F(FlushMouse, MovesAndDoubleClicksOfEveryButtonAreGone) {
    QList<QEvent::Type> seen;
    struct Watch final : QWidget {
        explicit Watch(QList<QEvent::Type>& events) : Events(events) { setMouseTracking(true); }
        bool event(QEvent* event) override {
            if (event->type() >= QEvent::MouseButtonPress && event->type() <= QEvent::MouseMove) {
                Events.append(event->type());
            }
            return QWidget::event(event);
        }
        QList<QEvent::Type>& Events;
    } watch(seen);
    watch.show();
    Real.Process(2);
    seen.clear();
    const auto post = [&] {
        for (const auto type : {QEvent::MouseMove, QEvent::MouseButtonDblClick}) {
            QCoreApplication::postEvent(
                &watch, new QMouseEvent(type, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton, Qt::NoButton,
                                        Qt::NoModifier));
        }
        PostClick(watch, Qt::RightButton);
        PostClick(watch, Qt::MiddleButton);
    };
    post();
    mdlWinAPI::FlushMouseMessages(watch, Pump);
    EXPECT_TRUE(seen.isEmpty());
    post();
    Real.Process(2);
    EXPECT_EQ(seen.size(), 6) << "the same events without it";
}

TEST_F(FlushMouse, AClickOnAnotherWindowStays) {
    PostClick(Other);
    mdlWinAPI::FlushMouseMessages(Window, Pump);
    EXPECT_EQ(Clicks, 1);
}

TEST_F(FlushMouse, AClickBesideTheControlStays) {
    PostClick(*Button);
    mdlWinAPI::FlushMouseMessages(*Line, Pump);
    EXPECT_EQ(Clicks, 1);
}

TEST_F(FlushMouse, KeysAndTheWheelStay) {
    QCoreApplication::postEvent(
        Line, new QKeyEvent(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a")));
    QCoreApplication::postEvent(
        Number, new QWheelEvent(QPointF(5, 5), Number->mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, 120),
                                Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false));
    mdlWinAPI::FlushMouseMessages(Window, Pump);
    EXPECT_EQ(Line->text(), QStringLiteral("a"));
    EXPECT_EQ(Number->value(), 1);
}

TEST_F(FlushMouse, WhatIsClickedAfterwardsWorks) {
    mdlWinAPI::FlushMouseMessages(Window, Pump);
    QTest::mouseClick(Button, Qt::LeftButton);
    EXPECT_EQ(Clicks, 1);
}

TEST_F(FlushMouse, APumpThatFailsIsPassedOver) {
    Pump.OnProcess = [](int) { throw std::runtime_error("pump"); };
    mdlWinAPI::FlushMouseMessages(Window, Pump);
    QTest::mouseClick(Button, Qt::LeftButton);
    EXPECT_EQ(Clicks, 1);
}

TEST_F(FlushMouse, AWindowThatGoesMeanwhileIsNoMatter) {
    auto* window = new QWidget;
    Pump.OnProcess = [&](int) {
        delete window;
        window = nullptr;
        QTest::mouseClick(Button, Qt::LeftButton);
    };
    mdlWinAPI::FlushMouseMessages(*window, Pump);
    EXPECT_EQ(Clicks, 1);
}

}  // namespace
