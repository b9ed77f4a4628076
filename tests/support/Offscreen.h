#pragma once

#include <QLoggingCategory>
#include <QString>
#include <QTemporaryDir>

#include <cstdio>

/// Tests of widgets need no screen and no session: they run on the offscreen platform unless they were told
/// another one, with a folder for sockets of their own where there is no session. Made before the application
/// object.
class Offscreen {
public:
    Offscreen() {
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        if (!qEnvironmentVariableIsSet("XDG_RUNTIME_DIR")) {
            qputenv("XDG_RUNTIME_DIR", m_runtimeFolder.path().toLocal8Bit());
        }
        qInstallMessageHandler(Tell);
    }
    ~Offscreen() { qInstallMessageHandler(nullptr); }
    Offscreen(const Offscreen&) = delete;
    Offscreen& operator=(const Offscreen&) = delete;

private:
    /// What the toolkit says about a platform without a window manager, each time a window is shown, tells
    /// nothing about the program.
    static void Tell(QtMsgType type, const QMessageLogContext& context, const QString& text) {
        if (text != QLatin1String("This plugin does not support propagateSizeHints()") &&
            text != QLatin1String("This plugin does not support raise()")) {
            std::fprintf(stderr, "%s\n", qUtf8Printable(qFormatLogMessage(type, context, text)));
        }
    }

    QTemporaryDir m_runtimeFolder;
};
