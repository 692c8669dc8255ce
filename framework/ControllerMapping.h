// Which target each of the 128 MIDI controllers moves.
// Threads: written on the main thread, read by any; each entry is one relaxed atomic word that pairs with nothing.
#pragma once

#include "base/Realtime.h"
#include "base/UpdatedObject.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

class BinaryDataReader;
class BinaryDataWriter;

class ControllerMapping final : public UpdatedObject, public EventSender {
public:
    static constexpr std::size_t controllerCount = 128;
    static constexpr std::int32_t none = -1;
    static constexpr std::int32_t firstControl = 0x10000;      // targets from here on are controls of the interface
    static constexpr std::int32_t firstFloatTarget = 0x100000; // and from here on float targets of the processor

    ControllerMapping();

    void set(std::size_t controller, std::int32_t target); // [main]
    // Gives the target this controller and takes it from any other. Controller -1 only takes it; target -1 clears the
    // controller. Listeners hear once.
    void assign(std::int32_t controller, std::int32_t target); // [main]
    void clear();                                              // [main]
    void copyFrom(const ControllerMapping& other);             // [main] leaves modified alone

    // The form that files have; both clear modified. Listeners hear of a read once, and nothing changes when it fails.
    [[nodiscard]] bool read(BinaryDataReader& reader); // [main] false: no whole map stood there
    void write(BinaryDataWriter& writer);              // [main]

    std::int32_t target(std::size_t controller) const noexcept REALTIME; // [any] -1 beyond the table

    bool modified = false; // [main] since the last read or write of its file
    DeferredEvent changed; // [main]

private:
    bool replace(std::size_t controller, std::int32_t target);

    std::array<std::atomic<std::int32_t>, controllerCount> entries;
};
