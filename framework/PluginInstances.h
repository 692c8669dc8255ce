// The instances of this process and what they share.
// Threads: main; everything under processSection.
#pragma once

#include "framework/ControllerMapping.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

class GenericPlugin;

class PluginInstances {
public:
    static PluginInstances& ofProcess(); // lives as long as the library

    void begin(); // with the first instance: makes what all share
    void end();   // with the last

    void add(GenericPlugin& instance); // to the front
    void remove(GenericPlugin& instance);
    void sortByName();

    bool empty() const noexcept { return instances.empty(); }
    const std::vector<GenericPlugin*>& all() const noexcept { return instances; }
    bool hasName(std::string_view name, const GenericPlugin& except) const;
    std::int32_t nextId() noexcept { return nextInstanceId++; }
    ControllerMapping& controllerMapping() noexcept { return *sharedMapping; }

private:
    std::vector<GenericPlugin*> instances; // not owned
    std::unique_ptr<ControllerMapping> sharedMapping;
    std::int32_t nextInstanceId = 0;
};
