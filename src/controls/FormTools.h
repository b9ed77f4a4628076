#pragma once

#include <QString>

class QWidget;

/// What every form does with its texts. A control's text is its property "text", or "title" (frames) or
/// "plainText".
namespace FormTools {

/// Replaces "{APP}", "{SUITE}" and "{YEAR}" (`year`, four digits) in every control below `form` and in the
/// form's title; a text without placeholders is not written.
void ExpandPlaceholders(QWidget& form, int year);
/// The same for one control.
void ExpandControl(QWidget& control, int year);
/// The two characters "\n" become a line break in every label below `form`.
void BreakLines(QWidget& form);

/// Window title: `indent` blanks, the product's title, and " - " and `title` unless that is empty.
void SetFormCaption(QWidget& form, const QString& title, int indent = 0);
/// Makes the form at least so wide that a window manager shows its whole title beside the buttons of the
/// title bar.
void KeepTitleWhole(QWidget& form);

/// Selection over the whole text of a line or text edit; focus if asked. Another control has nothing to
/// select, and gets the focus all the same.
void SelectAllText(QWidget& control, bool setFocus);
/// Caret behind the text of a line or text edit, nothing selected; focus for every control.
void CaretToEnd(QWidget& control);

}  // namespace FormTools
