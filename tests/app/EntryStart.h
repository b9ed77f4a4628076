#pragma once

#include "app/AppContext.h"
#include "app/CommandLine.h"
#include "app/EntryRoutine.h"
#include "app/RecordingScreens.h"
#include "app/TestMachine.h"

[[nodiscard]] inline QString Q(const char* text) {
    return QString::fromLatin1(text);
}

/// One start of the program on a machine.
struct Start {
    explicit Start(TestMachine& machine, const QStringList& arguments = {})
        : Arguments(arguments), Seams(machine.Seams()), Context(Seams), Screens(Context.AppBusyState) {}
    bool Run() {
        EntryRoutine entry(Context, Seams, Screens, Arguments);
        const bool goesOn = entry.Run();
        ExitStatus = entry.ExitStatus();
        return goesOn;
    }

    CommandLine Arguments;
    Machine Seams;
    AppContext Context;
    RecordingScreens Screens;
    /// Of the run.
    int ExitStatus = -1;

    /// What the screens are asked for by a start that nothing comes in the way of, with the busy state.
    [[nodiscard]] static QStringList Whole() {
        return {QStringLiteral("ShowSplash 2"),    QStringLiteral("RepaintSplash 2"),
                QStringLiteral("RepaintSplash 2"), QStringLiteral("LoadMain 2"),
                QStringLiteral("HideSplash 2"),    QStringLiteral("DropSplash 2"),
                QStringLiteral("ShowMain 0"),      QStringLiteral("ContactListFocus home 0"),
                QStringLiteral("RepaintMain 0")};
    }
};
