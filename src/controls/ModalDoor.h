#pragma once

#include <QPoint>
#include <QString>

#include <memory>

class QAction;
class QDialog;
class QMenu;
class QMimeData;
class QWidget;

/// The one way by which anything modal is shown: dialogs and popup menus. A seam, so that a test can answer.
class ModalDoor {
public:
    virtual ~ModalDoor() = default;
    /// Shows the dialog over `owner` until it hides; safe if the dialog dies meanwhile. Only the owner and
    /// its own owners take no input; without one, no window does. The key that opened it may still be held
    /// down, and must not answer it: see HeldKeyGuard.
    virtual void ShowModal(QDialog& dialog, QWidget* owner) = 0;
    /// Shows the menu at a global position; the chosen action, or null. Of the mouse's buttons only the left
    /// one chooses.
    virtual QAction* ShowMenu(QMenu& menu, const QPoint& position) = 0;
};

/// Real dialogs and menus, in a nested event loop.
class ScreenModalDoor final : public ModalDoor {
public:
    void ShowModal(QDialog& dialog, QWidget* owner) override;
    QAction* ShowMenu(QMenu& menu, const QPoint& position) override;
};

/// Drags the keys of rows (text/plain, copy only) out of `source` until they are dropped or given up: the
/// third thing that waits in a loop of its own.
void RunKeyDrag(QWidget& source, const QString& keys);
/// What such a drag carries: the keys as a text, marked as the program's own.
[[nodiscard]] std::unique_ptr<QMimeData> NewKeyData(const QString& keys);
/// True for data that is so marked. Keys mean something to lists and tabs, and nothing to whoever reads a
/// text.
[[nodiscard]] bool IsKeyData(const QMimeData& data);
