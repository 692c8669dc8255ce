// A host for tests: loads the built library, answers what the test lets it answer, and runs blocks.
// Threads: those that the test chooses.
#pragma once

#include "host/clap/Clap.h"
#include "tests/support/TestSystem.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

// The loaded library, entry initialised. Unloads at its end.
class ClapTestLibrary {
public:
    explicit ClapTestLibrary(const char* path); // fails the test when the library does not load
    ~ClapTestLibrary();
    ClapTestLibrary(const ClapTestLibrary&) = delete;
    ClapTestLibrary& operator=(const ClapTestLibrary&) = delete;

    const clap_plugin_entry& entry() const { return *loadedEntry; }
    const clap_plugin_factory& factory() const;

private:
    const TestModule module;
    const clap_plugin_entry* const loadedEntry;
};

// Input events, sorted by the caller.
class ClapTestEvents {
public:
    ClapTestEvents();
    ClapTestEvents(const ClapTestEvents&) = delete;
    ClapTestEvents& operator=(const ClapTestEvents&) = delete;

    void addValue(std::uint32_t time, clap_id id, double value);
    void addMidi(std::uint32_t time, std::uint8_t status, std::uint8_t data1, std::uint8_t data2);
    void addNote(std::uint32_t time, bool on, int channel, int key, double velocity);
    void clear() { events.clear(); }
    const clap_input_events* list() const { return &table; }

private:
    union Event {
        clap_event_header header;
        clap_event_param_value value;
        clap_event_midi midi;
        clap_event_note note;
    };

    std::vector<Event> events;
    clap_input_events table{};
};

// Takes the plug-in's events. Reserved ahead, so that taking does not allocate.
class ClapTestOutput {
public:
    ClapTestOutput();
    ClapTestOutput(const ClapTestOutput&) = delete;
    ClapTestOutput& operator=(const ClapTestOutput&) = delete;

    const clap_output_events* list() const { return &table; }
    std::vector<clap_event_param_value> values;

private:
    clap_output_events table{};
};

// The host object that the plug-in sees, with all extensions or none.
class ClapTestHost {
public:
    enum class Offers { nothing, everything, emptyTables }; // emptyTables: extensions whose functions are all null

    explicit ClapTestHost(Offers wanted = Offers::everything);
    ClapTestHost(const ClapTestHost&) = delete;
    ClapTestHost& operator=(const ClapTestHost&) = delete;

    clap_host host{};
    std::string trackName = "Voice";
    std::atomic<int> callbacksAsked{0};
    std::atomic<int> latencyChanges{0};
    std::atomic<int> dirtyMarks{0};
    std::atomic<int> flushRequests{0};
    std::atomic<int> rescans{0};
    std::vector<std::string> presetsLoaded; // paths
    std::vector<std::string> presetErrors;  // path and message

private:
    const Offers offers;
};

// One instance, made by the library's factory or by the test, with buffers for its ports.
class ClapTestInstance {
public:
    ClapTestInstance(const ClapTestLibrary& library, ClapTestHost& host);
    explicit ClapTestInstance(const clap_plugin* made); // by the test, and not initialised yet
    ~ClapTestInstance();                                // through every state that it is in
    ClapTestInstance(const ClapTestInstance&) = delete;
    ClapTestInstance& operator=(const ClapTestInstance&) = delete;

    void start(double sampleRate, std::uint32_t maxFrames);
    void stop();

    template <typename Extension>
    const Extension* extension(const char* id) const {
        return static_cast<const Extension*>(plugin->get_extension(plugin, id));
    }

    // Runs the input, one vector a channel over all ports, in blocks of this length; the last may be shorter.
    std::vector<std::vector<float>> run(const std::vector<std::vector<float>>& input, std::uint32_t block);

    // One block, with what the test has put into the buffers.
    std::int32_t process(std::uint32_t frames);

    const clap_plugin* plugin = nullptr;
    std::vector<std::vector<float>> inputs; // of one block, over all ports
    std::vector<std::vector<float>> outputs;
    std::vector<std::uint64_t> inputMasks; // one a port
    ClapTestEvents events;
    ClapTestOutput taken;
    clap_event_transport* transport = nullptr;
    std::uint64_t outputMask = 0; // of the last block
    bool inPlace = false;         // the outputs use the memory of the main inputs

private:
    void shapeBuffers(std::uint32_t maxFrames);

    std::vector<std::uint32_t> portChannels; // of the inputs
    bool started = false;
};
