// Another client of an outbox: takes the write lock of a file and gives it back as it is told. Words on
// standard input: "hold" and "release"; each is answered with its word when it is done. Ends with its input.

#include <sqlite3.h>

#include <iostream>
#include <string>

namespace {

bool Run(sqlite3* file, const char* statement) {
    return sqlite3_exec(file, statement, nullptr, nullptr, nullptr) == SQLITE_OK;
}

}  // namespace

int main(int argc, char** argv) {
    sqlite3* file = nullptr;
    if (argc != 2 || sqlite3_open_v2(argv[1], &file, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
        return 1;
    }
    sqlite3_busy_timeout(file, 10000);
    std::string word;
    while (std::getline(std::cin, word)) {
        if (!Run(file, word == "hold" ? "BEGIN IMMEDIATE" : "COMMIT")) {
            return 2;
        }
        std::cout << word << std::endl;
    }
    sqlite3_close(file);
    return 0;
}
