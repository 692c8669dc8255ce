#include "base/ReleaseAssert.h"

#include <cstdio>
#include <cstdlib>

void releaseAssertFailed(const char* condition) noexcept {
    std::fprintf(stderr, "release_assert failed: %s\n", condition);
    std::abort();
}
