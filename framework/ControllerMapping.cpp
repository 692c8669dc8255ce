#include "framework/ControllerMapping.h"

#include "base/BinaryDataReader.h"
#include "base/BinaryDataWriter.h"

namespace {

constexpr char signature[] = "TVCM";
constexpr std::int32_t formatVersion = 1; // not looked at when a map is read

} // namespace

ControllerMapping::ControllerMapping() : changed(*this, this) {
    for (auto& entry : entries)
        entry.store(none, std::memory_order_relaxed);
}

std::int32_t ControllerMapping::target(std::size_t controller) const noexcept REALTIME {
    return controller < controllerCount ? entries[controller].load(std::memory_order_relaxed) : none;
}

bool ControllerMapping::replace(std::size_t controller, std::int32_t wanted) {
    if (controller >= controllerCount || target(controller) == wanted)
        return false;
    entries[controller].store(wanted, std::memory_order_relaxed);
    changed.trigger();
    return true;
}

void ControllerMapping::set(std::size_t controller, std::int32_t wanted) {
    if (replace(controller, wanted))
        modified = true;
}

void ControllerMapping::assign(std::int32_t controller, std::int32_t wanted) {
    const bool hasController = controller >= 0 && static_cast<std::size_t>(controller) < controllerCount;
    if (hasController && target(static_cast<std::size_t>(controller)) == wanted)
        return;
    const Hold hold(*this);
    if (wanted != none)
        for (std::size_t other = 0; other < controllerCount; ++other)
            if (target(other) == wanted) {
                set(other, none);
                break;
            }
    if (hasController)
        set(static_cast<std::size_t>(controller), wanted);
}

void ControllerMapping::clear() {
    const Hold hold(*this);
    for (std::size_t controller = 0; controller < controllerCount; ++controller)
        set(controller, none);
}

void ControllerMapping::copyFrom(const ControllerMapping& other) {
    const Hold hold(*this);
    for (std::size_t controller = 0; controller < controllerCount; ++controller)
        replace(controller, other.target(controller));
}

bool ControllerMapping::read(BinaryDataReader& reader) {
    if (reader.readHeader() != signature)
        return false;
    // A map that ends early is no map: what failed to be read would count as parameter 0.
    std::array<std::int32_t, controllerCount> found{};
    for (std::int32_t& entry : found)
        entry = reader.readInt32();
    if (!reader.good())
        return false;
    const Hold hold(*this);
    for (std::size_t controller = 0; controller < controllerCount; ++controller)
        replace(controller, found[controller]);
    modified = false;
    return true;
}

void ControllerMapping::write(BinaryDataWriter& writer) {
    writer.writeHeader(signature, formatVersion);
    for (std::size_t controller = 0; controller < controllerCount; ++controller)
        writer.writeInt32(target(controller));
    modified = false;
}
