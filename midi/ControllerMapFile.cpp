#include "midi/ControllerMapFile.h"

#include "framework/ControllerMapping.h"
#include "platform/BinaryFiles.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/Resources.h"

#include <fstream>
#include <sstream>

namespace {

constexpr char fileName[] = "MidiControllerMap.tvm";

} // namespace

ControllerMapFile::ControllerMapFile(const std::string& folder)
    : path(folder.empty() ? folder : appendPath(folder, fileName)) {}

bool ControllerMapFile::load(ControllerMapping& mapping) const {
    if (path.empty() || regularFileSize(path) < 0) // a pipe of that name would wait for ever
        return false;
    BinaryFileReader reader(openFile(path, std::ios::in | std::ios::binary));
    return mapping.read(reader);
}

bool ControllerMapFile::save(ControllerMapping& mapping) const {
    if (path.empty() || !createDirectories(std::string(folderOf(path))))
        return false;
    std::ostringstream bytes;
    BinaryDataWriter writer(&bytes);
    const bool modified = mapping.modified;
    mapping.write(writer);
    if (writer.good() && replaceFile(path, bytes.str()))
        return true;
    mapping.modified = modified;
    return false;
}

void ControllerMapFile::loadFactory(ControllerMapping& mapping) {
    mapping.clear();
    if (!resourceExists(fileName))
        return;
    BinaryResourceReader reader(fileName);
    static_cast<void>(mapping.read(reader)); // a resource that is none leaves the map empty
}
