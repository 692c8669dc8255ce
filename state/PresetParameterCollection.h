// A list of parameters that is stored as a preset: all of a plug-in, or a chosen few. It knows their names and writes
// them to files.
// Threads: main.
#pragma once

#include "framework/ParameterCollection.h"
#include "state/ErrorReporter.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

class GenericPlugin;

class PresetParameterCollection {
public:
    // The list must be complete and outlive this object. An empty signature stands for the plug-in's.
    PresetParameterCollection(GenericPlugin& owner, const ParameterCollection& list, std::string_view wanted = {});
    PresetParameterCollection(const PresetParameterCollection&) = delete;
    PresetParameterCollection& operator=(const PresetParameterCollection&) = delete;

    std::int32_t count() const noexcept { return parameters.count(); }
    AbstractPluginParameter& at(std::int32_t index) const noexcept { return parameters.at(index); }
    bool isWholeList() const noexcept; // of the plug-in
    const std::string& signature() const noexcept { return ownSignature; }

    std::int32_t indexOf(std::string_view name) const; // by name or other name, -1: none
    std::int32_t indexOf(const AbstractPluginParameter& parameter) const noexcept;

    // "Band 3 " when every name begins with it, or with "Num Active " and it; else empty.
    std::string namePrefix() const;
    static std::string cutName(const std::string& name, std::string_view prefix);
    std::int32_t indexOfCutName(std::string_view name, std::string_view prefix) const;

    // firstIndex -1: all. Else those from it on are written into the file that is there, which keeps the others; false
    // when that file is none of ours. The old file stays whole when anything fails.
    [[nodiscard]] bool save(const std::string& path, std::int32_t version, std::int32_t firstIndex = -1,
                            std::int32_t savedCount = 1) const;
    ErrorReporter load(const std::string& path, std::int32_t version) const;

    // The bytes of the file that save would write.
    std::string bytesToSave(std::int32_t version) const;

    std::int32_t customValuesFromVersion = 0; // as that of the loaders

private:
    bool savesText() const noexcept;
    std::string binaryBytes(std::int32_t version) const;
    std::string textBytes(std::int32_t version) const;
    [[nodiscard]] bool patchBinary(std::string& bytes, std::int32_t version, std::int32_t first,
                                   std::int32_t end) const;
    [[nodiscard]] bool patchText(std::string& bytes, std::int32_t version, std::int32_t first, std::int32_t end) const;

    GenericPlugin& plugin;
    const ParameterCollection& parameters;
    const std::string ownSignature;
    std::map<std::string, std::int32_t, std::less<>> indices; // by name
};
