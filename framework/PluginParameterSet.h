// A named group of parameters. It passes everything on to its own owner.
// Threads: built on the main thread; questions and changes as in the owner.
#pragma once

#include "framework/GenericParameterOwner.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class ParameterCollection;

class PluginParameterSet : public GenericParameterOwner {
public:
    PluginParameterSet(const PluginParameterSet&) = delete;
    PluginParameterSet& operator=(const PluginParameterSet&) = delete;
    virtual ~PluginParameterSet() = default;

    void beginChange() noexcept override { parent->beginChange(); }
    void adoptObject(std::unique_ptr<AdoptedObject> object) override;
    void endChange() noexcept override { parent->endChange(); }
    std::int32_t parameterCount() const noexcept override { return static_cast<std::int32_t>(parameters.size()); }
    AbstractPluginParameter& parameter(std::int32_t index) const noexcept override {
        return *parameters[static_cast<std::size_t>(index)];
    }
    std::int32_t groupIndex() const noexcept override { return group; }
    std::string_view groupName() const noexcept override { return ownName; }
    void parameterChanged(std::int32_t id, float value, std::uint32_t flags) noexcept override {
        parent->parameterChanged(id, value, flags);
    }
    std::int32_t registerParameter(AbstractPluginParameter& parameter) override;
    void registerAlias(AbstractPluginParameter& parameter, std::string_view alias) override;
    std::int32_t registerGroup(std::string_view wanted) override;

    void addParametersTo(ParameterCollection& collection) const;

    virtual void init() = 0; // ranges, defaults, names of values, hints

protected:
    PluginParameterSet(GenericParameterOwner& listener, std::string wanted, std::size_t expectedCount);

private:
    GenericParameterOwner* parent; // not owned
    std::string ownName;
    std::int32_t group;
    std::vector<AbstractPluginParameter*> parameters; // members of the derived class
};
