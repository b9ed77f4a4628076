#include "PhonebookOffice.h"

#include <QAbstractButton>
#include <QApplication>
#include <QGroupBox>

namespace {

class PhonebookForm : public PhonebookOffice {};

struct Named {
    QStringView Name;
    const char* Type;
};

const Named Controls[] = {
    {u"tabGroup", "TabControl"},
    {u"tabAlpha", "TabControl"},
    {u"lvContacts", "ListView"},
    {u"cmdSortBy", "QAbstractButton"},
    {u"cmdAddContact", "QAbstractButton"},
    {u"cmdEditContact", "QAbstractButton"},
    {u"cmdDeleteContact", "QAbstractButton"},
    {u"cmdSearch", "QAbstractButton"},
    {u"cmdPrint", "QAbstractButton"},
    {u"fraContactDetail", "QGroupBox"},
    {u"lblPhoneCaption", "QLabel"},
    {u"lblPhone", "QLabel"},
    {u"lblNoteCaption", "QLabel"},
    {u"lblNote", "QLabel"},
    {u"lblUserHeader0", "QLabel"},
    {u"lblUserHeader1", "QLabel"},
    {u"lblUserHeader2", "QLabel"},
    {u"UserData0", "QLabel"},
    {u"UserData1", "QLabel"},
    {u"UserData2", "QLabel"},
};

TEST_F(PhonebookForm, EachControlIsThereOnceOfItsTypeWithAnAccessibleName) {
    Start();
    EXPECT_EQ(Area->objectName(), QStringLiteral("fraPhoneBook"));
    for (const Named& control : Controls) {
        const auto found = Area->findChildren<QWidget*>(control.Name.toString());
        ASSERT_EQ(found.size(), 1) << control.Name.toString().toStdString();
        EXPECT_TRUE(found.first()->inherits(control.Type)) << control.Name.toString().toStdString();
        EXPECT_FALSE(found.first()->accessibleName().isEmpty()) << control.Name.toString().toStdString();
    }
}

TEST_F(PhonebookForm, TheButtonsHaveTheirToolTips) {
    Start();
    const auto tip = [this](QStringView name) { return Control<QAbstractButton>(name).toolTip(); };
    EXPECT_EQ(tip(u"cmdAddContact"), QStringLiteral(" Add New Contact "));
    EXPECT_EQ(tip(u"cmdEditContact"), QStringLiteral(" Edit Contact "));
    EXPECT_EQ(tip(u"cmdDeleteContact"), QStringLiteral(" Delete Contact "));
    EXPECT_EQ(tip(u"cmdSearch"), QStringLiteral(" Search Contacts "));
    EXPECT_EQ(tip(u"cmdPrint"), QStringLiteral(" Print Contacts "));
}

TEST_F(PhonebookForm, ButtonsWhoseWindowsAreNotThereAreGreyed) {
    Start();
    for (const QStringView name : {QStringView(u"cmdAddContact"), QStringView(u"cmdEditContact"),
                                   QStringView(u"cmdSearch"), QStringView(u"cmdPrint")}) {
        EXPECT_FALSE(Control<QAbstractButton>(name).isEnabled()) << name.toString().toStdString();
    }
    for (const QStringView name : {QStringView(u"cmdSortBy"), QStringView(u"cmdDeleteContact")}) {
        EXPECT_TRUE(Control<QAbstractButton>(name).isEnabled()) << name.toString().toStdString();
    }
}

TEST_F(PhonebookForm, TheTabKeyGoesAsTheEyeReads) {
    Start();
    QStringList order;
    const QWidget* first = &tabGroup();
    const QWidget* next = first;
    do {
        if (Area->isAncestorOf(next) && (next->focusPolicy() & Qt::TabFocus) != 0 &&
            !next->objectName().isEmpty()) {
            order.append(next->objectName());
        }
        next = next->nextInFocusChain();
    } while (next != first);
    EXPECT_EQ(order, QStringList({QStringLiteral("tabGroup"), QStringLiteral("tabAlpha"),
                                  QStringLiteral("lvContacts"), QStringLiteral("cmdSortBy"),
                                  QStringLiteral("cmdAddContact"), QStringLiteral("cmdEditContact"),
                                  QStringLiteral("cmdDeleteContact"), QStringLiteral("cmdSearch"),
                                  QStringLiteral("cmdPrint")}));
}

TEST_F(PhonebookForm, NothingIsCutAtOneAndAHalfTimesTheFont) {
    Start();
    QFont large = Area->font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    Area->setFont(large);
    Area->resize(440, 760);
    QApplication::processEvents();
    const auto widgets = Area->findChildren<QWidget*>();
    for (const QWidget* widget : widgets) {
        if (!widget->isVisible() || widget->objectName().isEmpty() ||
            widget->objectName().startsWith(u"qt_")) {
            continue;
        }
        const QRect inside(widget->mapTo(Area.get(), QPoint(0, 0)), widget->size());
        EXPECT_TRUE(Area->rect().contains(inside)) << widget->objectName().toStdString();
        EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << widget->objectName().toStdString();
    }
    for (int tab = 0; tab < tabGroup().Count(); ++tab) {
        EXPECT_TRUE(tabGroup().rect().contains(tabGroup().TabRect(tab)));
    }
}

TEST_F(PhonebookForm, TheLettersAreSpreadOverExactlyTheHeightOfTheList) {
    Start();
    for (const QSize size : {QSize(360, 520), QSize(440, 900)}) {
        Area->resize(size);
        QApplication::processEvents();
        const auto top = [this](const QWidget& control) { return control.mapTo(Area.get(), QPoint()).y(); };
        EXPECT_EQ(top(tabAlpha()), top(lvContacts()));
        EXPECT_EQ(tabAlpha().height(), lvContacts().height());
        EXPECT_EQ(tabAlpha().TabRect(0).top(), 0);
        EXPECT_EQ(tabAlpha().TabRect(tabAlpha().Count() - 1).bottom(), tabAlpha().height() - 1);
    }
}

TEST_F(PhonebookForm, ItFitsIntoTheLeftSideOfASmallWindow) {
    Start();
    EXPECT_LE(Area->minimumSizeHint().width(), 360);
    EXPECT_LE(Area->minimumSizeHint().height(), 520);
}

}  // namespace
