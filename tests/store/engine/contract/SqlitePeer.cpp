// Another process on a database file: sqlite_peer FILE SQL. Runs the SQL, prints "+" or "-", and ends without
// closing the file when its standard input does.

#include <sqlite3.h>
#include <unistd.h>

#include <cstdio>

int main(int argc, char** argv) {
    sqlite3* handle = nullptr;
    const bool isFine = argc == 3 &&
                        sqlite3_open_v2(argv[1], &handle, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK &&
                        sqlite3_exec(handle, argv[2], nullptr, nullptr, nullptr) == SQLITE_OK;
    std::puts(isFine ? "+" : "-");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    _exit(0);
}
