// Turns a stored preset, binary or text, into values of parameters. Whose parameters, which versions and where each
// value goes is told by the derived classes. Threads: main.
#pragma once

#include "base/CustomValueBlock.h"
#include "state/ErrorReporter.h"

#include <cstdint>
#include <istream>
#include <string>
#include <string_view>

class BinaryDataReader;
class GenericPlugin;
class SectionFileReader;

class PresetLoader : public ErrorReporter {
public:
    static constexpr std::int32_t anyAcceptedVersion = -1;

    PresetLoader(const PresetLoader&) = delete;
    PresetLoader& operator=(const PresetLoader&) = delete;
    virtual ~PresetLoader() = default;

    // expectedVersion below 0: acceptsVersion decides. An empty expectedSignature stands for signature(). The result is
    // the state of this reporter.
    ErrorReporter load(std::istream& stream, std::int32_t expectedVersion = anyAcceptedVersion,
                       std::string_view expectedSignature = {});

    bool hasCustomValues = true; // the preset is one of a whole plug-in: its custom values replace the present ones
    std::int32_t customValuesFromVersion = 0; // binary presets have custom values from this version on; 0: none has

protected:
    PresetLoader(GenericPlugin& owner, std::string_view expected) : plugin(owner), ownSignature(expected) {}

    virtual void finishLoad(std::int32_t) {} // version
    virtual std::int32_t parameterCount() = 0;
    virtual std::string_view signature(std::int32_t) { return ownSignature; } // version
    virtual void beginLoad(std::int32_t) {}                                   // version
    virtual bool acceptsVersion(std::int32_t) { return true; }
    virtual void resetParameter(std::int32_t index) = 0;
    virtual std::int32_t setParameterByName(std::string_view name, float value) = 0; // -1: unknown, which it reports
    virtual void setParameter(std::int32_t index, float value) = 0;

    void reportUnknownParameter(std::string_view name);
    bool isTextForm() const noexcept { return textForm; }

    GenericPlugin& plugin;

private:
    void loadBinary(BinaryDataReader& reader);
    void loadText(std::istream& stream, std::int32_t expectedVersion, std::string_view expected);
    void loadSections(SectionFileReader& reader, CustomValues& settings);
    bool checkVersion(std::int32_t version, std::int32_t expectedVersion);
    void reportUnknownSignature(std::string_view found);

    const std::string ownSignature;
    bool textForm = false;
};
