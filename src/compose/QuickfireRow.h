#pragma once

#include <QWidget>

#include <array>

class QPushButton;

/// The row of ten buttons for stored texts, between the two buttons that turn its pages. Alt and the digit on
/// a button fire it.
class QuickfireRow final : public QWidget {
    Q_OBJECT
public:
    static constexpr int ButtonCount = 10;

    explicit QuickfireRow(QWidget* parent = nullptr);

protected:
    void changeEvent(QEvent* event) override;

private:
    [[nodiscard]] QPushButton* NewButton(const QString& name, const QString& text);
    /// Nearly square buttons, whatever the font.
    void SizeButtons();

    QPushButton* m_cmdQBPrevious;
    std::array<QPushButton*, ButtonCount> m_cmdQuickFire{};
    QPushButton* m_cmdNextQBPage = nullptr;
};
