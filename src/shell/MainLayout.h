#pragma once

#include <QObject>

class KeySplitter;
class QWidget;
class Settings;

/// Where the areas of the main window stand: the strip of buttons above, the two areas side by side with a
/// bar between them that can be moved (by keyboard after F8), the warning below the right one. Remembers size
/// and division for the user: settings "Window" and "Splitter" of the section Display, in Base64.
class MainLayout final : public QObject {
public:
    /// Takes the children over into the form, in the order in which Tab visits them.
    MainLayout(QWidget& form, QWidget* top, QWidget* left, QWidget* right, QWidget* bottom);

    /// Gives every area its size now, not at the first showing.
    void Activate();
    /// A place that is not stored, or that no screen shows any more, leaves the window at its first size.
    void Restore(const Settings& settings);
    /// Writes size and division of this moment.
    void Save(Settings& settings) const;

private:
    QWidget& m_form;
    KeySplitter* m_splitter;
};
