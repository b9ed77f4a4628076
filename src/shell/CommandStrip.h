#pragma once

#include <QFrame>

class AdBanner;
class ShrinkButton;

/// The row of buttons at the top of the main window; the banner stands in its middle. Buttons whose windows
/// are not part of the program yet are disabled.
class CommandStrip final : public QFrame {
    Q_OBJECT
public:
    explicit CommandStrip(QWidget* parent = nullptr);

    /// No next picture from now on.
    void StopBanner();
    /// As a click on cmdExit.
    void PressExit();

Q_SIGNALS:
    void HistoryPressed();
    void AboutPressed();
    void MinimizePressed();
    void ExitPressed();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] ShrinkButton* NewButton(const QString& name, const QString& icon, const QString& word,
                                          const QString& toolTip, bool isEnabled);

    AdBanner* m_banner;
    ShrinkButton* m_cmdExit;
    int m_buttonWidth = 0;
};
