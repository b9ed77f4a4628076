#pragma once

class QWidget;

/// The one background colour of the main window: that of the tab control, on the form and on those of its
/// controls that stand flat on it.
namespace FormColours {

/// Gives the colour of the control tabGroup below `form` to `form` and to the controls that share it. A
/// control that is not there is passed over.
void Apply(QWidget& form);

}  // namespace FormColours
