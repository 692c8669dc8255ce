#include "state/FactoryPresets.h"

#include "platform/Resources.h"
#include "state/ResourceArchive.h"

#include <iterator>

namespace {

constexpr std::string_view archiveName = "WindowsSetupDocs";

} // namespace

bool unpackFactoryPresets(const std::string& dataFolder, const std::string& presetFolder, FactoryFiles how) {
    if (!resourceExists(archiveName))
        return false;
    const std::unique_ptr<std::istream> stream = openResource(archiveName);
    const std::string bytes(std::istreambuf_iterator<char>(*stream), {});
    const ResourceArchive archive(bytes);
    if (!dataFolder.empty())
        static_cast<void>(archive.unpack("ApplicationData", dataFolder, how)); // presets do not depend on it
    return !presetFolder.empty() && archive.unpack("FactoryPresets", presetFolder, how);
}
