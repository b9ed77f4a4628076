#include "support/LockedFile.h"
#include "tracking/HistoryBench.h"

#include <QCloseEvent>

#include <functional>
#include <utility>

namespace {

/// What is done to the window while it waits for an outbox that the gateway sits on.
using HistoryWaiting = HistoryBench;

TEST_F(HistoryWaiting, AnImpatientSecondPressWhileTheOutboxIsLockedAsksNothingAndTellsNothingWrong) {
    const qint32 id = AddOwn(0);
    Open();
    RawDatabase gateway(Office.OutboxPath());
    gateway.Execute(QStringLiteral("BEGIN EXCLUSIVE"));
    int presses = 0;
    Office.Pump.OnProcess = [&](int) {
        if (++presses == 1) {
            Form->DoCancel();
            gateway.Execute(QStringLiteral("COMMIT"));
        }
    };
    Office.Boxes.Expect(BoxAnswer::Yes);
    Button("cmdCancel").click();
    EXPECT_GE(presses, 1) << "nothing waited";
    EXPECT_EQ(Office.Boxes.Shown.size(), 1);
    EXPECT_EQ(StatusOf(id), 2);
    EXPECT_TRUE(Door.Dialogs.isEmpty());
}

TEST_F(HistoryWaiting, ACancelInTheMiddleOfAPassIsAskedWhenThePassIsOver) {
    const qint32 id = AddOwn(0);
    Open();
    RawDatabase gateway(Office.OutboxPath());
    gateway.Execute(QStringLiteral("BEGIN EXCLUSIVE"));
    qsizetype askedInside = -1;
    Office.Pump.OnProcess = [&](int) {
        if (askedInside < 0) {
            Form->DoCancel();
            askedInside = Office.Boxes.Shown.size();
            gateway.Execute(QStringLiteral("COMMIT"));
        }
    };
    Office.Boxes.Expect(BoxAnswer::Yes);
    Form->UpdateHistory(false);
    EXPECT_EQ(askedInside, 0) << "the outbox was in use";
    EXPECT_EQ(StatusOf(id), 2);
    EXPECT_FALSE(Timer().isActive());
}

/// A click on the close button of the window's frame.
void CloseFrame(QWidget& window) {
    QCloseEvent close;
    QSpontaneKeyEvent::setSpontaneous(&close);
    static_cast<QObject&>(window).event(&close);
    EXPECT_EQ(close.isAccepted(), !window.isVisible());
}

TEST_F(HistoryWaiting, AWindowClosedInTheMiddleOfAPassAsksNothingMore) {
    AddOwn(0);
    Open();
    const LockedFile outbox(Office, Office.OutboxPath(), [this] {
        Form->DoCancel();
        Form->reject();
    });
    Form->UpdateHistory(false);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
    EXPECT_FALSE(Form->isVisible());
}

TEST_F(HistoryWaiting, WhoeverClosesItInTheMiddleOfACancelIsObeyedWhenTheMessageIsCanceled) {
    const QList<std::pair<const char*, std::function<void(qint32)>>> ways = {
        {"Esc", [this](qint32) { QTest::keyClick(&Grid(), Qt::Key_Escape); }},
        {"Close", [this](qint32) { Button("cmdClose").click(); }},
        {"the frame", [this](qint32) { CloseFrame(*Form); }},
        {"a double click",
         [this](qint32 id) { QTest::mouseDClick(Grid().viewport(), Qt::LeftButton, {}, PointOf(id)); }},
        {"the menu",
         [this](qint32 id) {
             Door.ExpectMenu(QStringLiteral("New Message with 'Hello...'"));
             RightClick(id);
         }},
    };
    for (const auto& [name, close] : ways) {
        const qint32 id = AddOwn(0, 1);
        Open();
        Select({id});
        Office.Boxes.Expect(BoxAnswer::Yes);
        {
            const LockedFile outbox(Office, Office.OutboxPath(), [&, way = name, step = close] {
                step(id);
                EXPECT_TRUE(Form->isVisible()) << way << ": what lies under it must take no input now";
            });
            Button("cmdCancel").click();
        }
        EXPECT_FALSE(Form->isVisible()) << name;
        EXPECT_EQ(StatusOf(id), 2) << name;
        EXPECT_TRUE(Door.Dialogs.isEmpty()) << name;
    }
}

TEST_F(HistoryWaiting, WhatCouldNotBeCanceledIsToldAlsoToWhoHasClosedTheWindowMeanwhile) {
    const qint32 taken = AddOwn(0, 10);
    Open();
    Office.Boxes.Expect(BoxAnswer::Yes);
    Door.ExpectDialog([this](QDialog& dialog) {
        EXPECT_TRUE(Form->isVisible());
        dialog.hide();
    });
    SetStatus(taken, 1);
    const LockedFile outbox(Office, Office.OutboxPath(),
                            [this] { QTest::keyClick(&Grid(), Qt::Key_Escape); });
    Button("cmdCancel").click();
    EXPECT_EQ(Door.Dialogs, QStringList{QStringLiteral("Larkspan Messenger - Cancel Messages")});
    EXPECT_FALSE(Form->isVisible());
}

TEST_F(HistoryWaiting, AProgramThatEndsInTheMiddleOfACancelClosesTheWindowAtOnce) {
    const qint32 id = AddOwn(0);
    Open();
    Office.Boxes.Expect(BoxAnswer::Yes);
    const LockedFile outbox(Office, Office.OutboxPath(), [this] {
        EXPECT_TRUE(Form->close());
        EXPECT_FALSE(Form->isVisible());
    });
    Button("cmdCancel").click();
    EXPECT_EQ(StatusOf(id), 2);
    EXPECT_TRUE(Door.Dialogs.isEmpty());
}

TEST_F(HistoryWaiting, WithNothingGoingOnTheFramesCloseButtonClosesAtOnce) {
    AddOwn(0);
    Open();
    CloseFrame(*Form);
    EXPECT_FALSE(Form->isVisible());
}

}  // namespace
