#include "framework/RegistryWriter.h"

RegistryWriter::~RegistryWriter() {
    if (values.empty())
        return;
    try {
        static_cast<void>(writeSettings(key, values));
    } catch (...) { // no memory: then nothing is stored
    }
}

void RegistryWriter::blobValue(std::string_view name, std::vector<std::uint8_t>& bytes) {
    values.insert_or_assign(std::string(name), bytes);
}

std::int32_t RegistryWriter::intValue(std::string_view name, std::int32_t value, std::int32_t) {
    values.insert_or_assign(std::string(name), value);
    return value;
}

void RegistryWriter::stringValue(std::string& result, std::string_view name, std::string_view value, std::string_view) {
    values.insert_or_assign(std::string(name), std::string(value));
    result = value;
}
