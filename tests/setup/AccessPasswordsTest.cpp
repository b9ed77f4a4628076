#include "setup/AccessPasswords.h"

#include "setup/frmPassword.h"
#include "support/RecordingDoor.h"
#include "support/TempOffice.h"

#include <QApplication>
#include <QGroupBox>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>

#include <functional>
#include <memory>

namespace {

QLineEdit& Entry(QDialog& dialog) {
    return *dialog.findChild<QLineEdit*>(QStringLiteral("txtPassword"));
}

/// Counts how often it is painted.
class PaintedWindow final : public QWidget {
public:
    int Paints = 0;
    std::function<void()> OnPaint;

protected:
    void paintEvent(QPaintEvent*) override {
        ++Paints;
        if (OnPaint) {
            OnPaint();
        }
    }
};

/// Counts the key presses that reach a widget.
class KeyCounter final : public QObject {
public:
    int Presses = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        Presses += event->type() == QEvent::KeyPress ? 1 : 0;
        return false;
    }
};

class AccessPasswordsTest : public ::testing::Test {
protected:
    void Store(const char* column, const QString& password) {
        Office.ExecuteOnPhonebook(
            QStringLiteral("UPDATE Config SET %1 = '%2'").arg(QString::fromLatin1(column), password));
    }
    /// The next prompt is answered with this password.
    void ExpectEntry(const QString& password) {
        Door.ExpectDialog([password](QDialog& dialog) {
            QTest::keyClicks(&Entry(dialog), password);
            QTest::keyClick(&Entry(dialog), Qt::Key_Return);
        });
    }
    void ExpectCancel() {
        Door.ExpectDialog([](QDialog& dialog) { QTest::keyClick(&Entry(dialog), Qt::Key_Escape); });
    }
    bool Hidden() { return Passwords.IsPasswordOK(true); }
    bool Edit() { return Passwords.IsPasswordOK(false); }

    TempOffice Office;
    RecordingDoor Door;
    PaintedWindow Owner;
    AccessPasswords Passwords{Office.PhonebookValues, Door, Office.Pump, Office.Time, Owner};
};

TEST_F(AccessPasswordsTest, WithoutPasswordsNothingIsAsked) {
    EXPECT_TRUE(Edit());
    EXPECT_TRUE(Hidden());
    EXPECT_TRUE(Passwords.PublicHistoryPasswordCheck());
    EXPECT_TRUE(Passwords.ReportPasswordCheck());
    EXPECT_FALSE(Passwords.PublicHistoryAccepted);
    EXPECT_FALSE(Passwords.ReportAccepted);
    EXPECT_TRUE(Door.Dialogs.isEmpty());
}

TEST_F(AccessPasswordsTest, NullPasswordsReadAsEmpty) {
    Office.ExecuteOnPhonebook(
        QStringLiteral("UPDATE Config SET cfgEditPassword = NULL, cfgEditHiddenPassword = NULL, "
                       "cfgPublicHistoryPassword = NULL, cfgReportPassword = NULL"));
    EXPECT_TRUE(Edit());
    EXPECT_TRUE(Hidden());
    EXPECT_TRUE(Passwords.PublicHistoryPasswordCheck());
    EXPECT_TRUE(Passwords.ReportPasswordCheck());
}

TEST_F(AccessPasswordsTest, AnEmptyHiddenPasswordMeansTheEditPassword) {
    Store("cfgEditPassword", QStringLiteral("edit"));
    ExpectEntry(QStringLiteral("edit"));
    EXPECT_TRUE(Hidden());
    EXPECT_EQ(Passwords.AcceptedHiddenPassword, QStringLiteral("edit"));
    EXPECT_EQ(Passwords.AcceptedEditPassword, QString());
    ExpectEntry(QStringLiteral("edit"));
    EXPECT_TRUE(Edit()) << "the two locks are asked for separately";
}

TEST_F(AccessPasswordsTest, AHiddenPasswordOfItsOwnGuardsOnlyPrivateNumbers) {
    Store("cfgEditHiddenPassword", QStringLiteral("secret"));
    EXPECT_TRUE(Edit());
    ExpectEntry(QStringLiteral("secret"));
    EXPECT_TRUE(Hidden());
}

TEST_F(AccessPasswordsTest, TheRightPasswordHoldsUntilTheTableChanges) {
    Store("cfgEditPassword", QStringLiteral("one"));
    ExpectEntry(QStringLiteral("one"));
    EXPECT_TRUE(Edit());
    EXPECT_TRUE(Edit());
    EXPECT_EQ(Door.Dialogs.size(), 1);
    EXPECT_EQ(Door.Owner, &Owner);
    Store("cfgEditPassword", QStringLiteral("two"));
    ExpectEntry(QStringLiteral("one"));
    EXPECT_FALSE(Edit());
    ExpectEntry(QStringLiteral("two"));
    EXPECT_TRUE(Edit());
}

TEST_F(AccessPasswordsTest, AWrongOrCanceledEntryIsRefusedWithoutAWordAndAskedForAgain) {
    Store("cfgEditPassword", QStringLiteral("edit"));
    ExpectEntry(QStringLiteral("Edit"));
    EXPECT_FALSE(Edit());
    ExpectEntry(QString());
    EXPECT_FALSE(Edit());
    Door.ExpectDialog([](QDialog& dialog) {
        QTest::keyClicks(&Entry(dialog), QStringLiteral("edit"));
        QTest::keyClick(&Entry(dialog), Qt::Key_Escape);
    });
    EXPECT_FALSE(Edit());
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
    EXPECT_EQ(Passwords.AcceptedEditPassword, QString());
}

TEST_F(AccessPasswordsTest, AfterThePromptTheWindowIsPaintedAndEventsRunTwice) {
    Store("cfgEditPassword", QStringLiteral("edit"));
    Owner.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&Owner));
    QPointer<QDialog> prompt;
    Door.ExpectDialog([&](QDialog& dialog) {
        prompt = &dialog;
        QTest::keyClick(&Entry(dialog), Qt::Key_Escape);
        Owner.Paints = 0;
    });
    Owner.OnPaint = [&] { EXPECT_EQ(prompt, nullptr) << "a painted window has no prompt any more"; };
    int paintsBeforeEvents = -1;
    Office.Pump.OnProcess = [&](int) { paintsBeforeEvents = Owner.Paints; };
    EXPECT_FALSE(Edit());
    Owner.OnPaint = {};
    EXPECT_EQ(Office.Pump.Calls, QList<int>{2});
    EXPECT_EQ(paintsBeforeEvents, 1);
}

TEST_F(AccessPasswordsTest, ATrailingBlankIsForgivenForTheHistoryAndNotForEditing) {
    Store("cfgPublicHistoryPassword", QStringLiteral("past"));
    ExpectEntry(QStringLiteral("past "));
    EXPECT_TRUE(Passwords.PublicHistoryPasswordCheck());
    EXPECT_EQ(Door.Owner, &Owner);
    Store("cfgEditPassword", QStringLiteral("edit"));
    ExpectEntry(QStringLiteral("edit "));
    EXPECT_FALSE(Edit());
}

TEST_F(AccessPasswordsTest, AStoredPasswordWithBlanksAtItsEndsNeverPassesHistoryOrReports) {
    Store("cfgPublicHistoryPassword", QStringLiteral(" past "));
    Store("cfgReportPassword", QStringLiteral("report "));
    ExpectEntry(QStringLiteral(" past "));
    EXPECT_FALSE(Passwords.PublicHistoryPasswordCheck());
    ExpectEntry(QStringLiteral("report "));
    EXPECT_FALSE(Passwords.ReportPasswordCheck());
    Store("cfgEditPassword", QStringLiteral(" edit "));
    ExpectEntry(QStringLiteral(" edit "));
    EXPECT_TRUE(Edit()) << "blanks count for editing";
}

TEST_F(AccessPasswordsTest, BlanksAtTheEndsAreForgivenForTheHistoryAndForReportsAndCapitalsAreNot) {
    const auto history = [this] { return Passwords.PublicHistoryPasswordCheck(); };
    const auto reports = [this] { return Passwords.ReportPasswordCheck(); };
    const QList<std::pair<const char*, std::function<bool()>>> locks = {{"cfgPublicHistoryPassword", history},
                                                                        {"cfgReportPassword", reports}};
    for (const auto& [column, check] : locks) {
        Store(column, QStringLiteral("lark"));
        for (const char* wrong : {"Lark", "LARK", "", "la rk"}) {
            ExpectEntry(QString::fromLatin1(wrong));
            EXPECT_FALSE(check()) << column << ' ' << wrong;
        }
        for (const char* right : {" lark", "lark ", "  lark  "}) {
            Passwords.PublicHistoryAccepted = Passwords.ReportAccepted = false;
            ExpectEntry(QString::fromLatin1(right));
            EXPECT_TRUE(check()) << column << ' ' << right;
        }
    }
}

TEST_F(AccessPasswordsTest, OnceAcceptedThePublicHistoryStaysOpenWithoutAnotherPrompt) {
    Store("cfgPublicHistoryPassword", QStringLiteral("one"));
    ExpectEntry(QStringLiteral("one"));
    EXPECT_TRUE(Passwords.PublicHistoryPasswordCheck());
    EXPECT_TRUE(Passwords.PublicHistoryAccepted);
    Store("cfgPublicHistoryPassword", QStringLiteral("two"));
    EXPECT_TRUE(Passwords.PublicHistoryPasswordCheck());
    Office.PhonebookDB().CloseDatabase();
    EXPECT_TRUE(Passwords.PublicHistoryPasswordCheck());
    EXPECT_EQ(Door.Dialogs.size(), 1);
    EXPECT_FALSE(Passwords.ReportAccepted) << "each lock has its own flag";
}

TEST_F(AccessPasswordsTest, AWrongOrCanceledEntryLeavesTheLocksOfTheRunShut) {
    Store("cfgPublicHistoryPassword", QStringLiteral("one"));
    ExpectEntry(QStringLiteral("two"));
    EXPECT_FALSE(Passwords.PublicHistoryPasswordCheck());
    EXPECT_EQ(Door.Dialogs.size(), 1) << "there is no second try";
    ExpectCancel();
    EXPECT_FALSE(Passwords.PublicHistoryPasswordCheck());
    EXPECT_FALSE(Passwords.PublicHistoryAccepted);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(AccessPasswordsTest, OnceAcceptedTheReportLockStaysOpenWhateverTheTableSays) {
    Store("cfgReportPassword", QStringLiteral("one"));
    ExpectEntry(QStringLiteral("one"));
    EXPECT_TRUE(Passwords.ReportPasswordCheck());
    EXPECT_EQ(Door.Owner, &Owner);
    EXPECT_TRUE(Passwords.ReportAccepted);
    Store("cfgReportPassword", QStringLiteral("two"));
    EXPECT_TRUE(Passwords.ReportPasswordCheck());
    Office.PhonebookDB().CloseDatabase();
    EXPECT_TRUE(Passwords.ReportPasswordCheck());
    EXPECT_FALSE(Passwords.PublicHistoryAccepted) << "each lock has its own flag";
}

TEST_F(AccessPasswordsTest, AnEmptyPasswordDoesNotOpenTheLockForTheRun) {
    EXPECT_TRUE(Passwords.PublicHistoryPasswordCheck());
    Store("cfgPublicHistoryPassword", QStringLiteral("past"));
    ExpectCancel();
    EXPECT_FALSE(Passwords.PublicHistoryPasswordCheck());
}

TEST_F(AccessPasswordsTest, WithoutThePhonebookEditingIsOpenAndHistoryAndReportsAreShut) {
    Store("cfgEditPassword", QStringLiteral("edit"));
    Store("cfgPublicHistoryPassword", QStringLiteral("past"));
    Office.PhonebookDB().CloseDatabase();
    EXPECT_TRUE(Edit());
    EXPECT_TRUE(Hidden());
    EXPECT_FALSE(Passwords.PublicHistoryPasswordCheck());
    EXPECT_FALSE(Passwords.ReportPasswordCheck());
    Office.PhonebookValues.PhonebookDB.reset();
    EXPECT_TRUE(Edit());
    EXPECT_FALSE(Passwords.ReportPasswordCheck());
    EXPECT_TRUE(Door.Dialogs.isEmpty());
}

TEST_F(AccessPasswordsTest, WithoutAConfigRowEditingIsOpenAndHistoryIsShut) {
    Office.ExecuteOnPhonebook(QStringLiteral("DELETE FROM Config"));
    EXPECT_TRUE(Edit());
    EXPECT_FALSE(Passwords.PublicHistoryPasswordCheck());
}

class PasswordDialogTest : public ::testing::Test {
protected:
    void Open() {
        Dialog = std::make_unique<frmPassword>(Time);
        Dialog->show();
    }
    FakeClock Time;
    std::unique_ptr<frmPassword> Dialog;
};

TEST_F(PasswordDialogTest, HoldsOnlyTheEntryBoxInItsFrameAndOpensCanceled) {
    Open();
    EXPECT_TRUE(Dialog->IsCanceled());
    EXPECT_EQ(Dialog->windowTitle(), QStringLiteral("Larkspan Messenger - Password"));
    const auto* frame = Dialog->findChild<QGroupBox*>(QStringLiteral("gbMain"));
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(frame->title(), QStringLiteral("Password"));
    EXPECT_EQ(frame->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly).size(), 1);
    EXPECT_TRUE(Dialog->findChildren<QAbstractButton*>().isEmpty());
    EXPECT_EQ(Entry(*Dialog).accessibleName(), QStringLiteral("Password"));
}

TEST_F(PasswordDialogTest, TheCharactersAreNotShown) {
    Open();
    QTest::keyClicks(&Entry(*Dialog), QStringLiteral("secret"));
    EXPECT_FALSE(Entry(*Dialog).displayText().contains(u's'));
    EXPECT_EQ(Dialog->Password(), QStringLiteral("secret"));
}

TEST_F(PasswordDialogTest, EnterConsumesTheKeyAcceptsAndHides) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        Open();
        QTest::keyClicks(&Entry(*Dialog), QStringLiteral(" pw "));
        QTest::keyClick(&Entry(*Dialog), key);
        EXPECT_FALSE(Dialog->IsCanceled());
        EXPECT_FALSE(Dialog->isVisible());
        EXPECT_EQ(Dialog->Password(), QStringLiteral(" pw "));
    }
}

TEST_F(PasswordDialogTest, NeitherKeyGetsPastTheEntryBox) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
        Open();
        KeyCounter counter;
        Dialog->installEventFilter(&counter);
        QTest::keyClick(&Entry(*Dialog), key);
        EXPECT_EQ(counter.Presses, 0) << key;
    }
}

TEST_F(PasswordDialogTest, EscapeAndTheCloseButtonHideItCanceled) {
    Open();
    QTest::keyClick(&Entry(*Dialog), Qt::Key_Escape);
    EXPECT_TRUE(Dialog->IsCanceled());
    EXPECT_FALSE(Dialog->isVisible());
    Open();
    Dialog->close();
    EXPECT_TRUE(Dialog->IsCanceled());
    EXPECT_FALSE(Dialog->isVisible());
}

TEST_F(PasswordDialogTest, AnEnterKeyThatIsHeldDownDoesNotAnswer) {
    Open();
    QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
    QApplication::sendEvent(&Entry(*Dialog), &repeat);
    EXPECT_TRUE(Dialog->isVisible());
    EXPECT_TRUE(Dialog->IsCanceled());
}

}  // namespace
