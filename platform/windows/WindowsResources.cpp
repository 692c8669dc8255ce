#include "platform/ModuleResources.h"
#include "platform/windows/WindowsModule.h"
#include "platform/windows/WindowsText.h"

bool findModuleResource(std::string_view name, std::string_view& bytes) {
    const HMODULE module = ownModule();
    const HRSRC place = FindResourceW(module, wideText(name).c_str(), RT_RCDATA); // without regard to case
    const HGLOBAL loaded = place != nullptr ? LoadResource(module, place) : nullptr;
    const void* const data = loaded != nullptr ? LockResource(loaded) : nullptr;
    if (data == nullptr)
        return false;
    bytes = {static_cast<const char*>(data), SizeofResource(module, place)};
    return true;
}
