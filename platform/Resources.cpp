#include "platform/Resources.h"

#include "platform/ModuleResources.h"
#include "platform/Paths.h"

#include <algorithm>
#include <sstream>

namespace {

std::span<const EmbeddedResource> embedded;

char upperCase(char c) noexcept {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool findResource(std::string_view name, std::string_view& bytes) {
    const std::string_view wanted = stripExtension(name);
    for (const EmbeddedResource& resource : embedded)
        if (std::equal(wanted.begin(), wanted.end(), resource.name.begin(), resource.name.end(),
                       [](char a, char b) { return upperCase(a) == upperCase(b); })) {
            bytes = resource.bytes;
            return true;
        }
    return findModuleResource(wanted, bytes);
}

} // namespace

void setEmbeddedResources(std::span<const EmbeddedResource> table) noexcept {
    embedded = table;
}

bool resourceExists(std::string_view name) {
    std::string_view bytes;
    return findResource(name, bytes);
}

std::unique_ptr<std::istream> openResource(std::string_view name) {
    std::string_view bytes;
    if (!findResource(name, bytes))
        throw EResource("Resource not found");
    return std::make_unique<std::istringstream>(std::string(bytes), std::ios::in | std::ios::binary);
}
