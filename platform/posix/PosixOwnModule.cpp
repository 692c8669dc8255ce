#include "platform/OwnModule.h"

#include <dlfcn.h>

bool findOwnModule(std::string_view, std::string& path) {
    Dl_info module{};
    if (dladdr(reinterpret_cast<const void*>(&findOwnModule), &module) == 0 || module.dli_fname == nullptr)
        return false;
    path = module.dli_fname;
    return true;
}
