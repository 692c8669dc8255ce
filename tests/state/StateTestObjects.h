// What the tests of stored things share: files made byte by byte from the tables of the formats, not by the code that
// is tested, and an instance in a home of its own.
#pragma once

#include "framework/zelk/ZelkPlugin.h"
#include "platform/Files.h"
#include "state/FactoryPresets.h"
#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

class Bytes {
public:
    Bytes& raw(std::string_view bytes) { return text += bytes, *this; }
    Bytes& i32(std::int64_t value) {
        for (int shift = 0; shift < 32; shift += 8)
            text += static_cast<char>(static_cast<std::uint64_t>(value) >> shift & 0xFF);
        return *this;
    }
    Bytes& i64(std::int64_t value) { return i32(value).i32(value >> 32); }
    Bytes& f32(float value) { return i32(std::bit_cast<std::int32_t>(value)); }
    Bytes& f32s(const std::vector<float>& values) {
        for (const float value : values)
            f32(value);
        return *this;
    }
    Bytes& string(std::string_view value) { return i32(std::ssize(value)).raw(value); }

    std::string text;
};

inline Bytes binaryPreset(std::string_view signature, std::int32_t version, const std::vector<float>& values) {
    Bytes bytes;
    bytes.raw(signature).i32(version).i32(std::ssize(values)).f32s(values);
    return bytes;
}

class StateTest : public testing::Test {
protected:
    std::string write(const std::string& name, const std::string& bytes) {
        home.write(name, bytes);
        return home.path(name);
    }

    static std::vector<float> valuesOf(const GenericPlugin& plugin) {
        std::vector<float> values;
        for (const AbstractPluginParameter* parameter : plugin.parameters())
            values.push_back(parameter->value());
        return values;
    }

    static std::vector<float> defaultsOf(const GenericPlugin& plugin) {
        std::vector<float> values;
        for (const AbstractPluginParameter* parameter : plugin.parameters())
            values.push_back(parameter->defaultValue());
        return values;
    }

    // Every parameter away from its default, at a value of its own.
    static void moveAll(GenericPlugin& plugin) {
        for (AbstractPluginParameter* parameter : plugin.parameters())
            parameter->setValue(
                parameter->defaultValue() != parameter->maximum() ? parameter->maximum() : parameter->minimum(), 0);
    }

    const TemporaryHome home;
};
