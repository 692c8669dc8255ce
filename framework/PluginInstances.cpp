#include "framework/PluginInstances.h"

#include "framework/GenericPlugin.h"
#include "framework/PluginSettings.h"
#include "framework/TextHelpers.h"

#include <algorithm>
#include <utility>

namespace {

// Without regard to case; names that differ in nothing else stand in the order of their characters.
bool comesBefore(std::string_view a, std::string_view b) {
    const auto differ = std::mismatch(a.begin(), a.end(), b.begin(), b.end(),
                                      [](char x, char y) { return upperCase(x) == upperCase(y); });
    if (differ.first == a.end() && differ.second == b.end())
        return a < b;
    if (differ.first == a.end() || differ.second == b.end())
        return differ.first == a.end();
    return upperCase(*differ.first) < upperCase(*differ.second);
}

} // namespace

PluginInstances::PluginInstances() = default;

PluginInstances::~PluginInstances() = default;

PluginInstances& PluginInstances::ofProcess() {
    static PluginInstances instances;
    return instances;
}

void PluginInstances::begin() {
    nextInstanceId = 0;
    sharedMapping = std::make_unique<ControllerMapping>();
}

void PluginInstances::end() {
    while (!adopted.empty()) // a later object may use an earlier one
        adopted.pop_back();
    sharedSettings.reset();
    sharedMapping.reset();
}

void PluginInstances::setSettings(std::unique_ptr<SharedPluginSettings> made) {
    sharedSettings = std::move(made);
}

void PluginInstances::adopt(std::unique_ptr<AdoptedObject> object) {
    adopted.push_back(std::move(object));
}

void PluginInstances::add(GenericPlugin& instance) {
    instances.insert(instances.begin(), &instance);
}

void PluginInstances::remove(GenericPlugin& instance) {
    std::erase(instances, &instance);
}

void PluginInstances::sortByName() {
    std::stable_sort(instances.begin(), instances.end(), [](const GenericPlugin* a, const GenericPlugin* b) {
        return comesBefore(a->instanceName(), b->instanceName());
    });
}

bool PluginInstances::hasName(std::string_view name, const GenericPlugin& except) const {
    return std::any_of(instances.begin(), instances.end(), [&](const GenericPlugin* instance) {
        return instance != &except && compareText(instance->instanceName(), name);
    });
}

bool PluginInstances::hasId(std::int32_t id) const noexcept {
    return std::any_of(instances.begin(), instances.end(),
                       [id](const GenericPlugin* instance) { return instance->givenInstanceId() == id; });
}

std::int32_t PluginInstances::nextId() noexcept {
    if (nextInstanceId <= largestId)
        return nextInstanceId++;
    std::int32_t free = 0;
    while (hasId(free))
        ++free;
    return free;
}

GenericPlugin* PluginInstances::find(std::int32_t id, std::size_t& position) noexcept {
    if (position < instances.size() && instances[position]->givenInstanceId() == id)
        return instances[position];
    for (std::size_t index = 0; index < instances.size(); ++index) {
        if (instances[index]->instanceId() == id) {
            position = index;
            return instances[index];
        }
    }
    return nullptr;
}

bool PluginInstances::claimId(std::int32_t wanted) noexcept {
    if (wanted < 0 || wanted > largestId || hasId(wanted))
        return false;
    nextInstanceId = std::max(nextInstanceId, wanted + 1);
    return true;
}
