#include "framework/SettingSerializer.h"

#include "base/NumberText.h"

bool SettingSerializer::boolValue(std::string_view name, bool value, bool standard) {
    return intValue(name, value ? 1 : 0, standard ? 1 : 0) != 0;
}

float SettingSerializer::floatValue(std::string_view name, float value, float standard) {
    constexpr int digits = 15;
    std::string text;
    stringValue(text, name, generalText(static_cast<double>(value), digits),
                generalText(static_cast<double>(standard), digits));
    double number = 0.0;
    return readNumber(text, number) == text.size() && !text.empty() ? static_cast<float>(number) : standard;
}
