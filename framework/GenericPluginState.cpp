// Presets as far as the framework knows them, and the block of all values in a host's state.
#include "base/BinaryDataReader.h"
#include "base/BinaryDataWriter.h"
#include "framework/AbstractPluginParameter.h"
#include "framework/ChangeBracket.h"
#include "framework/GenericPlugin.h"
#include "platform/Paths.h"

#include <algorithm>

namespace {

constexpr std::string_view blockSignature = "TVBS";
constexpr std::int32_t blockVersion = 1;

} // namespace

std::string_view GenericPlugin::defaultPresetName() const noexcept {
    return info.type == GenericPluginInfo::Type::instrument ? "Default Sound" : "Default Setting";
}

void GenericPlugin::loadDefaultPreset() {
    initialLoad = true;
    const std::string path = presetPath(defaultPresetName());
    if (path.empty())
        loadInterfaceDefaults();
    else
        static_cast<void>(loadPresetFile(path)); // a damaged one leaves the defaults
    initialLoad = false;
}

std::string GenericPlugin::loadPresetFile(const std::string& path) {
    std::string error;
    {
        const ChangeBracket batch(*this);
        std::vector<float> kept;
        for (const AbstractPluginParameter* parameter : interfaceParameters)
            kept.push_back(parameter->value());
        error = runPresetLoad(path);
        if (initialLoad)
            loadInterfaceDefaults();
        else
            for (std::int32_t index = 0; index < interfaceParameters.count(); ++index)
                interfaceParameters.at(index).setValue(kept[static_cast<std::size_t>(index)], 0);
        markJump();
    }
    if (!error.empty())
        return error;
    preset.setName(stripExtension(fileNameOf(path)));
    preset.setPath(path);
    preset.setModified(false);
    if (adapter != nullptr)
        adapter->stateChanged(presetLoaded);
    tellListener(eventPreset, 0);
    return error;
}

std::string GenericPlugin::runPresetLoad(const std::string&) {
    return "Presets of this kind cannot be read.";
}

void GenericPlugin::setCurrentPresetName(std::string_view wanted, std::int32_t compareLength) {
    const std::size_t length = compareLength < 0 ? std::string_view::npos : static_cast<std::size_t>(compareLength);
    if (wanted.substr(0, length) == std::string_view(preset.name()).substr(0, length))
        return;
    preset.setName(wanted);
    preset.setPath(presetPath(wanted));
    tellListener(eventPreset, 0);
}

bool GenericPlugin::writeParameterBlock(std::ostream& stream) {
    takeAutomation();
    BinaryDataWriter writer(&stream);
    writer.writeHeader(blockSignature, blockVersion);
    writer.writeInt32(parameterCount());
    for (std::int32_t id = 0; id < parameterCount(); ++id)
        writer.writeFloat(parameter(id).value());
    return writer.good();
}

bool GenericPlugin::readParameterBlock(std::istream& stream) {
    BinaryDataReader reader(&stream);
    if (reader.readHeader() != blockSignature)
        return false;
    const std::int32_t stored = reader.readInt32();
    if (stored < 0)
        return false;
    // All are read before the first is set, so that a block without its end changes nothing.
    std::vector<float> values;
    for (std::int32_t index = 0; index < stored && reader.good(); ++index) {
        const float value = reader.readFloat();
        if (index < parameterCount()) // later versions may have stored more
            values.push_back(value);
    }
    if (!reader.good())
        return false;
    const ChangeBracket batch(*this);
    for (std::int32_t id = 0; id < parameterCount(); ++id) {
        const auto index = static_cast<std::size_t>(id);
        parameter(id).setValue(index < values.size() ? values[index] : parameter(id).defaultValue(), silent);
    }
    markJump();
    return true;
}
