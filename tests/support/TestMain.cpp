#include "tests/support/RealtimeWatch.h"
#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

int main(int argumentCount, char** arguments) {
    // No test reads or writes what the user who runs it keeps.
    const TemporaryHome home;
    testing::InitGoogleTest(&argumentCount, arguments);
    startRealtimeWatch();
    return RUN_ALL_TESTS();
}
