#pragma once

#include <functional>

class AlertStrip;
class AppContext;
class PopupControl;
class QWidget;
class StatusPoll;

/// What tells of the fate of messages in the main window: the poll of their status (tmrCheckMsgStatus), the
/// popup pucFeedback with the images of imgTrackerStatus, and the warning that some were not delivered.
class DeliveryArea {
public:
    /// Its parts belong to `form`, the warning to the layout that it is put into. `showAlert` is told when
    /// messages have failed.
    DeliveryArea(AppContext& context, QWidget& form, std::function<void()> showAlert);

    [[nodiscard]] QWidget* Alert() const;
    void ShowAlert(bool show);
    /// The tracker gets its popup and its settings, and tells from now on; until Release.
    void CreateTracker();
    void Release();
    void StartPoll();
    void StopPoll();

private:
    AppContext& m_context;
    AlertStrip* m_alert;
    StatusPoll* m_poll;
    PopupControl* m_popup;
};
