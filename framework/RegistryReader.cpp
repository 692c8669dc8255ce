#include "framework/RegistryReader.h"

template <typename T>
const T* RegistryReader::find(std::string_view name) const {
    const auto found = values.find(std::string(name));
    return found != values.end() ? std::get_if<T>(&found->second) : nullptr;
}

void RegistryReader::blobValue(std::string_view name, std::vector<std::uint8_t>& bytes) {
    const auto* const stored = find<SettingBytes>(name);
    bytes = stored != nullptr ? *stored : SettingBytes{};
}

std::int32_t RegistryReader::intValue(std::string_view name, std::int32_t, std::int32_t standard) {
    const auto* const stored = find<std::int32_t>(name);
    return stored != nullptr ? *stored : standard;
}

void RegistryReader::stringValue(std::string& result, std::string_view name, std::string_view,
                                 std::string_view standard) {
    const auto* const stored = find<std::string>(name);
    result = stored != nullptr ? std::string_view(*stored) : standard;
}
