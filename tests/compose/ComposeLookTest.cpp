#include "ComposeBench.h"

#include "compose/frmConfirmRecipient.h"
#include "compose/frmGetTime.h"
#include "controls/ModalDoor.h"

#include <QtTest/qtestspontaneevent.h>
#include <QAccessible>
#include <QDateEdit>
#include <QDropEvent>
#include <QFrame>
#include <QMimeData>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTimeEdit>
#include <QWheelEvent>
#include <QWindow>

namespace {

class ComposeLookTest : public ComposeBench {
protected:
    static void ExpectControls(QWidget& form, const QList<std::pair<QString, const QMetaObject*>>& controls) {
        for (const auto& [name, type] : controls) {
            const QList<QWidget*> found = form.findChildren<QWidget*>(name);
            ASSERT_EQ(found.size(), 1) << name.toStdString();
            EXPECT_TRUE(found.first()->metaObject()->inherits(type)) << name.toStdString();
            const auto* accessible = QAccessible::queryAccessibleInterface(found.first());
            ASSERT_NE(accessible, nullptr) << name.toStdString();
            EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty()) << name.toStdString();
        }
    }
    /// One notch down over the middle of a control, as the window system tells it.
    static void TurnWheel(QWidget& control) {
        const QPoint middle = control.mapTo(control.window(), control.rect().center());
        QWheelEvent turn(middle, control.window()->mapToGlobal(middle), QPoint(), QPoint(0, -120),
                         Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&turn);
        QCoreApplication::instance()->notify(control.window()->windowHandle(), &turn);
    }
    static void ExpectNothingCut(QWidget& form) {
        const QList<QLabel*> labels = form.findChildren<QLabel*>();
        for (const QLabel* label : labels) {
            EXPECT_GE(label->width(), label->minimumSizeHint().width()) << label->objectName().toStdString();
            EXPECT_GE(label->height(), label->minimumSizeHint().height())
                << label->objectName().toStdString();
        }
        const QList<QAbstractButton*> buttons = form.findChildren<QAbstractButton*>();
        for (const QAbstractButton* button : buttons) {
            const QSize text = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
            const int icon = button->icon().isNull() ? 0 : button->iconSize().width();
            EXPECT_GE(button->width(), text.width() + icon + 6) << button->objectName().toStdString();
            EXPECT_GE(button->height(), text.height() + 2) << button->objectName().toStdString();
        }
    }
};

TEST_F(ComposeLookTest, EveryControlIsThereOnceOfItsTypeAndWithANameToSay) {
    QList<std::pair<QString, const QMetaObject*>> controls = {
        {QStringLiteral("txtMessage"), &QPlainTextEdit::staticMetaObject},
        {QStringLiteral("txtEndWidth"), &QLineEdit::staticMetaObject},
        {QStringLiteral("cbTails"), &QComboBox::staticMetaObject},
        {QStringLiteral("pbMsgSize"), &QProgressBar::staticMetaObject},
        {QStringLiteral("lblCharsRemaining"), &QLabel::staticMetaObject},
        {QStringLiteral("lblSMSPageCount"), &QLabel::staticMetaObject},
        {QStringLiteral("lblUsed"), &QLabel::staticMetaObject},
        {QStringLiteral("cmdClearMessage"), &QPushButton::staticMetaObject},
        {QStringLiteral("fraMessage"), &QGroupBox::staticMetaObject},
        {QStringLiteral("fraTail"), &QGroupBox::staticMetaObject},
        {QStringLiteral("lvRecipients"), &ListView::staticMetaObject},
        {QStringLiteral("cmdClearRecipients"), &QPushButton::staticMetaObject},
        {QStringLiteral("fraRecipients"), &QGroupBox::staticMetaObject},
        {QStringLiteral("fraSendButtons"), &QFrame::staticMetaObject},
        {QStringLiteral("cmdSendNow"), &QPushButton::staticMetaObject},
        {QStringLiteral("cmdSendLater"), &QPushButton::staticMetaObject},
        {QStringLiteral("cmdQBPrevious"), &QPushButton::staticMetaObject},
        {QStringLiteral("cmdNextQBPage"), &QPushButton::staticMetaObject},
    };
    for (int index = 0; index < 10; ++index) {
        controls.append({QStringLiteral("cmdQuickFire%1").arg(index), &QPushButton::staticMetaObject});
    }
    ExpectControls(Window, controls);
}

TEST_F(ComposeLookTest, TheQuickfireRowIsThereAndDisabled) {
    for (int index = 0; index < 10; ++index) {
        const auto& button =
            Find<QPushButton>(QStringLiteral("cmdQuickFire%1").arg(index).toLatin1().constData());
        EXPECT_FALSE(button.isEnabled());
        EXPECT_EQ(button.text(), QString::number((index + 1) % 10));
    }
    EXPECT_EQ(Find<QPushButton>("cmdQBPrevious").toolTip(), QStringLiteral(" Previous page of buttons "));
    EXPECT_EQ(Find<QPushButton>("cmdNextQBPage").toolTip(), QStringLiteral(" Next page of buttons "));
    EXPECT_FALSE(Find<QPushButton>("cmdNextQBPage").isEnabled());
}

TEST_F(ComposeLookTest, TheTabKeyGoesAsTheEyeReads) {
    AddRecipient(1, QStringLiteral("Byrne"));
    txtMessage().SetText(QStringLiteral("Hello"));
    ShowWindow();
    lvRecipients().setFocus();
    QStringList order;
    for (int step = 0; step < 7; ++step) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        order.append(QApplication::focusWidget()->objectName());
    }
    EXPECT_EQ(order, (QStringList{QStringLiteral("cmdClearRecipients"), QStringLiteral("txtMessage"),
                                  QStringLiteral("cmdClearMessage"), QStringLiteral("txtEndWidth"),
                                  QStringLiteral("cbTails"), QStringLiteral("cmdSendLater"),
                                  QStringLiteral("cmdSendNow")}));
}

TEST_F(ComposeLookTest, NoTwoMnemonicsAreAlikeAndNoneIsAKeyOfTheWindow) {
    QStringList keys = {QStringLiteral("Alt+E"), QStringLiteral("Alt+M"), QStringLiteral("Alt+C"),
                        QStringLiteral("Alt+R"), QStringLiteral("Alt+F")};
    const QList<QAbstractButton*> buttons = Window.findChildren<QAbstractButton*>();
    for (const QAbstractButton* button : buttons) {
        const QString key = button->shortcut().toString();
        if (!key.isEmpty()) {
            EXPECT_FALSE(keys.contains(key)) << key.toStdString();
            keys.append(key);
        }
    }
}

TEST_F(ComposeLookTest, NothingIsCutAtOneAndAHalfTimesTheFont) {
    QFont large = Window.font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    Window.setFont(large);
    txtMessage().SetText(QString(156, u'x'));
    Window.resize(Window.minimumSizeHint());
    ShowWindow();
    ExpectNothingCut(Window);
}

TEST_F(ComposeLookTest, TheDialogsHaveTheirControlsAndCutNothing) {
    QFont large = QApplication::font();
    const QFont usual = large;
    large.setPointSizeF(large.pointSizeF() * 1.5);
    QApplication::setFont(large);
    {
        frmGetTime time(Office.Time);
        ExpectControls(time, {{QStringLiteral("dtDate"), &QDateEdit::staticMetaObject},
                              {QStringLiteral("dtTime"), &QTimeEdit::staticMetaObject},
                              {QStringLiteral("cmdOK"), &QPushButton::staticMetaObject},
                              {QStringLiteral("cmdCancel"), &QPushButton::staticMetaObject}});
        time.show();
        ExpectNothingCut(time);
        frmConfirmRecipient confirm(RecipientContacts, Office.Time);
        ExpectControls(confirm, {{QStringLiteral("Please"), &QLabel::staticMetaObject},
                                 {QStringLiteral("lvRecipient"), &ListView::staticMetaObject},
                                 {QStringLiteral("cmdOkay"), &QPushButton::staticMetaObject},
                                 {QStringLiteral("cmdCancel"), &QPushButton::staticMetaObject}});
        confirm.show();
        ExpectNothingCut(confirm);
    }
    QApplication::setFont(usual);
}

TEST_F(ComposeLookTest, TheNumbersStandAloneBesideTheirCaptions) {
    txtMessage().SetText(QStringLiteral("Hello"));
    EXPECT_EQ(Used(), QStringLiteral("5"));
    EXPECT_EQ(Find<QLabel>("lblUsed").accessibleDescription(), QStringLiteral("5"));
    QStringList texts;
    const QList<QLabel*> labels = Find<QGroupBox>("fraMessage").findChildren<QLabel*>();
    for (const QLabel* label : labels) {
        texts.append(label->text());
    }
    for (const char* caption : {"used", "SMS", "left"}) {
        EXPECT_TRUE(texts.contains(QString::fromLatin1(caption))) << caption;
    }
}

TEST_F(ComposeLookTest, ContactsCannotBeDroppedOnTheSignatureButATextCan) {
    const QPoint middle = txtEndWidth().rect().center();
    const auto drop = [&](const QMimeData& data) {
        QDragEnterEvent enter(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&txtEndWidth(), &enter);
        QDragMoveEvent move(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&txtEndWidth(), &move);
        QDropEvent release(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&txtEndWidth(), &release);
        EXPECT_EQ(enter.isAccepted(), move.isAccepted());
        return enter.isAccepted();
    };
    EXPECT_FALSE(drop(*NewKeyData(QStringLiteral("C11\r\n"))));
    EXPECT_EQ(txtEndWidth().text(), QString());
    QMimeData text;
    text.setText(QStringLiteral("Ann"));
    EXPECT_TRUE(drop(text));
    EXPECT_EQ(txtEndWidth().text(), QStringLiteral("Ann"));
}

TEST_F(ComposeLookTest, TheWheelChangesATailOnlyWhereTheFocusIs) {
    SetTails({QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("three")}, {1});
    ShowWindow();
    txtMessage().setFocus();
    TurnWheel(cbTails());
    EXPECT_EQ(cbTails().currentText(), QStringLiteral("two"));
    EXPECT_TRUE(txtMessage().hasFocus()) << "the wheel takes the focus away";
    cbTails().setFocus();
    TurnWheel(cbTails());
    EXPECT_EQ(cbTails().currentText(), QStringLiteral("three"));
}

TEST_F(ComposeLookTest, TheWheelChangesTheTimeToSendOnlyWhereTheFocusIs) {
    frmGetTime time(Office.Time);
    time.show();
    time.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&time));
    const QDateTime before = time.SendTime();
    for (const char* name : {"dtDate", "dtTime"}) {
        FindIn<QPushButton>(time, "cmdOK").setFocus();
        auto& box = FindIn<QDateTimeEdit>(time, name);
        TurnWheel(box);
        EXPECT_EQ(time.SendTime(), before) << name;
        EXPECT_FALSE(box.hasFocus()) << name;
    }
    FindIn<QTimeEdit>(time, "dtTime").setFocus();
    TurnWheel(FindIn<QTimeEdit>(time, "dtTime"));
    EXPECT_NE(time.SendTime(), before);
}

TEST_F(ComposeLookTest, TenThousandContactsComeAndGoWithAFewNoticesToTheViews) {
    QStringList keys;
    for (int id = 1; id <= 10000; ++id) {
        keys.append(ShowContact(static_cast<qint16>(id), QStringLiteral("Name%1").arg(id)));
    }
    const QSignalSpy inserted(lvRecipients().model(), &QAbstractItemModel::rowsInserted);
    Area->AddKeysToRecipients(keys);
    EXPECT_EQ(inserted.count(), 1);
    EXPECT_EQ(lvRecipients().Rows().Count(), 10000);
    EXPECT_TRUE(lvRecipients().updatesEnabled());

    const QSignalSpy removed(lvRecipients().model(), &QAbstractItemModel::rowsRemoved);
    const QSignalSpy reset(lvRecipients().model(), &QAbstractItemModel::modelReset);
    QItemSelection everySecond;
    for (int row = 0; row < 10000; row += 2) {
        everySecond.select(lvRecipients().model()->index(row, 0), lvRecipients().model()->index(row, 0));
    }
    lvRecipients().selectionModel()->select(everySecond, QItemSelectionModel::ClearAndSelect);
    QTest::keyClick(&lvRecipients(), Qt::Key_Delete);
    EXPECT_EQ(lvRecipients().Rows().Count(), 5000);
    EXPECT_LE(removed.count() + reset.count(), 8);
}

}  // namespace
