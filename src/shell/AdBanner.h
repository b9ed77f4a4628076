#pragma once

#include <QWidget>

class QTimer;

/// The banner imgAd. Shows the picture that is built into the program; its timer tmrAdupdate (20 s) stands
/// still, and nothing starts it.
class AdBanner final : public QWidget {
    Q_OBJECT
public:
    static constexpr int UpdateInterval = 20000;  // ms

    explicit AdBanner(QWidget* parent = nullptr);

    /// Turns the timer off.
    void StopUpdates();

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QTimer* m_tmrAdupdate;
};
