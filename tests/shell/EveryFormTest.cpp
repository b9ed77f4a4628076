#include "controls/ElidedLabel.h"
#include "shell/FormTable.h"
#include "shell/FormTexts.h"
#include "shell/Look.h"

#include <QAccessible>
#include <QApplication>
#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>

#include <gtest/gtest.h>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

class EveryForm : public ::testing::TestWithParam<FormRow> {
protected:
    ~EveryForm() override { Look::Apply(Q("light")); }
    void Open() {
        Look::Apply(Q("light"));
        m_open = GetParam().Open();
        QApplication::processEvents();
    }
    QWidget& Form() { return m_open->Form(); }
    QWidget& Control(const char* name) { return *Form().findChild<QWidget*>(Q(name)); }
    /// Every widget that is seen, without the inner parts of the toolkit's own controls.
    QList<QWidget*> Seen() {
        QList<QWidget*> seen;
        const auto all = Form().findChildren<QWidget*>();
        for (QWidget* widget : all) {
            if (widget->isVisible() && !widget->objectName().startsWith(u"qt_") &&
                widget->window() == &Form()) {
                seen.append(widget);
            }
        }
        return seen;
    }
    static bool IsStop(const QWidget& widget) {
        return widget.isEnabled() && (widget.focusPolicy() & Qt::TabFocus) == Qt::TabFocus &&
               widget.focusProxy() == nullptr;
    }
    static QString NameOf(const QWidget& widget) {
        return widget.objectName().isEmpty() ? QString::fromLatin1(widget.metaObject()->className())
                                             : widget.objectName();
    }
    /// The names of the controls on which Tab stops, beginning where the form has put the focus.
    QStringList WalkWithTab() {
        QStringList walk;
        constexpr int Patience = 200;
        for (int i = 0; i < Patience && QApplication::focusWidget() != nullptr; ++i) {
            const QString name = NameOf(*QApplication::focusWidget());
            if (!walk.isEmpty() && name == walk.first() && name != walk.last()) {
                return walk;
            }
            if (walk.isEmpty() || name != walk.last()) {  // a date has several stops of its own
                walk.append(name);
            }
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        return walk;
    }
    void ExpectEnding(Qt::Key key, Ending wanted) {
        QWidget* focus = QApplication::focusWidget();
        QTest::keyClick(focus != nullptr ? focus : &Form(), key);
        EXPECT_EQ(Form().isVisible(), wanted == Ending::StaysOpen);
        if (m_open->IsCanceled().has_value()) {
            EXPECT_EQ(*m_open->IsCanceled(), wanted != Ending::Accepted);
        }
    }

private:
    std::unique_ptr<OpenForm> m_open;
};

/// Texts of one line, as the style would like to have them.
QSize NeededSize(const QWidget& widget) {
    if (const auto* button = qobject_cast<const QPushButton*>(&widget)) {
        // Its smallest size is the style's taste, and its word is what matters.
        constexpr int Margin = 4;
        const int icon = button->icon().isNull() ? 0 : button->iconSize().width() + Margin;
        QString word = button->text();
        return {button->fontMetrics().horizontalAdvance(word.remove(u'&')) + icon + 2 * Margin,
                button->fontMetrics().height() + Margin};
    }
    if (const auto* line = qobject_cast<const QLineEdit*>(&widget)) {
        constexpr int Margins = 12;
        const int hint = line->fontMetrics().horizontalAdvance(line->placeholderText());
        return line->minimumSizeHint().expandedTo(QSize(hint + Margins, 0));
    }
    // Buttons that let go of their word, and labels that shorten theirs, say so by their smallest size.
    return widget.minimumSizeHint();
}

bool IsText(const QWidget& widget) {
    return FormTypes::Is<QAbstractButton>(&widget) || FormTypes::Is<QLabel>(&widget) ||
           FormTypes::Is<QLineEdit>(&widget) || FormTypes::Is<QGroupBox>(&widget) ||
           widget.inherits("QAbstractSpinBox") || widget.inherits("QComboBox");
}

/// Takes a larger font for the whole application while it lives.
class LargerFont {
public:
    explicit LargerFont(double factor) : m_before(QApplication::font()) {
        QFont larger = m_before;
        larger.setPointSizeF(m_before.pointSizeF() * factor);
        QApplication::setFont(larger);
    }
    ~LargerFont() { QApplication::setFont(m_before); }
    LargerFont(const LargerFont&) = delete;
    LargerFont& operator=(const LargerFont&) = delete;

private:
    QFont m_before;
};

}  // namespace

TEST_P(EveryForm, HasEachOfItsControlsOnceAndOfItsType) {
    Open();
    EXPECT_EQ(Form().objectName(), Q(GetParam().Name));
    for (const FormControl& control : GetParam().Controls) {
        const auto found = Form().findChildren<QWidget*>(Q(control.Name));
        ASSERT_EQ(found.size(), 1) << control.Name;
        EXPECT_TRUE(control.IsType(found.first()))
            << control.Name << " is a " << found.first()->metaObject()->className();
    }
}

TEST_P(EveryForm, TellsAScreenReaderTheNameOfEachOfItsControls) {
    Open();
    for (const FormControl& control : GetParam().Controls) {
        const QAccessibleInterface* voice = QAccessible::queryAccessibleInterface(&Control(control.Name));
        ASSERT_NE(voice, nullptr) << control.Name;
        EXPECT_FALSE(voice->text(QAccessible::Name).trimmed().isEmpty()) << control.Name;
    }
}

TEST_P(EveryForm, TellsAScreenReaderTheNameOfWhateverTakesInput) {
    Open();
    int controls = 0;
    for (QWidget* widget : Seen()) {
        if (IsStop(*widget) || FormTypes::Is<QAbstractButton>(widget)) {
            const QAccessibleInterface* voice = QAccessible::queryAccessibleInterface(widget);
            ASSERT_NE(voice, nullptr) << NameOf(*widget).toStdString();
            EXPECT_FALSE(voice->text(QAccessible::Name).trimmed().isEmpty()) << NameOf(*widget).toStdString();
            ++controls;
        }
    }
    const auto isStop = [](const FormControl& control) { return control.IsStop; };
    EXPECT_GE(controls, std::count_if(GetParam().Controls.begin(), GetParam().Controls.end(), isStop));
}

TEST_P(EveryForm, IsWalkedByTabAsTheEyeReadsAndNothingIsLeftOut) {
    Open();
    QStringList wanted;
    for (const FormControl& control : GetParam().Controls) {
        if (control.IsStop) {
            wanted.append(Q(control.Name));
        }
    }
    QStringList walk = WalkWithTab();
    const auto first = static_cast<qsizetype>(wanted.isEmpty() ? 0 : walk.indexOf(wanted.first()));
    ASSERT_GE(first, 0) << walk.join(u' ').toStdString();
    std::rotate(walk.begin(), walk.begin() + first, walk.end());
    EXPECT_EQ(walk, wanted) << walk.join(u' ').toStdString();
    for (const QWidget* widget : Seen()) {
        EXPECT_TRUE(!IsStop(*widget) || walk.contains(NameOf(*widget))) << NameOf(*widget).toStdString();
    }
}

TEST_P(EveryForm, StandsInTheOrderInWhichTabWalksIt) {
    Open();
    const QWidget* before = nullptr;
    for (const FormControl& control : GetParam().Controls) {
        const QWidget& here = Control(control.Name);
        if (!control.IsStop) {
            continue;
        }
        if (before != nullptr && before->parentWidget() == here.parentWidget()) {
            const QRect one = before->geometry();
            const QRect other = here.geometry();
            const bool isBeside = one.top() <= other.bottom() && other.top() <= one.bottom();
            EXPECT_TRUE(isBeside ? one.left() < other.left() : one.bottom() < other.top())
                << before->objectName().toStdString() << " and " << control.Name;
        }
        before = &here;
    }
}

TEST_P(EveryForm, GivesNoMnemonicTwice) {
    Open();
    QHash<QChar, QString> owners;
    for (const QWidget* widget : Seen()) {
        const QChar mnemonic = MnemonicOf(*widget);
        if (!mnemonic.isNull()) {
            EXPECT_TRUE(!owners.contains(mnemonic) || Q(GetParam().SharedMnemonics).contains(mnemonic))
                << NameOf(*widget).toStdString() << " and " << owners.value(mnemonic).toStdString();
            owners.insert(mnemonic, NameOf(*widget));
        }
    }
}

TEST_P(EveryForm, CutsNothingAtOneAndAHalfTimesTheFont) {
    const LargerFont larger(1.5);
    Open();
    constexpr int IconAndButtons = 25;  // in characters
    const int characters = static_cast<int>(Form().windowTitle().size()) + IconAndButtons;
    const int title = Form().fontMetrics().averageCharWidth() * characters;
    EXPECT_TRUE(Form().windowType() == Qt::SplashScreen || Form().minimumWidth() >= title ||
                Form().minimumSizeHint().width() >= title);
    int texts = 0;
    for (const QWidget* widget : Seen()) {
        const std::string name = NameOf(*widget).toStdString();
        if (!IsText(*widget)) {
            continue;
        }
        ++texts;
        EXPECT_EQ(widget->visibleRegion().boundingRect(), widget->rect()) << name << " is covered";
        EXPECT_GE(widget->width(), NeededSize(*widget).width()) << name;
        EXPECT_GE(widget->height(), NeededSize(*widget).height()) << name;
        EXPECT_GE(widget->height(), widget->heightForWidth(widget->width())) << name;
    }
    EXPECT_GE(texts, 1);
}

TEST_P(EveryForm, IsAnsweredByEnterAsItsRulesSay) {
    Open();
    ExpectEnding(Qt::Key_Return, GetParam().Enter);
}

TEST_P(EveryForm, IsGivenUpByEscapeAsItsRulesSay) {
    Open();
    ExpectEnding(Qt::Key_Escape, GetParam().Escape);
}

TEST_P(EveryForm, MarksTheOneButtonThatEnterPresses) {
    Open();
    QStringList defaults;
    const auto buttons = Form().findChildren<QPushButton*>();
    for (QPushButton* button : buttons) {
        if (button->isDefault()) {
            defaults.append(button->objectName());
            const QImage marked = button->grab().toImage();
            button->setDefault(false);
            EXPECT_NE(marked, button->grab().toImage()) << button->objectName().toStdString();
        }
    }
    const char* wanted = GetParam().DefaultButton;
    EXPECT_EQ(defaults, wanted != nullptr ? QStringList{Q(wanted)} : QStringList());
}

TEST_P(EveryForm, CanBeReadInBothPalettes) {
    Open();
    for (const char* palette : {"light", "dark"}) {
        Look::Apply(Q(palette));
        QApplication::processEvents();
        const QImage picture = FinePictureOf(Form());
        const QList<FormText> texts = TextsOf(Form());
        EXPECT_FALSE(texts.isEmpty());
        for (const FormText& text : texts) {
            EXPECT_GE(ContrastIn(picture, text.Place), text.Contrast)
                << text.Owner.toStdString() << ' ' << palette;
        }
    }
}

TEST_P(EveryForm, ShowsWhereTheKeyboardIs) {
    Open();
    QTest::keyClick(&Form(), Qt::Key_Tab);  // the mark is for those who use the keyboard
    for (const FormControl& named : GetParam().Controls) {
        QWidget& control = Control(named.Name);
        if (!named.IsStop) {
            continue;
        }
        control.setFocus(Qt::TabFocusReason);
        const QImage with = control.grab().toImage();
        control.clearFocus();
        EXPECT_NE(with, control.grab().toImage()) << named.Name;
    }
}

INSTANTIATE_TEST_SUITE_P(Of, EveryForm, ::testing::ValuesIn(FormTable()),
                         [](const auto& row) { return row.param.Name; });

TEST(FormTable, HasARowForEveryFormOfTheProgram) {
    QStringList known;
    for (const FormRow& row : FormTable()) {
        known.append(QString::fromLatin1(row.Open()->Form().metaObject()->className()));
    }
    const QRegularExpression form(Q(R"(class (\w+)(?: final)? : public (?:QDialog|QMainWindow|QWizard)\b)"
                                    R"(|class (frm\w+)(?: final)? : )"));
    int forms = 0;
    QDirIterator walk(Q(SOURCE_FOLDER), {Q("*.h")}, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        QFile file(walk.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(file.readAll());
        for (auto match = form.globalMatch(text); match.hasNext(); ++forms) {
            const auto found = match.next();
            const QString name = found.captured(1) + found.captured(2);
            EXPECT_TRUE(known.contains(name)) << name.toStdString() << " has no row in FormTable.cpp";
        }
    }
    EXPECT_EQ(forms, known.size());
}
