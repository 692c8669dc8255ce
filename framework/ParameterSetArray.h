// Sets of one kind in a row, such as the bands: every set has the same parameters in the same order, so an id tells the
// set and the place in it.
// Threads: built on the main thread, then read by any.
#pragma once

#include "framework/PluginParameterSet.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class AbstractParameterSetArray {
public:
    AbstractParameterSetArray(const AbstractParameterSetArray&) = delete;
    AbstractParameterSetArray& operator=(const AbstractParameterSetArray&) = delete;

    void addParametersTo(ParameterCollection& collection) const;
    [[nodiscard]] bool containsId(std::int32_t id) const noexcept; // -1, all parameters, is in every array with any
    std::int32_t setIndexForId(std::int32_t id) const noexcept;    // -1 outside
    std::int32_t setCount() const noexcept { return static_cast<std::int32_t>(sets.size()); }
    void resetToDefaults() const noexcept; // in one bracket
    std::int32_t firstId() const noexcept; // -1 without parameters
    std::int32_t parametersPerSet() const noexcept;
    void init();

protected:
    AbstractParameterSetArray() = default;
    ~AbstractParameterSetArray() = default;

    void add(std::unique_ptr<PluginParameterSet> set);
    PluginParameterSet& abstractSet(std::int32_t index) const noexcept {
        return *sets[static_cast<std::size_t>(index)];
    }
    static std::string numberedName(std::string_view name, std::int32_t number);

private:
    std::vector<std::unique_ptr<PluginParameterSet>> sets;
};

template <typename T>
class ParameterSetArray : public AbstractParameterSetArray {
public:
    // The sets are called "Band 1" to "Band 24", say.
    ParameterSetArray(GenericParameterOwner& owner, std::string_view name, std::int32_t count) {
        for (std::int32_t number = 1; number <= count; ++number)
            add(std::make_unique<T>(owner, numberedName(name, number)));
    }

    T& set(std::int32_t index) const noexcept { return static_cast<T&>(abstractSet(index)); } // index below setCount
};
