#include "controls/FormTools.h"

#include "core/Product.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QVariant>
#include <QWidget>

namespace {

QString Expanded(QString text, int year) {
    return text.replace(QStringLiteral("{APP}"), Product::AppTitle)
        .replace(QStringLiteral("{SUITE}"), Product::SuiteTitle)
        .replace(QStringLiteral("{YEAR}"), QStringLiteral("%1").arg(year, 4, 10, QLatin1Char('0')));
}

/// Where a control keeps its text: the first of these properties that is not empty.
const char* TextPropertyOf(const QWidget& control) {
    for (const char* name : {"text", "title", "plainText"}) {
        if (!control.property(name).toString().isEmpty()) {
            return name;
        }
    }
    return nullptr;
}

template <typename Edit>
bool MoveCaretToEnd(QWidget& control) {
    auto* edit = qobject_cast<Edit*>(&control);
    if (edit != nullptr) {
        edit->moveCursor(QTextCursor::End);
    }
    return edit != nullptr;
}

}  // namespace

void FormTools::ExpandPlaceholders(QWidget& form, int year) {
    const QString title = Expanded(form.windowTitle(), year);
    if (title != form.windowTitle()) {
        form.setWindowTitle(title);
    }
    const QList<QWidget*> controls = form.findChildren<QWidget*>();
    for (QWidget* control : controls) {
        ExpandControl(*control, year);
    }
}

void FormTools::ExpandControl(QWidget& control, int year) {
    const char* name = TextPropertyOf(control);
    if (name == nullptr) {
        return;
    }
    const QString text = control.property(name).toString();
    const QString expanded = Expanded(text, year);
    if (expanded != text) {
        control.setProperty(name, expanded);
    }
}

void FormTools::BreakLines(QWidget& form) {
    const QList<QLabel*> labels = form.findChildren<QLabel*>();
    for (QLabel* label : labels) {
        if (label->text().contains(QStringLiteral("\\n"))) {
            label->setText(label->text().replace(QStringLiteral("\\n"), QStringLiteral("\n")));
        }
    }
}

void FormTools::SetFormCaption(QWidget& form, const QString& title, int indent) {
    const QString suffix = title.isEmpty() ? QString() : QStringLiteral(" - ") + title;
    form.setWindowTitle(QString(indent, u' ') + Product::AppTitle + suffix);
}

void FormTools::SelectAllText(QWidget& control, bool setFocus) {
    if (auto* line = qobject_cast<QLineEdit*>(&control)) {
        line->selectAll();
    } else if (auto* plain = qobject_cast<QPlainTextEdit*>(&control)) {
        plain->selectAll();
    } else if (auto* rich = qobject_cast<QTextEdit*>(&control)) {
        rich->selectAll();
    }
    if (setFocus) {
        control.setFocus();
    }
}

void FormTools::CaretToEnd(QWidget& control) {
    if (auto* line = qobject_cast<QLineEdit*>(&control)) {
        line->end(false);
    } else if (!MoveCaretToEnd<QPlainTextEdit>(control)) {
        MoveCaretToEnd<QTextEdit>(control);
    }
    control.setFocus();
}

void FormTools::KeepTitleWhole(QWidget& form) {
    // In characters: the window's icon, its buttons, and titles that are set in bold.
    constexpr int RoomBesideTitle = 30;
    form.setMinimumWidth(form.fontMetrics().averageCharWidth() *
                         (static_cast<int>(form.windowTitle().size()) + RoomBesideTitle));
}
