// Presets as far as the framework knows them, and the block of all values in a host's state.
#include "base/BinaryDataReader.h"
#include "base/BinaryDataWriter.h"
#include "base/Utf8.h"
#include "framework/AbstractPluginParameter.h"
#include "framework/ChangeBracket.h"
#include "framework/GenericPlugin.h"
#include "platform/Paths.h"

#include <algorithm>
#include <cmath>

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
    const std::map<std::string, std::string> formerValues = customValues;
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
    if (customValues != formerValues)
        tellListener(eventCustomValues, 0);
    if (!error.empty())
        return error;
    preset.setName(validUtf8(stripExtension(fileNameOf(path))));
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

bool GenericPlugin::readParameterBlock(std::istream& stream, bool& begun) {
    BinaryDataReader reader(&stream);
    const std::string signature = reader.readHeader();
    const std::int32_t stored = reader.readInt32();
    begun = signature == blockSignature && reader.good() && stored >= 0;
    if (!begun)
        return false;
    const ChangeBracket batch(*this);
    const auto set = [this](std::int32_t id, float value) {
        AbstractPluginParameter& restored = parameter(id);
        restored.setValue(std::isfinite(value) ? value : restored.defaultValue(), silent);
    };
    for (std::int32_t id = 0; id < stored && reader.good(); ++id) { // whatever the count says: it ends with the bytes
        const float value = reader.readFloat();
        if (reader.good() && id < parameterCount()) // later versions may have stored more
            set(id, value);
    }
    for (std::int32_t id = stored; id < parameterCount() && reader.good(); ++id)
        set(id, parameter(id).defaultValue());
    markJump();
    return reader.good();
}
