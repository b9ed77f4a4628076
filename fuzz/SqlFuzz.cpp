#include "SqlCheck.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static SqlCheck check;
    const QString trouble = check.Run({reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)});
    if (!trouble.isEmpty()) {
        std::fprintf(stderr, "%s\n", trouble.toUtf8().constData());
        std::abort();
    }
    return 0;
}
