#pragma once

class QSplitter;
class QWidget;
class Settings;

/// Where the main window lay and how it was divided when this user last closed it: settings "Window" and
/// "Splitter" of the section Display, in Base64.
namespace WindowPlace {

/// A place that is not stored, or that no screen shows any more, leaves the window at its first size.
void Restore(QWidget& window, QSplitter& splitter, const Settings& settings);
void Save(const QWidget& window, const QSplitter& splitter, Settings& settings);

}  // namespace WindowPlace
