#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <vector>

class QKeyEvent;
class QWidget;

/// One key of the main window, pressed with Alt alone: it runs an action, or does as a click on a button
/// does.
struct MainWindowKey {
    int Key = 0;  // Qt::Key
    bool IsKeypad = false;
    std::function<void()> Run;
    /// Object name of the button; a disabled one takes no click.
    QString Button;
};

/// The keys that the main window sees before its controls do. Any other key, or another modifier, passes on.
/// They work on every keyboard layout: where a key types no Latin letter or digit, its place counts.
class MainWindowKeys final : public QObject {
    Q_OBJECT
public:
    MainWindowKeys(QWidget& window, std::vector<MainWindowKey> keys);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] const MainWindowKey* Find(const QKeyEvent& event) const;
    void Do(const MainWindowKey& key);

    QWidget& m_window;
    std::vector<MainWindowKey> m_keys;
};
