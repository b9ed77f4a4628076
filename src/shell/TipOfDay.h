#pragma once

#include <QDialog>
#include <QStringList>

#include <memory>

class CommandLine;
class Settings;
struct Machine;

namespace Ui {
class TipOfDay;
}

/// The tip of the day (dlgTipOfDay): shows the lines of a text file one by one, and remembers for the user
/// whether tips are wanted at start-up and which one comes next. Settings of the section Tip: "Startup" (0:
/// shown at start-up, which is the default; 1: not) and "Next" (line of the next tip, counted from 0).
class TipOfDay final : public QDialog {
    Q_OBJECT
public:
    /// `company` and `application` are named above the tip. `tips` is not empty. `year` for the placeholders
    /// of its texts.
    TipOfDay(QStringList tips, const QString& company, const QString& application, Settings& settings,
             int year, QWidget* parent = nullptr);
    ~TipOfDay() override;

    /// Shows the dialog if a file tips.txt came with the program or lies in the application's folder, and if
    /// the user wants tips or the command line asks for one.
    static void ShowIfDue(const Machine& machine, Settings& settings, const CommandLine& commandLine);
    /// Whether this user wants tips at start-up.
    [[nodiscard]] static bool IsWanted(const Settings& settings);
    /// The lines of a tip file that hold a tip: blank ones do not.
    [[nodiscard]] static QStringList TipsOf(const QString& fileText);

protected:
    bool event(QEvent* event) override;

private:
    void ShowPicture();
    void ShowNextTip();
    void GrowToTip();

    std::unique_ptr<Ui::TipOfDay> m_ui;
    QStringList m_tips;
    Settings& m_settings;
};
