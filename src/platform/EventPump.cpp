#include "platform/EventPump.h"

#include <QCoreApplication>

void ApplicationEventPump::Process(int passes) {
    if (QCoreApplication::instance() == nullptr) {
        return;
    }
    for (int pass = 0; pass < passes; ++pass) {
        QCoreApplication::processEvents();
    }
}
