#include "platform_ui/QtSound.h"

#include <QApplication>

void QtSound::Beep() {
    QApplication::beep();
}
