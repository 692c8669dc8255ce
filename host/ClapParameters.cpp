#include "host/ClapParameters.h"

#include "framework/AbstractPluginParameter.h"
#include "host/ClapGuard.h"
#include "host/ClapPluginAdapter.h"
#include "host/ClapText.h"

#include <cmath>
#include <limits>

namespace {

// Null for an id that no parameter has.
const AbstractPluginParameter* parameterOf(const clap_plugin* plugin, clap_id id) noexcept {
    GenericPlugin& editorSide = ClapPluginAdapter::of(plugin).editorSide();
    return id < static_cast<clap_id>(editorSide.parameterCount()) ? &editorSide.parameter(static_cast<std::int32_t>(id))
                                                                  : nullptr;
}

std::uint32_t parameterCount(const clap_plugin* plugin) noexcept {
    return static_cast<std::uint32_t>(ClapPluginAdapter::of(plugin).editorSide().parameterCount());
}

void fillInfo(const AbstractPluginParameter& parameter, clap_param_info& info) {
    info = {};
    info.id = static_cast<clap_id>(parameter.id());
    if (parameter.isAutomatable())
        info.flags |= CLAP_PARAM_IS_AUTOMATABLE;
    if (parameter.kind() == AbstractPluginParameter::Kind::stepped)
        info.flags |= CLAP_PARAM_IS_STEPPED;
    copyClapText(parameter.longName(), info.name);
    copyClapText(parameter.groupName(), info.module);
    info.min_value = static_cast<double>(parameter.minimum());
    info.max_value = static_cast<double>(parameter.maximum());
    info.default_value = static_cast<double>(parameter.defaultValue());
}

bool getInfo(const clap_plugin* plugin, std::uint32_t index, clap_param_info* info) noexcept {
    const AbstractPluginParameter* const parameter = parameterOf(plugin, index);
    if (parameter == nullptr || info == nullptr)
        return false;
    return clapGuard(false, [&] { return fillInfo(*parameter, *info), true; });
}

bool getValue(const clap_plugin* plugin, clap_id id, double* value) noexcept {
    const AbstractPluginParameter* const parameter = parameterOf(plugin, id);
    if (parameter == nullptr || value == nullptr)
        return false;
    // What MIDI moved on the audio side is part of the answer.
    clapGuard(false, [&] { return ClapPluginAdapter::of(plugin).editorSide().takeAutomation(), true; });
    *value = static_cast<double>(parameter->value());
    return true;
}

bool valueToText(const clap_plugin* plugin, clap_id id, double value, char* text, std::uint32_t size) noexcept {
    const AbstractPluginParameter* const parameter = parameterOf(plugin, id);
    if (parameter == nullptr || text == nullptr || size == 0 || !std::isfinite(value))
        return false;
    return clapGuard(false, [&] {
        copyClapText(parameter->text(static_cast<float>(value)), text, size);
        return true;
    });
}

bool textToValue(const clap_plugin* plugin, clap_id id, const char* text, double* value) noexcept {
    const AbstractPluginParameter* const parameter = parameterOf(plugin, id);
    if (parameter == nullptr || text == nullptr || value == nullptr)
        return false;
    return clapGuard(false, [&] {
        float parsed = 0.0f;
        if (!parameter->parseText(text, parsed))
            return false;
        *value = static_cast<double>(parsed);
        return true;
    });
}

void flush(const clap_plugin* plugin, const clap_input_events* in, const clap_output_events* out) noexcept {
    ClapPluginAdapter::of(plugin).flush(in, out);
}

} // namespace

const clap_plugin_params clapParameters{parameterCount, getInfo, getValue, valueToText, textToValue, flush};
