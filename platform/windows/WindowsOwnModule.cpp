#include "platform/OwnModule.h"
#include "platform/windows/WindowsModule.h"
#include "platform/windows/WindowsText.h"

#include <atomic>

namespace {

std::atomic<HMODULE> foundModule{nullptr};

HMODULE moduleOfThisCode() noexcept {
    HMODULE module = nullptr;
    constexpr DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    GetModuleHandleExW(flags, reinterpret_cast<const wchar_t*>(&moduleOfThisCode), &module);
    return module;
}

} // namespace

HMODULE ownModule() noexcept {
    const HMODULE found = foundModule.load();
    return found != nullptr ? found : moduleOfThisCode();
}

bool findOwnModule(std::string_view pathFromHost, std::string& path) {
    const HMODULE module = GetModuleHandleW(wideText(pathFromHost).c_str());
    if (pathFromHost.empty() || module == nullptr)
        return false;
    foundModule.store(module);
    path = pathFromHost;
    return true;
}
