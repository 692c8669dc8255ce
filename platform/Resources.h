// The data that the library carries, under file-like names.
// Threads: any but where marked.
#pragma once

#include <istream>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

struct EmbeddedResource {
    std::string_view name; // without extension, in upper case
    std::string_view bytes;
};

// The one table, given by the library or the program that has it before anything asks. What it lacks is looked for
// among the resources that the system's loader keeps with the library.
void setEmbeddedResources(std::span<const EmbeddedResource> table) noexcept; // constant data; [main]

class EResource : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The extension of a name does not count, nor does case.
bool resourceExists(std::string_view name);
std::unique_ptr<std::istream> openResource(std::string_view name); // throws EResource when there is none
