#pragma once

#include <functional>

class AlertStrip;
class AppContext;
class PopupControl;
class QRect;
class QWidget;
class StatusPoll;
class TrayBalloon;

/// What tells of the fate of messages in the main window: the poll of their status (tmrCheckMsgStatus), the
/// popup pucFeedback with the images of imgTrackerStatus, and the warning that some were not delivered.
class DeliveryArea {
public:
    /// Its parts belong to `form`, the warning to the layout that it is put into. `showAlert` is told when
    /// messages have failed; `trayPlace` tells where the tray's icon is, for the popup's corner.
    DeliveryArea(AppContext& context, QWidget& form, std::function<void()> showAlert,
                 std::function<QRect()> trayPlace);

    [[nodiscard]] QWidget* Alert() const;
    void ShowAlert(bool show);
    /// The tracker gets its popup and its settings, and tells from now on; until Release.
    void CreateTracker(TrayBalloon* trayIcon);
    void Release();
    void StartPoll();
    void StopPoll();

private:
    AppContext& m_context;
    AlertStrip* m_alert;
    StatusPoll* m_poll;
    PopupControl* m_popup;
};
