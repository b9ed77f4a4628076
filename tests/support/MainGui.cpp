#include <QApplication>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include "support/Offscreen.h"
#include "support/TestSettings.h"

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    const Offscreen offscreen;
    QApplication application(argc, argv);
    const TestSettings settings;
    return RUN_ALL_TESTS();
}
