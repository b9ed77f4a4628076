#pragma once

#include <QDialog>

#include <memory>

class Clock;
class Sound;

namespace Ui {
class frmTabName;
}

/// Asks for the name of a group: one text box without buttons. Enter takes the name, unless it is "*", which
/// is taken by the whole address book; Escape and the close button give up. The dialog only hides, and its
/// caller disposes of it.
class frmTabName : public QDialog {
    Q_OBJECT
public:
    frmTabName(Sound& speaker, const Clock& clock);
    ~frmTabName() override;

    /// True until a name was taken.
    [[nodiscard]] bool IsCanceled() const { return m_isCanceled; }
    /// Without blanks at its ends.
    [[nodiscard]] QString EditValue() const;
    /// Without blanks at its ends; the caret goes behind the text, and stands there when the
    /// dialog appears.
    void SetEditValue(const QString& value);
    void setVisible(bool isVisible) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void TakeName();

    std::unique_ptr<Ui::frmTabName> m_ui;
    Sound& m_speaker;
    bool m_isCanceled = true;
};
