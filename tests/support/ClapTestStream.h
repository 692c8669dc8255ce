// A host's stream that takes and gives at most so many bytes a call, and fails when the test says so; and an instance's
// state through it.
// Threads: main.
#pragma once

#include "tests/support/ClapTestHost.h"

#include <algorithm>
#include <cstdint>
#include <string>

struct ClapTestStream {
    std::string bytes;
    std::size_t position = 0;
    std::size_t piece = 4096;
    std::size_t failAfter = std::string::npos;
    std::int64_t failure = -1;
    clap_ostream out{this, [](const clap_ostream* self, const void* data, std::uint64_t size) noexcept -> std::int64_t {
                         auto& stream = *static_cast<ClapTestStream*>(self->ctx);
                         if (stream.bytes.size() >= stream.failAfter)
                             return stream.failure;
                         const std::size_t count = std::min<std::size_t>(size, stream.piece);
                         stream.bytes.append(static_cast<const char*>(data), count);
                         return static_cast<std::int64_t>(count);
                     }};
    clap_istream in{this, [](const clap_istream* self, void* data, std::uint64_t size) noexcept -> std::int64_t {
                        auto& stream = *static_cast<ClapTestStream*>(self->ctx);
                        if (stream.position >= stream.failAfter)
                            return stream.failure;
                        const std::size_t count = stream.bytes.copy(
                            static_cast<char*>(data), std::min<std::size_t>(size, stream.piece), stream.position);
                        stream.position += count;
                        return static_cast<std::int64_t>(count);
                    }};
};

[[nodiscard]] inline bool save(const ClapTestInstance& instance, ClapTestStream& stream) {
    return instance.extension<clap_plugin_state>(CLAP_EXT_STATE)->save(instance.plugin, &stream.out);
}

[[nodiscard]] inline bool load(const ClapTestInstance& instance, ClapTestStream& stream) {
    return instance.extension<clap_plugin_state>(CLAP_EXT_STATE)->load(instance.plugin, &stream.in);
}

inline double valueOf(const ClapTestInstance& instance, clap_id id) {
    double value = -99.0;
    instance.extension<clap_plugin_params>(CLAP_EXT_PARAMS)->get_value(instance.plugin, id, &value);
    return value;
}
