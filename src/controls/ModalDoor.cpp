#include "controls/ModalDoor.h"

#include "controls/HeldKeyGuard.h"
#include "controls/LeftButtonOnly.h"

#include <QDialog>
#include <QDrag>
#include <QMenu>
#include <QMimeData>
#include <QPointer>

namespace {

const QString KeysFormat = QStringLiteral("application/x-larkspan-keys");

}  // namespace

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
        if (owner != nullptr) {
            dialog.setWindowModality(Qt::WindowModal);
        }
        const HeldKeyGuard heldKeys(dialog);
        dialog.exec();
    }
    if (guard != nullptr && dialog.parentWidget() != parentBefore) {
        // The dialog belongs to the caller: one that goes with its owner's window would be deleted twice.
        dialog.setParent(parentBefore, dialog.windowFlags());
    }
}

QAction* ScreenModalDoor::ShowMenu(QMenu& menu, const QPoint& position) {
    const LeftButtonOnly buttons(menu);
    return menu.exec(position);
}

void RunKeyDrag(QWidget& source, const QString& keys) {
    auto* drag = new QDrag(&source);  // Qt deletes it when the drag has ended
    drag->setMimeData(NewKeyData(keys).release());
    drag->exec(Qt::CopyAction, Qt::CopyAction);
}

std::unique_ptr<QMimeData> NewKeyData(const QString& keys) {
    auto data = std::make_unique<QMimeData>();
    data->setText(keys);
    data->setData(KeysFormat, "1");
    return data;
}

bool IsKeyData(const QMimeData& data) {
    return data.hasFormat(KeysFormat);
}
