#pragma once

class QWidget;
struct Machine;
struct PhonebookState;

/// The about box as the main window shows it.
namespace AboutBox {

/// Modally over `owner`, which is painted anew afterwards.
void Show(QWidget& owner, const Machine& machine, const PhonebookState& phonebook);

}  // namespace AboutBox
