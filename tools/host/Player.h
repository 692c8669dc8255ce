// Feeds an instance block by block and gathers what comes out: buffers, events, the sample clock, and how long each
// block took.
// Threads: main; the blocks themselves run on the instance's audio thread.
#pragma once

#include "tools/host/EventList.h"
#include "tools/host/PluginInstance.h"
#include "tools/host/PortBuffers.h"
#include "tools/host/Ports.h"
#include "tools/host/SoundFile.h"

#include <cstddef>
#include <cstdint>
#include <vector>

class Player {
public:
    struct Settings {
        double sampleRate = 48000.0;
        std::uint32_t blockFrames = 256;
        bool inPlace = false; // the main input and output share their memory
    };

    struct Figures {
        std::uint64_t frames = 0;
        double seconds = 0.0;      // spent inside process
        double worstSeconds = 0.0; // of one block
        std::uint64_t worstFrame = 0;
        std::uint32_t worstFrames = 0; // length of that block
        std::uint64_t notFinite = 0;   // samples of the main output that were no numbers
    };

    // Activates the instance and starts processing; its ports must not change from here on.
    Player(PluginInstance& wanted, const Settings& chosen, EventList& eventList);
    ~Player(); // stops and deactivates
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    // Runs `frames` samples. One entry of `inputs` a port, an empty or missing one is silence. `output` gets the main
    // output. Throws Failure when the plug-in reports an error.
    void play(std::size_t frames, const std::vector<Channels>& inputs, Channels& output);

    const AudioPorts& ports() const { return layout; }
    const Figures& figures() const { return measured; }

private:
    void block(std::size_t offset, std::uint32_t count, const std::vector<Channels>& from, Channels& to);

    PluginInstance& instance;
    const Settings settings;
    EventList& events;
    OutputEvents produced;
    const AudioPorts layout;
    PortBuffers inputBuffers;
    PortBuffers outputBuffers;
    Figures measured;
    bool failed = false;
};
