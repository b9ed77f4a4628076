#include "platform/BrokenPipes.h"

#include <csignal>

void PassOverBrokenPipes() {
    std::signal(SIGPIPE, SIG_IGN);
}
