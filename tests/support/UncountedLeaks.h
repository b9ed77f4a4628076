#pragma once

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

/// While it lives, the sanitizer does not count memory that is never given back. For an exception that passes
/// through the toolkit, which loses a few bytes of its own then; not for anything else.
class UncountedLeaks {
public:
    UncountedLeaks() { Count(false); }
    ~UncountedLeaks() { Count(true); }
    UncountedLeaks(const UncountedLeaks&) = delete;
    UncountedLeaks& operator=(const UncountedLeaks&) = delete;

private:
    static void Count([[maybe_unused]] bool on) {
#if defined(__SANITIZE_ADDRESS__)
        on ? __lsan_enable() : __lsan_disable();
#endif
    }
};
