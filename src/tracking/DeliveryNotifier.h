#pragma once

#include "tracking/MessageTracker.h"

class DesktopNotices;
class Folders;
class LocalFiles;
class PopupItem;
class PopupSurface;
class Sound;
class TrayBalloon;

/// Where sounds and notices go. Each outlives the notifier.
struct NotifierServices {
    Sound& Speaker;
    const Folders& Places;
    const LocalFiles& Files;
    DesktopNotices& Desktop;
};

/// The telling half of the MessageTracker: shows final messages in the popup, plays a sound, and, if the user
/// wants that, tells the desktop as well. A second way, by a balloon of the tray, is there and used by
/// nothing.
class DeliveryNotifier final : public DeliverySink {
public:
    static constexpr int MostShown = 6;

    explicit DeliveryNotifier(const NotifierServices& services) : m_services(services) {}

    /// Null takes it away again; it outlives its use here.
    void SetTrayIcon(TrayBalloon* trayIcon) { m_trayIcon = trayIcon; }
    /// Takes the popup over: its size, its display time, and the height of a line, which is measured now.
    /// Null takes it away again. While there is none, final messages stay in their slots.
    void SetPopup(PopupSurface* popup);

    /// Shows up to six messages that have reached a final status, in the order of their slots, and clears
    /// these. Returns how many of them count as failures: canceled, and not delivered. Ignores failures.
    qint16 PopupNotify(MessageTracker& tracker) override;
    /// One message: its image, and three lines with the recipient, with number and delivery time ("HH:NN" or
    /// empty), and with the start of the text. A popup is set.
    void AddPopupLine(qint32 status, const QString& recipient, const QString& number,
                      const QString& deliveryTime, const QString& text);
    /// A line between two messages. A popup is set, and has an item.
    void AddDelimiter();

    /// Shows the first final message in a balloon of the tray and clears its slot. Always 0.
    qint16 TrayNotify(MessageTracker& tracker);
    void ShowStatus(qint32 status, const QString& recipient, const QString& number, const QString& text);
    void ShowStatusTrayNotify(qint32 status, const QString& recipient, const QString& number,
                              const QString& text);

private:
    /// Puts in what is final. Returns how many are failures.
    [[nodiscard]] qint16 FillPopup(MessageTracker& tracker);
    void ShowPopup(const MessageTracker& tracker, bool hasFailures);
    void TellDesktop(const MessageTracker& tracker, const MessageTracker::Slot& slot);
    /// The end of the popup's last item; it has one.
    [[nodiscard]] int BottomOfLast() const;
    /// A line of text in AddPopupLine; the top of the next one.
    int AddTextLine(int top, const QString& caption, bool isFirst);

    NotifierServices m_services;
    TrayBalloon* m_trayIcon = nullptr;
    PopupSurface* m_popup = nullptr;
    int m_lineHeight = 0;
};
