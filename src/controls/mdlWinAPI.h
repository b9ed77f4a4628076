#pragma once

class EventPump;
class QWidget;

/// Thin wrappers over what the window system offers.
namespace mdlWinAPI {

/// Drops the mouse input that is pending for a window or control and for what lies inside it: moves, presses,
/// releases and double clicks; the wheel is left alone, and so are other top-level windows. Everything else
/// that is pending is let run meanwhile, by two passes of the pump. Never throws.
///
/// For routines that show a menu or a dialog: clicks made before it was there must neither answer nor dismiss
/// it.
void FlushMouseMessages(QWidget& window, EventPump& pump);

}  // namespace mdlWinAPI
