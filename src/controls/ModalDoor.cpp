#include "controls/ModalDoor.h"

#include "controls/HeldKeyGuard.h"

#include <QDialog>
#include <QDrag>
#include <QMenu>
#include <QMimeData>
#include <QPointer>

void ScreenModalDoor::ShowModal(QDialog& dialog, QWidget* owner) {
    const QPointer<QDialog> guard(&dialog);
    QWidget* parentBefore = dialog.parentWidget();
    if (owner != nullptr && dialog.parentWidget() != owner) {
        const QPoint place = dialog.pos();
        const bool isPlaced = dialog.testAttribute(Qt::WA_Moved);
        dialog.setParent(owner, dialog.windowFlags());
        if (isPlaced) {
            dialog.move(place);
        }
    }
    {
        const HeldKeyGuard heldKeys(dialog);
        dialog.exec();
    }
    if (guard != nullptr && dialog.parentWidget() != parentBefore) {
        // The dialog belongs to the caller: one that goes with its owner's window would be deleted twice.
        dialog.setParent(parentBefore, dialog.windowFlags());
    }
}

QAction* ScreenModalDoor::ShowMenu(QMenu& menu, const QPoint& position) {
    return menu.exec(position);
}

void RunTextDrag(QWidget& source, const QString& text) {
    auto* data = new QMimeData;
    data->setText(text);
    auto* drag = new QDrag(&source);  // Qt deletes it when the drag has ended
    drag->setMimeData(data);
    drag->exec(Qt::CopyAction, Qt::CopyAction);
}
