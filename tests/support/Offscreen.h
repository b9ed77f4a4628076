#pragma once

#include <QtGlobal>

/// Tests of widgets need no screen: they run on the offscreen platform unless they were told another one.
/// Made before the application object.
class Offscreen {
public:
    Offscreen() {
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
    }
};
