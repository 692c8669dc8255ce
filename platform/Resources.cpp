#include "platform/Resources.h"

#include "platform/Paths.h"

#include <algorithm>
#include <sstream>

namespace {

std::span<const EmbeddedResource> embedded;

char upperCase(char c) noexcept {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

const EmbeddedResource* findResource(std::string_view name) noexcept {
    const std::string_view wanted = stripExtension(name);
    for (const EmbeddedResource& resource : embedded)
        if (std::equal(wanted.begin(), wanted.end(), resource.name.begin(), resource.name.end(),
                       [](char a, char b) { return upperCase(a) == upperCase(b); }))
            return &resource;
    return nullptr;
}

} // namespace

void setEmbeddedResources(std::span<const EmbeddedResource> table) noexcept {
    embedded = table;
}

bool resourceExists(std::string_view name) noexcept {
    return findResource(name) != nullptr;
}

std::unique_ptr<std::istream> openResource(std::string_view name) {
    const EmbeddedResource* const resource = findResource(name);
    if (resource == nullptr)
        throw EResource("Resource not found");
    return std::make_unique<std::istringstream>(std::string(resource->bytes), std::ios::in | std::ios::binary);
}
