// The instances of this process and what they share.
// Threads: main; everything under processSection.
#pragma once

#include "framework/ControllerMapping.h"
#include "framework/GenericParameterOwner.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

class GenericPlugin;
class SharedPluginSettings;

class PluginInstances {
public:
    static PluginInstances& ofProcess(); // lives as long as the library
    PluginInstances(const PluginInstances&) = delete;
    PluginInstances& operator=(const PluginInstances&) = delete;

    void begin(); // with the first instance: makes what all share
    void end();   // with the last: destroys it, the last made first

    void add(GenericPlugin& instance); // to the front
    void remove(GenericPlugin& instance);
    void sortByName();

    bool empty() const noexcept { return instances.empty(); }
    const std::vector<GenericPlugin*>& all() const noexcept { return instances; }
    bool hasName(std::string_view name, const GenericPlugin& except) const;
    // Ids are those that "Analyzer External Spectrum" can hold. When all have been given, the lowest free one is next.
    static constexpr std::int32_t largestId = 65535;
    std::int32_t nextId() noexcept;
    // Null: none has this id. The position is where to look first, and becomes where it was found. Instances without an
    // id that are met on the way get theirs.
    GenericPlugin* find(std::int32_t id, std::size_t& position) noexcept;
    [[nodiscard]] bool claimId(std::int32_t wanted) noexcept; // false: out of range or taken
    ControllerMapping& controllerMapping() noexcept { return *sharedMapping; }

    void setSettings(std::unique_ptr<SharedPluginSettings> made);
    SharedPluginSettings& settings() noexcept { return *sharedSettings; }

    // What all share and the framework does not know. It goes with the last instance.
    void adopt(std::unique_ptr<AdoptedObject> object);
    template <typename T>
    T* shared() const noexcept; // the adopted object of this class; null: none

private:
    PluginInstances();
    ~PluginInstances();
    bool hasId(std::int32_t id) const noexcept;

    std::vector<GenericPlugin*> instances; // not owned
    std::unique_ptr<ControllerMapping> sharedMapping;
    std::unique_ptr<SharedPluginSettings> sharedSettings;
    std::vector<std::unique_ptr<AdoptedObject>> adopted;
    std::int32_t nextInstanceId = 0;
};

template <typename T>
T* PluginInstances::shared() const noexcept {
    for (const std::unique_ptr<AdoptedObject>& object : adopted)
        if (T* const wanted = dynamic_cast<T*>(object.get()); wanted != nullptr)
            return wanted;
    return nullptr;
}
