#include "shell/FormColours.h"

#include <QApplication>
#include <QPalette>
#include <QWidget>

namespace {

/// Labels and frames show what is behind them; the two input boxes would have a ground of their own.
const QStringList FlatControls = {
    QStringLiteral("fraPhoneBook"),   QStringLiteral("fraContactDetail"), QStringLiteral("lblPhoneCaption"),
    QStringLiteral("lblPhone"),       QStringLiteral("lblNoteCaption"),   QStringLiteral("lblNote"),
    QStringLiteral("lblUserHeader0"), QStringLiteral("lblUserHeader1"),   QStringLiteral("lblUserHeader2"),
    QStringLiteral("UserData0"),      QStringLiteral("UserData1"),        QStringLiteral("UserData2"),
    QStringLiteral("fraRecipients"),  QStringLiteral("fraMessage"),       QStringLiteral("fraTail"),
    QStringLiteral("txtEndWidth"),    QStringLiteral("cbTails"),          QStringLiteral("fraSendButtons"),
    QStringLiteral("pbMsgSize"),      QStringLiteral("lblCharsRemaining")};

void Give(QWidget& control, const QColor& colour) {
    QPalette palette = control.palette();
    palette.setColor(QPalette::Window, colour);
    if (control.objectName() == QStringLiteral("txtEndWidth") ||
        control.objectName() == QStringLiteral("cbTails")) {
        palette.setColor(QPalette::Base, colour);
        palette.setColor(QPalette::Button, colour);
    }
    control.setPalette(palette);
}

}  // namespace

void FormColours::Apply(QWidget& form) {
    const auto* tabs = form.findChild<QWidget*>(QStringLiteral("tabGroup"));
    if (tabs == nullptr) {
        return;
    }
    // Its own, not one that it inherits from a control that was given a colour here.
    const QColor colour = QApplication::palette(tabs).color(QPalette::Window);
    Give(form, colour);
    for (const QString& name : FlatControls) {
        if (auto* control = form.findChild<QWidget*>(name)) {
            Give(*control, colour);
        }
    }
}
