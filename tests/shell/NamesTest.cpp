#include "shell/MainWindow.h"

#include "addressbook/PhonebookArea.h"
#include "compose/ComposeArea.h"
#include "controls/ListView.h"
#include "controls/TabControl.h"
#include "shell/AdBanner.h"
#include "shell/AlertStrip.h"
#include "shell/CommandStrip.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

/// A control as the rest of the system finds it: name, type, the area that owns it, and the key by which the
/// focus gets there (0: by Tab; -1: it takes no focus).
struct Named {
    const char* Name;
    bool (*IsType)(const QObject*);
    bool (*IsOwner)(const QObject*);
    int Key;
};

template <typename Type>
bool Is(const QObject* object) {
    return dynamic_cast<const Type*>(object) != nullptr;
}
bool IsTextBox(const QObject* object) {
    return Is<QPlainTextEdit>(object) || Is<QTextEdit>(object);
}
bool IsFrame(const QObject* object) {
    return Is<QFrame>(object) || Is<QGroupBox>(object);
}

constexpr int NoFocus = -1;
constexpr auto Book = &Is<PhonebookArea>;
constexpr auto Compose = &Is<ComposeArea>;
constexpr auto Commands = &Is<CommandStrip>;
constexpr auto Alert = &Is<AlertStrip>;
constexpr auto Button = &Is<QAbstractButton>;
constexpr auto Label = &Is<QLabel>;

const std::vector<Named> Contract = {
    {"txtMessage", IsTextBox, Compose, Qt::Key_M},
    {"txtEndWidth", &Is<QLineEdit>, Compose, 0},
    {"cbTails", &Is<QComboBox>, Compose, 0},
    {"pbMsgSize", &Is<QWidget>, Compose, NoFocus},
    {"lblCharsRemaining", Label, Compose, NoFocus},
    {"lblSMSPageCount", Label, Compose, NoFocus},
    {"lblUsed", Label, Compose, NoFocus},
    {"cmdClearMessage", Button, Compose, 0},
    {"lvRecipients", &Is<ListView>, Compose, Qt::Key_R},
    {"cmdClearRecipients", Button, Compose, 0},
    {"fraRecipients", IsFrame, Compose, NoFocus},
    {"fraMessage", IsFrame, Compose, NoFocus},
    {"fraTail", IsFrame, Compose, NoFocus},
    {"fraSendButtons", IsFrame, Compose, NoFocus},
    {"cmdSendNow", Button, Compose, 0},
    {"cmdSendLater", Button, Compose, 0},
    {"cmdQuickFire0", Button, Compose, 0},
    {"cmdQuickFire1", Button, Compose, 0},
    {"cmdQuickFire2", Button, Compose, 0},
    {"cmdQuickFire3", Button, Compose, 0},
    {"cmdQuickFire4", Button, Compose, 0},
    {"cmdQuickFire5", Button, Compose, 0},
    {"cmdQuickFire6", Button, Compose, 0},
    {"cmdQuickFire7", Button, Compose, 0},
    {"cmdQuickFire8", Button, Compose, 0},
    {"cmdQuickFire9", Button, Compose, 0},
    {"cmdQBPrevious", Button, Compose, 0},
    {"cmdNextQBPage", Button, Compose, 0},
    {"fraPhoneBook", IsFrame, Book, NoFocus},
    {"tabGroup", &Is<TabControl>, Book, 0},
    {"tabAlpha", &Is<TabControl>, Book, 0},
    {"cmdSortBy", Button, Book, 0},
    {"lvContacts", &Is<ListView>, Book, Qt::Key_C},
    {"fraContactDetail", IsFrame, Book, NoFocus},
    {"lblPhone", Label, Book, NoFocus},
    {"lblPhoneCaption", Label, Book, NoFocus},
    {"lblNote", Label, Book, NoFocus},
    {"lblNoteCaption", Label, Book, NoFocus},
    {"lblUserHeader0", Label, Book, NoFocus},
    {"lblUserHeader1", Label, Book, NoFocus},
    {"lblUserHeader2", Label, Book, NoFocus},
    {"UserData0", Label, Book, NoFocus},
    {"UserData1", Label, Book, NoFocus},
    {"UserData2", Label, Book, NoFocus},
    {"cmdAddContact", Button, Book, 0},
    {"cmdEditContact", Button, Book, 0},
    {"cmdDeleteContact", Button, Book, 0},
    {"cmdSearch", Button, Book, 0},
    {"cmdPrint", Button, Book, 0},
    {"imgAd", &Is<AdBanner>, Commands, NoFocus},
    {"cmdHistory", Button, Commands, 0},
    {"cmdReports", Button, Commands, 0},
    {"cmdConfig", Button, Commands, 0},
    {"cmdAbout", Button, Commands, 0},
    {"cmdMinimize", Button, Commands, 0},
    {"cmdExit", Button, Commands, 0},
    {"lblFailureWarning", Button, Alert, 0},
};

/// Buttons whose windows are not part of the program yet.
const QStringList Later = {
    QStringLiteral("cmdHistory"),     QStringLiteral("cmdReports"),   QStringLiteral("cmdConfig"),
    QStringLiteral("cmdAbout"),       QStringLiteral("cmdMinimize"),  QStringLiteral("cmdAddContact"),
    QStringLiteral("cmdEditContact"), QStringLiteral("cmdSearch"),    QStringLiteral("cmdPrint"),
    QStringLiteral("cmdQBPrevious"),  QStringLiteral("cmdNextQBPage")};

bool IsInside(const QWidget* widget, bool (*isOwner)(const QObject*)) {
    for (const QWidget* at = widget; at != nullptr; at = at->parentWidget()) {
        if (isOwner(at)) {
            return true;
        }
    }
    return false;
}

/// What the accessibility of the toolkit can say of a label by itself is its text.
QString SpokenName(const QWidget& widget) {
    if (!widget.accessibleName().isEmpty()) {
        return widget.accessibleName();
    }
    const auto* label = qobject_cast<const QLabel*>(&widget);
    const auto* group = qobject_cast<const QGroupBox*>(&widget);
    return label != nullptr ? label->text() : group != nullptr ? group->title() : QString();
}

}  // namespace

TEST(Names, EachControlIsThereOnceInItsAreaAndOfItsType) {
    MainWindow window;
    window.Open();
    for (const Named& named : Contract) {
        const auto found = window.Form->findChildren<QWidget*>(QString::fromLatin1(named.Name));
        ASSERT_EQ(found.size(), 1) << named.Name;
        EXPECT_TRUE(named.IsType(found.first()))
            << named.Name << " is a " << found.first()->metaObject()->className();
        EXPECT_TRUE(IsInside(found.first(), named.IsOwner)) << named.Name;
    }
}

TEST(Names, EachControlThatTakesTheFocusHasAnAccessibleName) {
    MainWindow window;
    window.Open();
    for (const Named& named : Contract) {
        const QWidget* control = window.Find(named.Name);
        ASSERT_NE(control, nullptr);
        const bool isValue =
            QByteArray(named.Name).startsWith("lbl") || QByteArray(named.Name).startsWith("User");
        if (named.Key != NoFocus || !isValue) {
            const bool isPlainFrame = named.Key == NoFocus && !isValue && SpokenName(*control).isEmpty();
            EXPECT_TRUE(!SpokenName(*control).isEmpty() || isPlainFrame) << named.Name;
        }
        if (named.Key != NoFocus) {
            EXPECT_FALSE(SpokenName(*control).isEmpty()) << named.Name;
        }
    }
}

TEST(Names, EachControlIsReachedByTabOrByItsKey) {
    MainWindow window;
    window.Open();
    window.Form->ShowAlert(true);
    for (const Named& named : Contract) {
        auto* control = window.Find(named.Name);
        ASSERT_NE(control, nullptr);
        if (named.Key == NoFocus) {
            continue;
        }
        if (named.Key != 0) {
            window.Find("cmdExit")->setFocus();
            window.AltKey(static_cast<Qt::Key>(named.Key));
            EXPECT_TRUE(control->hasFocus() || control->isAncestorOf(QApplication::focusWidget()))
                << named.Name;
        }
        control->setEnabled(true);  // one that joins later is reached too, once it can be used
        EXPECT_TRUE((control->focusPolicy() & Qt::TabFocus) == Qt::TabFocus) << named.Name;
    }
}

TEST(Names, TimersHaveTheirIntervalsAndAreOffAtLoad) {
    MainWindow window;
    window.Open();
    const auto* poll = window.Form->findChild<QTimer*>(QStringLiteral("tmrCheckMsgStatus"));
    const auto* ads = window.Form->findChild<QTimer*>(QStringLiteral("tmrAdupdate"));
    ASSERT_NE(poll, nullptr);
    ASSERT_NE(ads, nullptr);
    EXPECT_EQ(poll->interval(), 5000);
    EXPECT_EQ(ads->interval(), 20000);
    EXPECT_FALSE(poll->isActive());
    EXPECT_FALSE(ads->isActive());
    window.Form->StartTracking();
    EXPECT_TRUE(poll->isActive());
    EXPECT_FALSE(ads->isActive()) << "nothing starts it";
}

TEST(Names, ButtonsWhoseWindowsComeLaterAreThereAndDisabled) {
    MainWindow window;
    window.Open();
    for (const QString& name : Later) {
        EXPECT_FALSE(window.Find(name.toLatin1().constData())->isEnabled()) << name.toStdString();
    }
    EXPECT_TRUE(window.Find("cmdExit")->isEnabled());
}

TEST(Names, EveryButtonHasAnIconOrAWordAndAToolTipInTheStrip) {
    MainWindow window;
    window.Open();
    for (const char* name : {"cmdHistory", "cmdReports", "cmdConfig", "cmdAbout", "cmdMinimize", "cmdExit"}) {
        const auto* button = window.Find<QAbstractButton>(name);
        ASSERT_NE(button, nullptr);
        EXPECT_FALSE(button->icon().isNull()) << name;
        EXPECT_FALSE(button->text().isEmpty()) << name;
        EXPECT_FALSE(button->toolTip().trimmed().isEmpty()) << name;
    }
}
