// As the main function of the other test programs, with the program's own application object.
#include "shell/Application.h"
#include "support/Offscreen.h"
#include "support/TestSettings.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    const Offscreen offscreen;
    Application application(argc, argv);
    const TestSettings settings;
    return RUN_ALL_TESTS();
}
