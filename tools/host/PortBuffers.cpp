#include "tools/host/PortBuffers.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

constexpr std::size_t guardFrames = 16;

// A not-a-number with a payload of our own: no plug-in writes it by chance, and comparing bits finds it.
constexpr std::uint32_t guardBits = 0x7fc5a5a5;

} // namespace

PortBuffers::PortBuffers(const std::vector<AudioPort>& ports, std::uint32_t blockFrames) : capacity(blockFrames) {
    for (const AudioPort& port : ports) {
        std::vector<float*>& channels = pointers.emplace_back();
        for (std::uint32_t i = 0; i < port.channels; ++i)
            channels.push_back(memory.emplace_back(capacity + guardFrames, 0.0f).data());
    }
    for (std::vector<float*>& channels : pointers)
        buffers.push_back({channels.data(), nullptr, static_cast<std::uint32_t>(channels.size()), 0, 0});
}

void PortBuffers::fill(std::size_t port, const Channels& from, std::size_t offset, std::uint32_t count) noexcept {
    clap_audio_buffer& buffer = buffers[port];
    buffer.constant_mask = 0;
    for (std::uint32_t i = 0; i < buffer.channel_count; ++i) {
        float* to = buffer.data32[i];
        if (i < from.size()) {
            std::copy_n(from[i].data() + offset, count, to);
        } else {
            std::fill_n(to, count, 0.0f);
            if (i < 64)
                buffer.constant_mask |= std::uint64_t{1} << i;
        }
        std::fill_n(to + count, capacity + guardFrames - count, std::bit_cast<float>(guardBits));
    }
}

void PortBuffers::spoil(std::size_t port, std::uint32_t count) noexcept {
    clap_audio_buffer& buffer = buffers[port];
    buffer.constant_mask = 0;
    for (std::uint32_t i = 0; i < buffer.channel_count; ++i) {
        std::fill_n(buffer.data32[i], count, 0.5f);
        std::fill_n(buffer.data32[i] + count, capacity + guardFrames - count, std::bit_cast<float>(guardBits));
    }
}

void PortBuffers::share(PortBuffers& other) noexcept {
    const std::uint32_t shared = std::min(buffers[0].channel_count, other.buffers[0].channel_count);
    for (std::uint32_t i = 0; i < shared; ++i)
        buffers[0].data32[i] = other.buffers[0].data32[i];
}

bool PortBuffers::guardsIntact(std::uint32_t count) const noexcept {
    for (const clap_audio_buffer& buffer : buffers) {
        for (std::uint32_t i = 0; i < buffer.channel_count; ++i) {
            for (std::size_t frame = count; frame < capacity + guardFrames; ++frame) {
                std::uint32_t bits = 0;
                std::memcpy(&bits, buffer.data32[i] + frame, sizeof bits);
                if (bits != guardBits)
                    return false;
            }
        }
    }
    return true;
}
