// zelk_soak crowd [instances]: what each of many instances takes. zelk_soak [seconds of audio] [together]: SEED=n
// repeats a run, "together" keeps all work on one thread so that it repeats to the sample. Exit status 1 when something
// was found.
#include "tests/soak/Crowd.h"
#include "tests/soak/Soak.h"

#include <chrono>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <random>
#include <string_view>

namespace {

int runCrowd(std::size_t instances) {
    const Crowd crowd = Crowd::run(ZELK_PLUGIN_FILE, instances);
    std::cout << instances << " instances of 16 channels and 24 bells, each: " << crowd.bytes / 1048576.0 << " MiB, "
              << crowd.createMs << " ms to create, " << crowd.nanoseconds << " ns a frame; " << crowd.bytesLeft
              << " bytes left behind the last, output " << (crowd.finite ? "finite" : "NOT finite") << '\n';
    return crowd.finite ? 0 : 1;
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount > 1 && std::string_view(arguments[1]) == "crowd")
        return runCrowd(argumentCount > 2 ? std::strtoul(arguments[2], nullptr, 10) : 100);
    Soak::Plan plan;
    if (argumentCount > 1)
        plan.seconds = std::atof(arguments[1]);
    plan.twoThreads = !(argumentCount > 2 && std::string_view(arguments[2]) == "together");
    const char* const given = std::getenv("SEED");
    plan.seed =
        given != nullptr ? static_cast<std::uint32_t>(std::strtoul(given, nullptr, 10)) : std::random_device{}();
    std::cout << "SEED=" << plan.seed << ", " << plan.seconds << " s of audio, "
              << (plan.twoThreads ? "two threads" : "one thread") << std::endl;
    const auto begin = std::chrono::steady_clock::now();
    Soak::Result result;
    try {
        result = Soak::run(ZELK_PLUGIN_FILE, plan);
    } catch (const std::exception& failure) {
        result.fault = failure.what();
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    std::cout << result.seconds << " s of audio in " << taken.count() << " s: " << result.instances << " instances, "
              << result.activations << " activations, " << result.blocks << " blocks, " << result.events << " events, "
              << result.statesLoaded << " states and " << result.presetsLoaded << " presets loaded\n"
              << (result.fault.empty() ? "nothing found" : "FAULT: " + result.fault) << '\n';
    return result.fault.empty() ? 0 : 1;
}
