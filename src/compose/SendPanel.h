#pragma once

#include <QFrame>

class SendButton;

/// The two send buttons.
class SendPanel final : public QFrame {
    Q_OBJECT
public:
    explicit SendPanel(QWidget* parent = nullptr);

    /// Both buttons at once.
    void SetSendingEnabled(bool enabled);

Q_SIGNALS:
    /// A press that counts: see SendButton for those that do not.
    void SendNowPressed();
    void SendLaterPressed();

private:
    SendButton* m_cmdSendLater;
    SendButton* m_cmdSendNow;
};
