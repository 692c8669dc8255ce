// What every other part of the CLAP interface uses: version, sizes, ids, streams, colour.
// Include "host/clap/Clap.h", which brings all parts.
#pragma once

#include <cstdint>

using clap_id = std::uint32_t;
using clap_timestamp_t = std::uint64_t; // seconds since 1970

inline constexpr std::uint32_t CLAP_VERSION_MAJOR = 1;
inline constexpr std::uint32_t CLAP_VERSION_MINOR = 1;
inline constexpr std::uint32_t CLAP_VERSION_REVISION = 10;

inline constexpr std::uint32_t CLAP_NAME_SIZE = 256;
inline constexpr std::uint32_t CLAP_PATH_SIZE = 1024;
inline constexpr clap_id CLAP_INVALID_ID = 4294967295u;

extern "C" {

// Version of these declarations, never of a product.
struct clap_version {
    std::uint32_t major;
    std::uint32_t minor;
    std::uint32_t revision;
};

// read gives the bytes read, perhaps fewer than asked, 0 at the end and -1 on an error.
struct clap_istream {
    void* ctx;
    std::int64_t (*read)(const clap_istream*, void* buffer, std::uint64_t size) noexcept;
};

// write gives the bytes written, perhaps fewer than asked, and -1 on an error.
struct clap_ostream {
    void* ctx;
    std::int64_t (*write)(const clap_ostream*, const void* buffer, std::uint64_t size) noexcept;
};

struct clap_color {
    std::uint8_t alpha; // first byte
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;
};

} // extern "C"

// What a peer may expect: compatible when its major number is at least 1.
inline constexpr clap_version CLAP_VERSION{CLAP_VERSION_MAJOR, CLAP_VERSION_MINOR, CLAP_VERSION_REVISION};
