#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <vector>

class QKeyEvent;
class QWidget;

/// One key of the main window: pressed with Alt alone it runs its action.
struct MainWindowKey {
    int Key = 0;  // Qt::Key
    bool IsKeypad = false;
    std::function<void()> Run;
};

/// The keys that the main window sees before its controls do. Any other key, or another modifier, passes on.
class MainWindowKeys final : public QObject {
    Q_OBJECT
public:
    MainWindowKeys(QWidget& window, std::vector<MainWindowKey> keys);

    [[nodiscard]] const std::vector<MainWindowKey>& Keys() const { return m_keys; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] const MainWindowKey* Find(const QKeyEvent& event) const;

    QWidget& m_window;
    std::vector<MainWindowKey> m_keys;
};
