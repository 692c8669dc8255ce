// Short runs of the soak, one on one thread and one on two.
#include "tests/soak/Soak.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <random>

namespace {

TEST(Soak, SecondsOfEverythingAtOnceLeaveEverySampleFinite) {
    const char* const given = std::getenv("SEED");
    for (const bool twoThreads : {false, true}) {
        const std::uint32_t seed =
            given != nullptr ? static_cast<std::uint32_t>(std::strtoul(given, nullptr, 10)) : std::random_device{}();
        std::cout << "SEED=" << seed << '\n';
        const Soak::Result result = Soak::run(ZELK_PLUGIN_FILE, {2.0, seed, twoThreads});
        EXPECT_EQ(result.fault, "") << "SEED=" << seed << (twoThreads ? ", two threads" : ", one thread");
        EXPECT_GE(result.seconds, 2.0);
        EXPECT_GT(result.events, result.activations);
    }
}

} // namespace
