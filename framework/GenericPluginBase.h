// What the editor side and the audio side of an instance have in common: the list of parameters, the depth of open
// brackets, and what the product tells the framework about itself.
// Threads: as tagged.
#pragma once

#include "framework/GenericParameterResponder.h"
#include "framework/GenericPluginInfo.h"
#include "framework/ParameterCollection.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string_view>

class GenericPluginBase : public GenericParameterResponder {
public:
    // Values of "Receive Midi". The order is that of saved projects: 0 lets MIDI in.
    enum class MidiState : std::int32_t { enabled, disabled };

    // How many sources of each kind an audio side offers to the displays.
    struct SourceCounts {
        std::int32_t audio = 0;
        std::int32_t spectra = 0;
        std::int32_t levelsPerChannel = 0;
        std::int32_t furtherLevels = 0;
    };

    // The parameters that the framework acts on itself. Null: the product has none.
    struct OwnParameters {
        AbstractPluginParameter* receiveMidi = nullptr;
        AbstractPluginParameter* bypass = nullptr;
    };

    void beginChange() noexcept override;
    void endChange() noexcept override;
    std::int32_t parameterCount() const noexcept REALTIME override { return collection->count(); }
    AbstractPluginParameter& parameter(std::int32_t index) const noexcept REALTIME override {
        return collection->at(index);
    }
    std::int32_t groupIndex() const noexcept override { return 0; }
    std::string_view groupName() const noexcept override { return {}; }
    std::int32_t registerParameter(AbstractPluginParameter& parameter) override;
    void registerAlias(AbstractPluginParameter& parameter, std::string_view name) override;
    std::int32_t registerGroup(std::string_view name) override;

    ParameterCollection& parameters() const noexcept { return *collection; }
    std::int32_t changeDepth() const noexcept REALTIME; // [any] 0: no bracket is open

    GenericPluginInfo info;
    SourceCounts sourceCounts;
    OwnParameters ownParameters;

protected:
    GenericPluginBase();
    explicit GenericPluginBase(std::unique_ptr<ParameterCollection> allParameters); // not null

    // [any] Changes with every bracket that begins or ends. Two equal states with no bracket open enclose a time in
    // which none was.
    std::uint32_t bracketState() const noexcept REALTIME { return brackets.load(); }
    std::int32_t leaveChange() noexcept; // [any] the depth that is left; 0 also when no bracket was open

private:
    std::unique_ptr<ParameterCollection> collection;
    static constexpr std::uint32_t openBrackets = 0xFFFF;  // low half: how many are open
    static constexpr std::uint32_t bracketBegun = 0x10000; // high half: how many have begun; wraps
    std::atomic<std::uint32_t> brackets{0};                // sequentially consistent: ordered against changes queued
};
