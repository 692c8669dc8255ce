// The bands of the hosted equalizer, reached as any host reaches them: by the names of its parameters.
// Threads: main.
#pragma once

#include "analysis/EQMatchPlacement.h"
#include "tools/host/EventList.h"
#include "tools/host/Parameters.h"
#include "tools/host/PluginInstance.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>

class PluginBands final : public EQMatchPlacement::Bands {
public:
    explicit PluginBands(PluginInstance& wanted); // throws Failure when the plug-in has no such bands

    bool isUsed(std::size_t band) const override { return used[band]; }
    void beginChange() override;
    void setBand(std::size_t band, const EQMatchBand& values) override;
    void releaseBand(std::size_t band) override;
    void endChange() override; // the instance is inactive
    void pushUndo() override {}

    static std::string text(const EQMatchBand& band);

private:
    void set(std::size_t band, const std::string& name, const std::string& value);

    PluginInstance& instance;
    Parameters parameters;
    std::optional<EventList> changes;
    std::array<bool, EQMatchPlacement::bandCount> used{}; // with the changes that have not been sent yet
};
