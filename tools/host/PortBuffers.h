// The sample buffers of all ports of one side, as the process call wants them, with guard samples behind each channel.
// Threads: built on main, filled and read on audio without allocation.
#pragma once

#include "host/clap/Clap.h"
#include "tools/host/Ports.h"
#include "tools/host/SoundFile.h"

#include <cstddef>
#include <cstdint>
#include <vector>

class PortBuffers {
public:
    PortBuffers(const std::vector<AudioPort>& ports, std::uint32_t blockFrames);
    PortBuffers(const PortBuffers&) = delete;
    PortBuffers& operator=(const PortBuffers&) = delete;

    clap_audio_buffer* clap() { return buffers.data(); }
    std::uint32_t ports() const { return static_cast<std::uint32_t>(buffers.size()); }
    float* channel(std::size_t port, std::size_t index) { return buffers[port].data32[index]; }

    // Fills a port from a piece of its channels; empty channels are silence.
    void fill(std::size_t port, const Channels& from, std::size_t offset, std::uint32_t count) noexcept;

    // Puts noise into a port, so that a channel that the plug-in leaves alone does not pass for silence.
    void spoil(std::size_t port, std::uint32_t count) noexcept;

    // Lets the first port use the memory of another side's first port.
    void share(PortBuffers& other) noexcept;

    bool guardsIntact(std::uint32_t count) const noexcept; // count: frames of the block just processed

private:
    std::uint32_t capacity;
    std::vector<std::vector<float>> memory;
    std::vector<std::vector<float*>> pointers; // one list a port
    std::vector<clap_audio_buffer> buffers;
};
