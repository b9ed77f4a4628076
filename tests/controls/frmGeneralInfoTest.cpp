#include "controls/frmGeneralInfo.h"

#include "controls/ModalDoor.h"

#include <QAbstractButton>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

QPlainTextEdit& TextOf(QDialog& form) {
    return *form.findChild<QPlainTextEdit*>(Q("txtMessage"));
}

/// Does with a dialog what a test says.
class DialogDoor final : public ModalDoor {
public:
    std::function<void(QDialog&)> OnDialog;

    void ShowModal(QDialog& dialog, QWidget*) override {
        dialog.show();
        OnDialog(dialog);
    }
    QAction* ShowMenu(QMenu&, const QPoint&) override {
        ADD_FAILURE() << "a menu was not expected";
        return nullptr;
    }
};

}  // namespace

TEST(FrmGeneralInfo, HasTheProductsNameAsItsCaptionUntilItGetsATitle) {
    frmGeneralInfo form;
    EXPECT_EQ(form.windowTitle(), Q("Larkspan Messenger"));
    EXPECT_EQ(form.parentWidget(), nullptr);
    form.SetTitle(Q("Cancel Messages"));
    EXPECT_EQ(form.windowTitle(), Q("Larkspan Messenger - Cancel Messages"));
}

TEST(FrmGeneralInfo, ShowsItsTextWithItsLinesAndLetsNobodyChangeIt) {
    frmGeneralInfo form;
    form.SetMessaage(Q("one\r\ntwo\nthree"));
    form.show();
    EXPECT_EQ(TextOf(form).toPlainText(), Q("one\ntwo\nthree"));
    QTest::keyClicks(&TextOf(form), Q("more"));
    QTest::keyClick(&TextOf(form), Qt::Key_Delete);
    EXPECT_EQ(TextOf(form).toPlainText(), Q("one\ntwo\nthree"));
}

TEST(FrmGeneralInfo, ItsTextCanBeMarkedAndTheOkButtonClosesIt) {
    frmGeneralInfo form;
    form.SetMessaage(Q("one"));
    form.show();
    QTest::keyClick(&TextOf(form), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(TextOf(form).textCursor().selectedText(), Q("one"));
    QTest::mouseClick(form.findChild<QAbstractButton*>(Q("cmdOK")), Qt::LeftButton);
    EXPECT_FALSE(form.isVisible());
}

TEST(FrmGeneralInfo, IsShownWithItsTitleAndTextAndIsGoneAfterwards) {
    QWidget owner;
    DialogDoor door;
    door.OnDialog = [](QDialog& form) {
        EXPECT_TRUE(form.windowTitle().endsWith(Q("Failures")));
        EXPECT_EQ(TextOf(form).toPlainText(), Q("text"));
    };
    ShowGeneralInfo(door, owner, Q("Failures"), Q("text"));
    EXPECT_TRUE(owner.children().isEmpty());
}

TEST(FrmGeneralInfo, AnOwnerThatGoesWhileItIsOpenTakesItAlong) {
    auto owner = std::make_unique<QWidget>();
    QPointer<QDialog> shown;
    DialogDoor door;
    door.OnDialog = [&](QDialog& form) {
        shown = &form;
        owner = nullptr;
    };
    ShowGeneralInfo(door, *owner, Q("Failures"), Q("text"));
    EXPECT_EQ(shown, nullptr);
}
