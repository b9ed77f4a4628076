#include "shell/DeliveryArea.h"

#include "app/AppContext.h"
#include "controls/Icons.h"
#include "controls/PopupControl.h"
#include "shell/AlertStrip.h"
#include "shell/StatusPoll.h"

#include <utility>

namespace {

/// Closes at a click.
PopupControl* NewFeedback(QWidget& form, std::function<QRect()> trayPlace) {
    auto* popup = new PopupControl(&form);
    popup->setObjectName(QStringLiteral("pucFeedback"));
    QList<QIcon> images;
    for (const char* name : {"canceled", "delivered", "undelivered", "unconfirmed", "unknown"}) {
        images.append(Icons::Get(QStringLiteral("tracker-") + QString::fromLatin1(name)));
    }
    popup->SetImages(images);
    popup->SetTrayPlace(std::move(trayPlace));
    QObject::connect(popup, &PopupControl::ItemClicked, popup, &PopupControl::Close);
    return popup;
}

}  // namespace

DeliveryArea::DeliveryArea(AppContext& context, QWidget& form, std::function<void()> showAlert,
                           std::function<QRect()> trayPlace)
    : m_context(context),
      m_alert(new AlertStrip),
      m_poll(new StatusPoll(context.AppBusyState, context.MessageTracker, std::move(showAlert), &form)),
      m_popup(NewFeedback(form, std::move(trayPlace))) {}

QWidget* DeliveryArea::Alert() const {
    return m_alert;
}

void DeliveryArea::ShowAlert(bool show) {
    m_alert->ShowAlert(show);
}

void DeliveryArea::CreateTracker(TrayBalloon* trayIcon) {
    m_context.CreateTracker(trayIcon, m_popup);
}

void DeliveryArea::Release() {
    m_context.ReleaseTracker();
}

void DeliveryArea::StartPoll() {
    m_poll->Start();
}

void DeliveryArea::StopPoll() {
    m_poll->Stop();
}
