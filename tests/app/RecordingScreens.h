#pragma once

#include "app/EntryRoutine.h"
#include "core/BusyState.h"

#include <QStringList>

#include <stdexcept>

/// Windows of the start that only say that they were called, and in which busy state.
class RecordingScreens final : public EntryScreens {
public:
    explicit RecordingScreens(const BusyState& busy) : m_busy(busy) {}

    QStringList Calls;
    bool IsSetupFinished = true;
    /// The call of this name fails.
    QString Failing;
    MainState State = MainState::None;

    void ShowSplash() override { Note("ShowSplash"); }
    void RepaintSplash() override { Note("RepaintSplash"); }
    void HideSplash() override { Note("HideSplash"); }
    void DropSplash() override { Note("DropSplash"); }
    [[nodiscard]] bool RunSetupWizard() override {
        Note("RunSetupWizard");
        return IsSetupFinished;
    }
    void RunPhonebookWizard() override { Note("RunPhonebookWizard"); }
    void LoadMain() override {
        Note("LoadMain");
        State = MainState::Open;
    }
    [[nodiscard]] MainState StateOfMain() const override { return State; }
    [[nodiscard]] WindowHandle MainHandle() const override { return State == MainState::None ? 0 : 4711; }
    void ShowMain() override { Note("ShowMain"); }
    void ContactListFocus(bool home) override { Note(home ? "ContactListFocus home" : "ContactListFocus"); }
    void RepaintMain() override { Note("RepaintMain"); }

private:
    void Note(const char* name) {
        const QString call = QString::fromLatin1(name);
        Calls.append(call + QStringLiteral(" %1").arg(m_busy.Value()));
        if (call == Failing) {
            throw std::runtime_error("made to fail");
        }
    }

    const BusyState& m_busy;
};
