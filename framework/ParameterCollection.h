// An ordered list of parameters, which it does not own: all of a plug-in, or a chosen few.
// Threads: built on the main thread, then read by any.
#pragma once

#include <cstdint>
#include <vector>

class AbstractPluginParameter;
class GenericParameterOwner;

class ParameterCollection {
public:
    explicit ParameterCollection(GenericParameterOwner* listOwner) noexcept : parameterOwner(listOwner) {}
    virtual ~ParameterCollection() = default;
    ParameterCollection(const ParameterCollection&) = delete;
    ParameterCollection& operator=(const ParameterCollection&) = delete;

    virtual std::int32_t add(AbstractPluginParameter& parameter); // [main] its index
    void reserve(std::int32_t expected);                          // [main]

    std::int32_t count() const noexcept { return static_cast<std::int32_t>(parameters.size()); }
    AbstractPluginParameter& at(std::int32_t index) const noexcept { // index below count
        return *parameters[static_cast<std::size_t>(index)];
    }
    GenericParameterOwner* owner() const noexcept { return parameterOwner; } // may be null

    auto begin() const noexcept { return parameters.begin(); }
    auto end() const noexcept { return parameters.end(); }

private:
    GenericParameterOwner* parameterOwner;            // not owned
    std::vector<AbstractPluginParameter*> parameters; // not owned
};
