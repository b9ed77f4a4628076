#include "controls/ElidedLabel.h"
#include "controls/ShrinkButton.h"
#include "controls/WaitCursor.h"

#include <QBoxLayout>
#include <QDialog>
#include <QGuiApplication>
#include <QImage>

#include <gtest/gtest.h>

#include <memory>

namespace {

TEST(ElidedLabel, ALongTextDoesNotWidenTheWindow) {
    ElidedLabel label;
    const int narrow = label.minimumSizeHint().width();
    label.setText(QString(500, u'x'));
    EXPECT_EQ(label.minimumSizeHint().width(), narrow);
    EXPECT_EQ(label.sizeHint().width(), narrow);
    EXPECT_EQ(label.text().size(), 500);
}

TEST(ElidedLabel, TagsInATextAreShownAsTheyStand) {
    ElidedLabel tagged;
    ElidedLabel plain;
    tagged.setText(QStringLiteral("<b></b>"));
    plain.setText(QString());
    tagged.resize(200, 20);
    plain.resize(200, 20);
    EXPECT_NE(tagged.grab().toImage(), plain.grab().toImage());
}

TEST(ShrinkButton, LetsGoOfItsWordWhenTheRoomIsShort) {
    ShrinkButton button(QStringLiteral("cmdX"), QStringLiteral("add"), QStringLiteral("Add"),
                        QStringLiteral(" Add New "));
    EXPECT_EQ(button.objectName(), QStringLiteral("cmdX"));
    EXPECT_EQ(button.toolTip(), QStringLiteral(" Add New "));
    EXPECT_EQ(button.accessibleName(), QStringLiteral("Add New"));
    button.show();
    button.resize(button.sizeHint());
    EXPECT_EQ(button.toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
    const QSize roomy = button.sizeHint();
    button.resize(button.minimumSizeHint());
    EXPECT_EQ(button.toolButtonStyle(), Qt::ToolButtonIconOnly);
    EXPECT_EQ(button.sizeHint(), roomy) << "or it would never come back";
    EXPECT_LT(button.minimumSizeHint().width(), roomy.width());
    button.resize(roomy);
    EXPECT_EQ(button.toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
}

TEST(ShrinkButton, AButtonWithoutAnIconKeepsItsWord) {
    ShrinkButton button(QStringLiteral("cmdY"), QString(), QStringLiteral("F"), QString());
    button.show();
    button.resize(10, 10);
    EXPECT_EQ(button.toolButtonStyle(), Qt::ToolButtonTextOnly);
    EXPECT_EQ(button.minimumSizeHint(), button.sizeHint());
}

TEST(WaitCursor, PutsBackThePointerThatTheWindowHadBefore) {
    QWidget window;
    window.setCursor(Qt::PointingHandCursor);
    {
        const WaitCursor outer(window);
        {
            const WaitCursor inner(window);
            EXPECT_EQ(window.cursor().shape(), Qt::WaitCursor);
        }
        EXPECT_EQ(window.cursor().shape(), Qt::WaitCursor);
    }
    EXPECT_EQ(window.cursor().shape(), Qt::PointingHandCursor);
}

TEST(WaitCursor, AWindowWithoutAPointerOfItsOwnHasNoneAfterwards) {
    QWidget window;
    {
        const WaitCursor outer(window);
        { const WaitCursor inner(window); }
        EXPECT_TRUE(window.testAttribute(Qt::WA_SetCursor));
    }
    EXPECT_FALSE(window.testAttribute(Qt::WA_SetCursor));
}

TEST(WaitCursor, CoversTheControlsOfTheWindowButNoWindowOverIt) {
    QWidget window;
    QWidget control(&window);
    QDialog question(&window);
    const WaitCursor wait(window);
    EXPECT_EQ(control.cursor().shape(), Qt::WaitCursor);
    EXPECT_EQ(question.cursor().shape(), Qt::ArrowCursor);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST(WaitCursor, TheWindowMayDieFirst) {
    auto window = std::make_unique<QWidget>();
    const WaitCursor wait(*window);
    window.reset();
}

}  // namespace
