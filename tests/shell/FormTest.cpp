#include "shell/MainWindow.h"

#include "controls/Contrast.h"
#include "controls/ListView.h"
#include "controls/ReportControl.h"
#include "shell/AlertStrip.h"
#include "shell/FormTexts.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyleOptionButton>
#include <QTimeEdit>

#include <gtest/gtest.h>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

}  // namespace

TEST(Form, NoMnemonicIsAKeyOfTheWindow) {
    MainWindow window(FullOffice);
    window.Open();
    int mnemonics = 0;
    const auto all = window.Form->findChildren<QWidget*>();
    for (const QWidget* widget : all) {
        const QChar mnemonic = MnemonicOf(*widget);
        if (!mnemonic.isNull()) {
            EXPECT_FALSE(QStringLiteral("EMCRF0123456789").contains(mnemonic))
                << widget->objectName().toStdString();
            ++mnemonics;
        }
    }
    EXPECT_GE(mnemonics, 8);
}

TEST(Form, FitsInto900By600AndGrowsToAWholeScreen) {
    MainWindow window(FullOffice);
    window.Open();
    const QSize smallest = window.Form->minimumSizeHint();
    EXPECT_LE(smallest.width(), 900);
    EXPECT_LE(smallest.height(), 600);
    for (const QSize size : {QSize(900, 600), QSize(1366, 768), QSize(1920, 1080)}) {
        window.Form->resize(size);
        QCoreApplication::processEvents();
        EXPECT_EQ(window.Form->size(), size);
        const QRect form = window.Form->rect();
        for (const char* name : {"lvContacts", "lvRecipients", "txtMessage", "cmdSendNow", "cmdExit",
                                 "cbTails", "lblCharsRemaining", "UserData2"}) {
            const QWidget* control = window.Find(name);
            const QRect place(control->mapTo(window.Form.get(), QPoint(0, 0)), control->size());
            EXPECT_TRUE(form.contains(place)) << name << " at " << size.width();
            EXPECT_GE(place.height(), control->fontMetrics().height()) << name << " at " << size.width();
        }
        EXPECT_GE(window.Find<ListView>("lvContacts")->RowsPerPage(), 8);
        EXPECT_GE(window.Find("txtMessage")->height(), 4 * window.Form->fontMetrics().height());
    }
}

TEST(Form, EveryRowOfTheContactListHasTheSameHeight) {
    MainWindow window([](TestMachine& machine) {
        FullOffice(machine);
        ContactFields fields;
        fields.Surname = Q("Aardvark");
        fields.ConfirmSend = true;
        fields.Phone = Q("+35386555000");
        machine.Office.AddContact(fields);
    });
    window.Open();
    const auto* list = window.Find<ListView>("lvContacts");
    const int height = list->visualRect(list->model()->index(0, 0)).height();
    for (int row = 0; row < 10; ++row) {
        EXPECT_EQ(list->visualRect(list->model()->index(row, 0)).height(), height) << row;
    }
}

TEST(Look, EveryTextOfBothPalettesHasAContrastOfFourAndAHalf) {
    using Role = QPalette::ColorRole;
    const QList<std::pair<Role, Role>> pairs = {
        {QPalette::WindowText, QPalette::Window},       {QPalette::Text, QPalette::Base},
        {QPalette::Text, QPalette::AlternateBase},      {QPalette::ButtonText, QPalette::Button},
        {QPalette::ButtonText, QPalette::Window},       {QPalette::HighlightedText, QPalette::Highlight},
        {QPalette::PlaceholderText, QPalette::Window},  {QPalette::PlaceholderText, QPalette::Base},
        {QPalette::ToolTipText, QPalette::ToolTipBase}, {QPalette::Link, QPalette::Window}};
    for (const auto scheme : {Look::Scheme::Light, Look::Scheme::Dark}) {
        const QPalette palette = Look::PaletteOf(scheme);
        for (const auto& [text, ground] : pairs) {
            EXPECT_GE(Contrast(palette.color(text), palette.color(ground)), 4.5)
                << text << " on " << ground << " in scheme " << static_cast<int>(scheme);
        }
    }
}

TEST(Look, TheWarningCanBeReadInBothPalettes) {
    for (const char* scheme : {"light", "dark"}) {
        Look::Apply(Q(scheme));
        const AlertStrip strip;
        const auto* label = strip.findChild<QPushButton*>();
        EXPECT_GE(
            Contrast(label->palette().color(QPalette::ButtonText), strip.palette().color(QPalette::Window)),
            4.5);
    }
    Look::Apply(Q("light"));
}

TEST(Look, FieldsTextBoxesListsAndTicksHaveAnOutlineThatIsSeenInBothPalettes) {
    for (const char* scheme : {"light", "dark"}) {
        Look::Apply(Q(scheme));
        QWidget form;
        QLineEdit line(&form);
        QTimeEdit time(&form);
        QPlainTextEdit text(&form);
        ListView list(&form);
        ReportControl grid(&form);
        QCheckBox tick(&form);
        form.show();
        for (QWidget* field : QWidgetList{&line, &time, &text, &list, &grid, &tick}) {
            field->adjustSize();
            QStyleOptionButton option;
            option.initFrom(&tick);
            const QRect place =
                field == &tick ? tick.style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, &tick)
                               : field->rect();
            const QColor edge = field->grab().toImage().pixelColor(place.left(), place.center().y());
            EXPECT_GE(Contrast(edge, form.palette().color(QPalette::Window)), 1.5)
                << field->metaObject()->className() << ' ' << scheme;
        }
    }
    Look::Apply(Q("light"));
}

TEST(Look, FollowsTheDesktopUnlessToldOtherwise) {
    EXPECT_EQ(Look::SchemeOf(QPalette(QColor(40, 42, 46))), Look::Scheme::Dark);
    EXPECT_EQ(Look::SchemeOf(QPalette(QColor(240, 240, 240))), Look::Scheme::Light);
    Look::Apply(Q("dark"));
    EXPECT_EQ(QApplication::palette().color(QPalette::Window),
              Look::PaletteOf(Look::Scheme::Dark).color(QPalette::Window));
    Look::Apply(QString());
    EXPECT_EQ(Look::SchemeOf(QApplication::palette()), Look::Scheme::Dark) << "what the desktop has now";
    Look::Apply(Q("light"));
}

TEST(Look, TheBannerGivesWayToTheButtonsInANarrowWindow) {
    MainWindow window;
    window.Open();
    window.Form->resize(1200, 740);
    QCoreApplication::processEvents();
    EXPECT_TRUE(window.Find("imgAd")->isVisible());
    window.Form->resize(window.Form->minimumSizeHint().width(), 740);
    QCoreApplication::processEvents();
    for (const char* name : {"cmdHistory", "cmdReports", "cmdConfig", "cmdAbout", "cmdMinimize", "cmdExit"}) {
        const QWidget* button = window.Find(name);
        EXPECT_GE(button->width(), button->minimumSizeHint().width()) << name;
    }
}
