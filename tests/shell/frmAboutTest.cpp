#include "shell/frmAbout.h"

#include "shell/MainWindow.h"
#include "shell/frmSplash.h"
#include "support/PaintCount.h"

#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

QString TextOf(const QWidget& form, const char* name) {
    const auto* label = form.findChild<QLabel*>(Q(name));
    return label == nullptr ? Q("(none)") : label->text();
}

}  // namespace

TEST(FrmAbout, TellsTheVersionsOfTheProgramAndOfThePhonebook) {
    FakeWeb web;
    const frmAbout form(2026, Q("4.5.6"), 12, web);
    EXPECT_EQ(TextOf(form, "lblVer"), Q("Ver.4.5.6  PB.12"));
    EXPECT_EQ(form.windowTitle(), Q("Larkspan Messenger - About"));
}

TEST(FrmAbout, PlaceholdersAreExpandedAndTheTwoCharactersOfALineBreakBecomeOne) {
    FakeWeb web;
    const frmAbout form(2026, Q("4.5.6"), 12, web);
    EXPECT_EQ(TextOf(form, "lblApp"), Q("Larkspan Messenger"));
    EXPECT_EQ(TextOf(form, "lblSuite"), Q("Part of Larkspan Business\n2026"));
    for (const QLabel* label : form.findChildren<QLabel*>()) {
        EXPECT_FALSE(label->text().contains(u'{')) << label->text().toStdString();
        EXPECT_FALSE(label->text().contains(u'\\')) << label->text().toStdString();
    }
}

TEST(FrmAbout, AClickOnTheManufacturerOpensTheHomePage) {
    FakeWeb web;
    frmAbout form(2026, Q("4.5.6"), 12, web);
    form.show();
    auto* link = form.findChild<QAbstractButton*>(Q("lblManufacturer"));
    ASSERT_NE(link, nullptr);
    EXPECT_EQ(link->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_EQ(web.Opened, QStringList());
    QTest::mouseClick(link, Qt::LeftButton);
    EXPECT_EQ(web.Opened, QStringList{Q("https://larkspan.example/")});
    EXPECT_TRUE(form.isVisible());
}

TEST(FrmAbout, EnterAndSpaceOnTheManufacturerOpenTheHomePageToo) {
    FakeWeb web;
    frmAbout form(2026, Q("4.5.6"), 12, web);
    form.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    auto* link = form.findChild<QPushButton*>(Q("lblManufacturer"));
    auto* close = form.findChild<QPushButton*>(Q("cmdClose"));
    EXPECT_TRUE(close->hasFocus()) << "what Enter presses at first";
    EXPECT_TRUE(close->isDefault());
    link->setFocus();
    QTest::keyClick(link, Qt::Key_Return);
    QTest::keyClick(link, Qt::Key_Space);
    EXPECT_EQ(web.Opened.size(), 2);
    EXPECT_TRUE(form.isVisible());
    close->setFocus();
    QTest::keyClick(close, Qt::Key_Return);
    EXPECT_EQ(web.Opened.size(), 2);
    EXPECT_FALSE(form.isVisible());
}

TEST(FrmAbout, TheCloseButtonAndEscapeClose) {
    FakeWeb web;
    frmAbout form(2026, Q("4.5.6"), 12, web);
    form.show();
    QTest::mouseClick(form.findChild<QAbstractButton*>(Q("cmdClose")), Qt::LeftButton);
    EXPECT_FALSE(form.isVisible());
    form.show();
    QTest::keyClick(&form, Qt::Key_Escape);
    EXPECT_FALSE(form.isVisible());
}

TEST(FrmAbout, TheAboutButtonShowsItModallyOverTheMainWindow) {
    MainWindow window;
    window.Open();
    window.Context.cfgVersion = 3;
    QString version;
    window.Machine.Door.ExpectDialog([&](QDialog& dialog) {
        version = TextOf(dialog, "lblVer");
        EXPECT_TRUE(dialog.isModal());
        window.Machine.Office.Pump.Calls.clear();
        QTest::mouseClick(dialog.findChild<QAbstractButton*>(Q("cmdClose")), Qt::LeftButton);
    });
    QTest::mouseClick(window.Find("cmdAbout"), Qt::LeftButton);
    EXPECT_EQ(version, Q("Ver." LARKSPAN_VERSION "  PB.3"));
    EXPECT_EQ(window.Machine.Door.Owner, window.Form.get());
    EXPECT_EQ(window.Machine.Office.Pump.Calls, QList<int>{2});
    EXPECT_EQ(window.Machine.Web.Opened, QStringList());
}

TEST(FrmAbout, AfterItTheMainWindowIsPaintedBeforeEventsArePassedOn) {
    MainWindow window;
    window.Open();
    PaintCount paints(*window.Form);
    int atPump = 0;
    window.Machine.Door.ExpectDialog([&](QDialog& dialog) {
        QCoreApplication::processEvents();
        paints.Count = 0;
        window.Machine.Office.Pump.OnProcess = [&](int) { atPump = paints.Count; };
        dialog.hide();
    });
    QTest::mouseClick(window.Find("cmdAbout"), Qt::LeftButton);
    EXPECT_EQ(atPump, 1);
}
