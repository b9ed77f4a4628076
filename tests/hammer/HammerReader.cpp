// A program that copies the outbox now and then, as a backup does: it reads the whole table in one
// transaction and keeps that open for a while, so that nobody can write meanwhile. With SQLite alone. Tells
// on standard output how often and how long it held, "held 431" (ms), and ends when it is told to.
//
// usage: hammer_reader OUTBOX LONGEST_HOLD_MS LONGEST_PAUSE_MS

#include <sqlite3.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <random>
#include <thread>

namespace {

volatile std::sig_atomic_t isStopping = 0;

bool Run(sqlite3* file, const char* statement) {
    return sqlite3_exec(file, statement, nullptr, nullptr, nullptr) == SQLITE_OK;
}

void Wait(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

/// One copy: milliseconds that the outbox was held; -1 if another had it.
long long Hold(sqlite3* file, int milliseconds) {
    if (!Run(file, "BEGIN") || !Run(file, "SELECT Count(*), Sum(length(msgText)) FROM Message")) {
        Run(file, "ROLLBACK");
        return -1;
    }
    const auto start = std::chrono::steady_clock::now();
    Wait(milliseconds);
    Run(file, "COMMIT");
    const auto held = std::chrono::steady_clock::now() - start;
    return std::chrono::duration_cast<std::chrono::milliseconds>(held).count();
}

}  // namespace

int main(int argc, char** argv) {
    std::signal(SIGTERM, [](int) { isStopping = 1; });
    sqlite3* file = nullptr;
    if (argc != 4 || sqlite3_open_v2(argv[1], &file, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
        return 2;
    }
    sqlite3_busy_timeout(file, 5000);
    std::mt19937 random(20260307);
    std::uniform_int_distribution<int> hold(std::atoi(argv[2]) / 3, std::atoi(argv[2]));
    std::uniform_int_distribution<int> pause(0, std::atoi(argv[3]));
    while (isStopping == 0) {
        std::cout << "held " << Hold(file, hold(random)) << std::endl;
        Wait(pause(random));
    }
    sqlite3_close(file);
    return 0;
}
