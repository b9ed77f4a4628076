#include "shell/Application.h"
#include "shell/Look.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    Application application(argc, argv);
    Application::setQuitOnLastWindowClosed(false);
    Look::Apply(QStringLiteral("light"));
    return RUN_ALL_TESTS();
}
