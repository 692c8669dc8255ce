// What settings pass through, each by its name. A reader gives what is stored, or the standard; a writer stores the
// value and gives it back. So one list of names serves both ways.
// Threads: main.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class SettingSerializer {
public:
    virtual ~SettingSerializer() = default;

    virtual bool isWriter() const noexcept = 0;
    virtual void blobValue(std::string_view name, std::vector<std::uint8_t>& bytes) = 0; // no standard: empty
    virtual bool boolValue(std::string_view name, bool value, bool standard);            // stored as 0 or 1
    virtual float floatValue(std::string_view name, float value, float standard);        // stored as text
    virtual std::int32_t intValue(std::string_view name, std::int32_t value, std::int32_t standard) = 0;
    virtual void stringValue(std::string& result, std::string_view name, std::string_view value,
                             std::string_view standard) = 0;
};
