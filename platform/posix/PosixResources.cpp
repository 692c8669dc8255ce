#include "platform/ModuleResources.h"

// The loader knows none: all that the library carries stands in its table.
bool findModuleResource(std::string_view, std::string_view&) {
    return false;
}
