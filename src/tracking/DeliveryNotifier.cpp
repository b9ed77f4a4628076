#include "tracking/DeliveryNotifier.h"

#include "core/TextRules.h"
#include "core/Trap.h"
#include "platform/Notices.h"
#include "platform/PopupSurface.h"
#include "platform/Sound.h"
#include "platform/SuppliedFiles.h"
#include "store/Outbox.h"

namespace {

// Pixels of the popup.
constexpr int PopupWidth = 320;
constexpr int FirstHeight = 100;
constexpr int FirstTop = 17;
constexpr int EntryGap = 5;
constexpr int LineGap = 2;
constexpr int IconLeft = 5;
constexpr int IconSide = 30;
constexpr int TextLeft = 40;
constexpr int TextMargin = 60;
constexpr int DelimiterMargin = 20;
constexpr int BottomMargin = 10;
constexpr int ShowDelay = 10000;  // ms
constexpr int BalloonTime = 4;    // of the tray's own measure
constexpr unsigned DelimiterColour = 0xFFFFFF;
constexpr qint32 Canceled = 2;
constexpr qint32 Delivered = 5;
constexpr qint32 Unconfirmed = 6;
constexpr qint32 NotDelivered = 7;
constexpr int Hexadecimal = 16;

/// How a status is told.
struct StatusShow {
    QString Title;
    BalloonIcon Icon = BalloonIcon::Warning;
    int Image = 5;  // of imgTrackerStatus
    bool IsFailure = false;
};

StatusShow ShowOf(qint32 status) {
    switch (status) {
        case Canceled:
            return {QStringLiteral("SMS Canceled"), BalloonIcon::Warning, 1, true};
        case Delivered:
            return {QStringLiteral("SMS Delivered"), BalloonIcon::Information, 2, false};
        case Unconfirmed:
            return {QStringLiteral("SMS Delivered"), BalloonIcon::Information, 4, false};
        case NotDelivered:
            return {QStringLiteral("SMS NOT Delivered"), BalloonIcon::Error, 3, true};
        default:
            return {QStringLiteral("SMS Status Unknown"), BalloonIcon::Warning, 5, false};
    }
}

bool IsReady(const MessageTracker::Slot& slot) {
    return slot.msgID != 0 && mdlOutbox::IsMessageFinal(slot.status);
}

}  // namespace

void DeliveryNotifier::SetPopup(PopupSurface* popup) {
    m_popup = popup;
    if (popup == nullptr) {
        return;
    }
    popup->SetSize(PopupWidth, FirstHeight);
    popup->SetShowDelay(ShowDelay);
    constexpr int TestSide = 30;
    PopupItem& item = popup->AddItem(0, 0, TestSide, TestSide, QStringLiteral("H"));
    item.CalculateHeight();
    m_lineHeight = item.Height();
    popup->RemoveAllItems();
}

qint16 DeliveryNotifier::PopupNotify(MessageTracker& tracker) {
    qint16 failures = 0;
    if (m_popup == nullptr) {
        return failures;
    }
    Trap([this] { m_popup->Close(); });
    Trap([this] { m_popup->RemoveAllItems(); });
    Trap([&] { failures = FillPopup(tracker); });
    if (m_popup->ItemCount() > 0) {
        ShowPopup(tracker, failures > 0);
    }
    return failures;
}

qint16 DeliveryNotifier::FillPopup(MessageTracker& tracker) {
    int shown = 0;
    qint16 failures = 0;
    for (int index = 0; index < MessageTracker::SlotCount && shown < MostShown; ++index) {
        const MessageTracker::Slot slot = tracker.SlotAt(index);
        if (!IsReady(slot)) {
            continue;
        }
        ++shown;
        if (shown > 1) {
            Trap([this] { AddDelimiter(); });
        }
        Trap([&] { AddPopupLine(slot.status, slot.recipient, slot.number, slot.deliveryTime, slot.text); });
        failures = static_cast<qint16>(failures + (ShowOf(slot.status).IsFailure ? 1 : 0));
        tracker.ClearSlot(index);
        Trap([&] { TellDesktop(tracker, slot); });
    }
    return failures;
}

void DeliveryNotifier::ShowPopup(const MessageTracker& tracker, bool hasFailures) {
    if (tracker.PlaySound) {
        const QString name = hasFailures ? QStringLiteral("smserror.wav") : QStringLiteral("smsnotify.wav");
        Trap([&] { m_services.Speaker.Play(FindSuppliedFile(m_services.Places, m_services.Files, name)); });
    }
    Trap([this] { m_popup->SetSize(m_popup->Width(), BottomOfLast() + BottomMargin); });
    Trap([this] { m_popup->Show(); });
}

int DeliveryNotifier::BottomOfLast() const {
    const PopupItem& last = m_popup->Item(m_popup->ItemCount() - 1);
    return last.Top() + last.Height();
}

void DeliveryNotifier::AddPopupLine(qint32 status, const QString& recipient, const QString& number,
                                    const QString& deliveryTime, const QString& text) {
    const int maxWidth = m_popup->Width() - TextMargin;
    int top = m_popup->ItemCount() == 0 ? FirstTop : BottomOfLast() + EntryGap;

    PopupItem& image = m_popup->AddItem(IconLeft, top, IconLeft + IconSide, top + IconSide, QString());
    image.SetHyperLink(false);
    image.SetIcon(ShowOf(status).Image);

    top = AddTextLine(top, recipient, true);

    QString line =
        deliveryTime.isEmpty() ? number : Text::Trim(number + QStringLiteral(" @ ") + deliveryTime);
    if (status == NotDelivered) {
        line += QStringLiteral(" [0x") + QString::number(status, Hexadecimal) + u']';
    }
    top = AddTextLine(top, line, false);

    PopupItem& start = m_popup->AddItem(TextLeft, top, 0, top + m_lineHeight, text);
    start.SetHyperLink(false);
    start.CalculateHeight();
    start.CalculateWidth();
    if (start.Width() > maxWidth) {
        start.SetWidth(maxWidth);
    }
    start.SetTextAlignment(PopupItem::EndEllipsis);
}

int DeliveryNotifier::AddTextLine(int top, const QString& caption, bool isFirst) {
    PopupItem& item = m_popup->AddItem(TextLeft, top, 0, top + m_lineHeight, caption);
    item.SetHyperLink(false);
    item.SetBold(isFirst);
    item.CalculateHeight();
    item.CalculateWidth();
    item.SetTextAlignment(PopupItem::SingleLine);
    return item.Top() + item.Height() + LineGap;
}

void DeliveryNotifier::AddDelimiter() {
    const int top = BottomOfLast() + EntryGap;
    m_popup->AddItem(DelimiterMargin, top, m_popup->Width() - DelimiterMargin, top + 1, QString(),
                     DelimiterColour);
}

void DeliveryNotifier::TellDesktop(const MessageTracker& tracker, const MessageTracker::Slot& slot) {
    if (!tracker.UseDesktopNotices) {
        return;
    }
    const StatusShow show = ShowOf(slot.status);
    QString body = slot.recipient;
    if (tracker.ShowDetailsOnDesktop) {
        body += u'\n' + slot.number + u'\n' + slot.text;
    }
    m_services.Desktop.Show(show.Title, body, show.Icon);
}

qint16 DeliveryNotifier::TrayNotify(MessageTracker& tracker) {
    for (int index = 0; index < MessageTracker::SlotCount; ++index) {
        const MessageTracker::Slot slot = tracker.SlotAt(index);
        if (IsReady(slot)) {
            Trap([&] { ShowStatus(slot.status, slot.recipient, slot.number, slot.text); });
            tracker.ClearSlot(index);
            break;
        }
    }
    return 0;
}

void DeliveryNotifier::ShowStatus(qint32 status, const QString& recipient, const QString& number,
                                  const QString& text) {
    ShowStatusTrayNotify(status, recipient, number, text);
}

void DeliveryNotifier::ShowStatusTrayNotify(qint32 status, const QString& recipient, const QString& number,
                                            const QString& text) {
    const StatusShow show = ShowOf(status);
    const QString body = text.isEmpty() ? recipient
                                        : recipient + QStringLiteral(" @") + number + QStringLiteral("\r\n") +
                                              text + QStringLiteral("...");
    if (m_trayIcon != nullptr) {
        m_trayIcon->ShowBalloonTip(BalloonTime, show.Title, body, show.Icon);
    }
}
