#pragma once

#include <QFrame>

class SendButton;

/// The two send buttons.
class SendPanel final : public QFrame {
    Q_OBJECT
public:
    explicit SendPanel(QWidget* parent = nullptr);

    void SetSendingEnabled(bool enabled);

Q_SIGNALS:
    void SendNowPressed();
    void SendLaterPressed();

private:
    SendButton* m_cmdSendLater;
    SendButton* m_cmdSendNow;
};
