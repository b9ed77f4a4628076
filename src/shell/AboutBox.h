#pragma once

#include <QtGlobal>

class QWidget;
struct Machine;

/// The about box as the main window shows it.
namespace AboutBox {

/// Modally over `owner`, which is painted anew afterwards. `phonebookVersion` is cfgVersion.
void Show(QWidget& owner, const Machine& machine, qint32 phonebookVersion);

}  // namespace AboutBox
