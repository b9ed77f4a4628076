#include "platform_ui/QtMessageBoxes.h"

#include "controls/Icons.h"
#include "controls/ModalDoor.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPointer>

#include <algorithm>

namespace {

constexpr int PictureSide = 40;

/// The program's own drawing, sharp on the screen of `window`; null for no picture.
QPixmap PictureOf(BoxIcon icon, const QWidget& window) {
    const auto draw = [&window](const QString& name) {
        return Icons::Get(name).pixmap(QSize(PictureSide, PictureSide), window.devicePixelRatioF());
    };
    switch (icon) {
        case BoxIcon::Information:
            return draw(QStringLiteral("info"));
        case BoxIcon::Question:
            return draw(QStringLiteral("question"));
        case BoxIcon::Critical:
            return draw(QStringLiteral("critical"));
        case BoxIcon::None:
            break;
    }
    return {};
}

/// The box belongs over a dialog that is open, else over the window in use, else (while another program is in
/// use, say) over any window of ours, so that it cannot be lost behind it.
QWidget* OwnerWindow() {
    if (QWidget* const modal = QApplication::activeModalWidget(); modal != nullptr) {
        return modal;
    }
    if (QWidget* const active = QApplication::activeWindow(); active != nullptr) {
        return active;
    }
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto shown = std::find_if(windows.cbegin(), windows.cend(), [](const QWidget* window) {
        // Not the icon's own window in the tray: nobody sees what stands over it.
        return window->isVisible() && window->windowType() == Qt::Window &&
               !window->windowFlags().testAnyFlags(Qt::BypassWindowManagerHint | Qt::FramelessWindowHint);
    });
    return shown != windows.cend() ? *shown : nullptr;
}

BoxAnswer AnswerOf(const QMessageBox* box, BoxButtons buttons) {
    if (buttons == BoxButtons::Ok) {
        return BoxAnswer::Ok;
    }
    const bool isYes = box != nullptr && box->clickedButton() != nullptr &&
                       box->standardButton(box->clickedButton()) == QMessageBox::Yes;
    return isYes ? BoxAnswer::Yes : BoxAnswer::No;
}

}  // namespace

BoxAnswer QtMessageBoxes::Show(const BoxRequest& request) {
    // The box may go with its owner's window while it is open, so it is guarded and not held by value.
    const QPointer<QMessageBox> box(new QMessageBox);
    box->setObjectName(QStringLiteral("MessageBox"));
    box->setWindowTitle(request.Title);
    // Plain: a name or an engine's error text may look like markup.
    box->setTextFormat(Qt::PlainText);
    box->setText(QString(request.Text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
    QWidget* const owner = OwnerWindow();
    box->setIconPixmap(PictureOf(request.Icon, owner != nullptr ? *owner : *box));
    if (request.Buttons == BoxButtons::YesNo) {
        box->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box->setDefaultButton(QMessageBox::No);
        box->setEscapeButton(QMessageBox::No);
    } else {
        box->setStandardButtons(QMessageBox::Ok);
    }
    m_door.ShowModal(*box, owner);
    const BoxAnswer answer = AnswerOf(box, request.Buttons);
    delete box.data();
    return answer;
}
