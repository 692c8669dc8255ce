// The editor side of an instance, whatever the product: its parameters as the interface and the host see them, and the
// road of a change between interface, host and audio side. It never touches audio.
// Threads: [main] but where marked.
#pragma once

#include "base/AsyncEventQueue.h"
#include "base/Realtime.h"
#include "framework/ControllerMapping.h"
#include "framework/CurrentPreset.h"
#include "framework/GenericPluginBase.h"
#include "framework/MidiMessage.h"
#include "framework/ParameterIdSet.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

class ExchangeStream;
class PluginSettings;
class ReceivedSources;
class SettingSerializer;
class SharedPluginSettings;

class GenericPlugin : public GenericPluginBase, public MidiMessageReceiver {
public:
    // What the editor side asks of whatever binds it to a host.
    class Adapter {
    public:
        virtual void syncControllerMapping() = 0;
        virtual void latencyChanged() = 0;
        virtual void sendMidiToProcessor(const MidiMessage& message) = 0;
        virtual void sendParameterToHost(std::int32_t id) = 0; // negative: all values, in the way that it names
        virtual void stateChanged(std::int32_t kind) = 0;
        virtual void exchangeSources() = 0;
        virtual void setProcessorValue(std::int32_t id, float value) = 0;
        virtual ~Adapter() = default;
        virtual void postParameterValue(std::int32_t id, float value) noexcept = 0; // [any]
        virtual float processorValue(std::int32_t id) const noexcept = 0;           // as the audio side has it now
    };

    // The one interface. A call is cheap: it only queues.
    class Listener {
    public:
        virtual void pluginEvent(std::int32_t code, std::int32_t argument) = 0; // [any]

        // Around every change of what the interface reads of the audio side: no display reads meanwhile.
        virtual void lockInterface() {}
        virtual void unlockInterface() {}

    protected:
        ~Listener() = default;
    };

    class InstanceProxy;
    using Settings = PluginSettings;
    using SharedSettings = SharedPluginSettings;

    struct InterfaceSize {
        int width = 0;
        int height = 0;
    };

    // Codes of Listener::pluginEvent.
    static constexpr std::int32_t eventParameter = -1025; // id, or -1 for all
    static constexpr std::int32_t eventPreset = -1026;
    static constexpr std::int32_t eventMidi = -1027; // code of the audio side
    static constexpr std::int32_t eventInterfaceState = -1028;
    static constexpr std::int32_t eventControllerMap = -1029;
    static constexpr std::int32_t eventLayout = -1030;
    static constexpr std::int32_t eventInstanceNames = -1031;
    static constexpr std::int32_t eventCustomValues = -1032;

    // How a batch reaches the audio side.
    static constexpr std::int32_t allValuesSmoothed = -1;
    static constexpr std::int32_t allValuesAtOnce = -2;
    static constexpr std::int32_t allValuesWithReset = -3;

    // Kinds of Adapter::stateChanged.
    static constexpr std::int32_t presetLoaded = 0;
    static constexpr std::int32_t instanceNamed = 1;

    GenericPlugin();
    ~GenericPlugin() override;

    // Binding.
    void setAdapter(Adapter* bound) noexcept { adapter = bound; } // not owned, null unbinds
    virtual void adapterBound() {}
    // Not owned. Waits until no call of the old one runs and no other instance exchanges for this one; so the caller
    // holds no lock of the instance.
    void setListener(Listener* wanted);
    AsyncEventQueue& asyncQueue() noexcept { return *queue; }
    void drain(); // what other threads left for this one

    // Changes.
    void beginChange() noexcept override; // [any]
    void endChange() noexcept override;   // [any]
    virtual void markJump();
    virtual void markReset();
    void parameterChanged(std::int32_t id, float value, std::uint32_t flags) noexcept override; // [any but audio]

    // From the audio thread: nothing of this object runs there. The value is stored and the rest waits for drain.
    void automate(std::int32_t id, float value) noexcept REALTIME;                     // [audio]
    void followProcessor(std::int32_t id) noexcept REALTIME;                           // [any]
    void postProgramChange(std::int32_t bank, std::int32_t program) noexcept REALTIME; // [audio]
    void postMidiActivity(std::int32_t code) noexcept REALTIME;                        // [audio]
    void takeAutomation(); // brings what the audio side moved into this side; before anything reads the values

    void receive(const MidiMessage& message) noexcept override; // to the audio side

    // The instance.
    void setSampleRate(float rate); // Hz
    float sampleRate() const noexcept { return rate; }
    void setLayout(int wanted);
    int layout() const noexcept { return layoutIndex; }
    std::int32_t latency() const noexcept { return latencySamples.load(std::memory_order_relaxed); } // [any] samples
    virtual void updateLatency() {}
    const std::string& instanceName() const noexcept { return ownInstanceName; }
    // Empty: named after the product, with a number when taken. The host hears that its state has changed if it shall.
    void setInstanceName(std::string_view wanted, bool tellHost = true);
    std::int32_t instanceId();                                              // given at the first question
    std::int32_t givenInstanceId() const noexcept { return ownInstanceId; } // -1: not yet
    bool hasAutomaticName() const noexcept { return automaticName; }

    // What the audio side shows. The interface's timer exchanges, never a thread that draws; without an interface,
    // instances that look at this one do.
    static constexpr std::uint32_t leastExchangeMs = 5;
    ReceivedSources& sources() noexcept { return *received; }
    bool exchangeWhenDue();                                                                        // true: it was
    void readSources(ExchangeStream& stream);                                                      // [adapter lock]
    void setExchangeClock(std::uint32_t (*wanted)() noexcept) noexcept { exchangeClock = wanted; } // milliseconds
    // One for each instance of the process; all of them have ids from here on.
    static std::vector<std::unique_ptr<InstanceProxy>> instanceProxies(const GenericPlugin* except);

    virtual bool sideChainSwitch() const noexcept { return true; } // opens the side chain port, with the capability

    // Presets.
    CurrentPreset& currentPreset() noexcept { return preset; }
    ParameterCollection& interfaceCollection() noexcept { return interfaceParameters; } // stay when a preset loads
    virtual std::string_view presetExtension() const noexcept { return ".tvp"; }
    virtual std::string_view defaultPresetName() const noexcept;
    // Replaces all values but those of the interface collection. The result is the error, empty when all went well;
    // after an error name and path of the current preset stay.
    std::string loadPresetFile(const std::string& path);
    // compareLength: how many characters must differ from the present name, -1: all count.
    virtual void setCurrentPresetName(std::string_view wanted, std::int32_t compareLength);

    // The state that a host keeps: the parameters' block, then the product's own. False: failed.
    [[nodiscard]] bool writeParameterBlock(std::ostream& stream);
    // Sets what is there up to the first value that is not. begun: it was a block of ours, so values may have changed.
    [[nodiscard]] bool readParameterBlock(std::istream& stream, bool& begun);
    [[nodiscard]] virtual bool writeState(std::ostream&) { return true; }
    [[nodiscard]] virtual bool readState(std::istream&) { return true; }
    std::map<std::string, std::string> customValues;
    std::vector<std::uint8_t> interfaceState;

    // Settings.
    Settings& settings() noexcept { return *ownSettings; }
    SharedSettings& sharedSettings() noexcept; // of the process
    std::string defaultPresetFolder();         // in the user's documents; empty: this user has none

    // Names.
    std::int32_t registerGroup(std::string_view groupName) override;
    void registerAlias(AbstractPluginParameter& parameter, std::string_view alias) override;
    const std::vector<std::string>& groupNames() const noexcept { return groups; }
    const std::map<std::string, std::int32_t>& aliases() const noexcept { return aliasMap; }

    // The window.
    virtual bool hasInterface() const noexcept { return false; }
    virtual bool canResize() const noexcept { return false; }
    virtual std::span<const InterfaceSize> interfaceSizes() const noexcept { return {}; }
    void constrainSize(int& width, int& height) const noexcept;
    virtual int panelCount() const noexcept { return 0; }          // panels that open beside the main part
    virtual int panelExtent(int, int) const noexcept { return 0; } // index; axis, 0: width, 1: height
    virtual int interfaceWidth() const;                            // as the settings choose
    virtual int interfaceHeight() const;
    virtual int maxWidth() const; // of that and all of the table
    virtual int maxHeight() const;

    // The controller map of the process. The first instance loads it, the last one saves it if it was changed.
    ControllerMapping& controllerMapping() noexcept;
    [[nodiscard]] virtual bool loadControllerMap() { return false; } // from the user's file; false: it stays as it is
    virtual void loadFactoryControllerMap() {}
    virtual void saveControllerMap() {} // to that file; a failure is nobody's business

protected:
    // [main] Joins the instances of the process; the first makes what all share. The derived constructor calls it.
    void init();
    void end(); // the reverse; the derived destructor calls it

    // What all instances share: made for the first instance and destroyed with the last, under processSection. A
    // derived class calls its base first when it creates, and last when it destroys.
    virtual void createGlobals();
    virtual void destroyGlobals();
    virtual std::unique_ptr<SharedSettings> createSharedSettings();
    virtual std::unique_ptr<Settings> createSettings();

    // Preset files, which the framework does not read itself.
    virtual void presetFolderChanged(const std::string&) {}               // scans it; called once at the start too
    virtual bool hasPresets() const { return true; }                      // in that folder
    virtual bool installFactoryPresets(bool) { return true; }             // true: over files that stand there already
    virtual std::string presetPath(std::string_view) const { return {}; } // of this name; empty: none
    virtual std::string runPresetLoad(const std::string&);                // sets the values; the result is the error
    virtual void loadInterfaceDefaults() {}
    void loadDefaultPreset(); // the end of the derived class's construction

    virtual void afterParameterChange(std::int32_t) {}      // id, or -1 at the end of a batch
    virtual void loadProgram(std::int32_t, std::int32_t) {} // bank and program of a MIDI program change
    void storeLatency(std::int32_t samples);                // tells the host when it differs, on the main thread
    void tellListener(std::int32_t code, std::int32_t argument);
    void tellStateChanged(std::int32_t kind); // to the host
    // From a project: the host is not told, it knows.
    void restoreInstanceName(bool automatic, std::string_view name);
    void restoreInstanceId(std::int32_t stored); // unless another instance has it; -1: none was stored
    bool onMainThread() const noexcept { return std::this_thread::get_id() == mainThread; }

private:
    enum class Pending { nothing, withEcho, silentOnly };

    // The listener's interface, held for a scope.
    class InterfaceHold {
    public:
        explicit InterfaceHold(GenericPlugin& plugin);
        ~InterfaceHold();
        InterfaceHold(const InterfaceHold&) = delete;
        InterfaceHold& operator=(const InterfaceHold&) = delete;
        bool isWatched() const noexcept { return held != nullptr; }

    private:
        GenericPlugin& owner;
        Listener* held = nullptr;
    };

    void makeSources();
    void exchangeForOthers(); // under processSection; nothing while there is an interface, or on another thread

    void handleAsync();
    void sendToAdapter(std::int32_t id);
    void noteChange(std::int32_t id, float value);
    void controllerMapChanged();
    void readSettings();
    void passSettings(SettingSerializer& serializer);
    void recordVersion();
    void chooseName();
    void takeName(std::string wanted);

    Adapter* adapter = nullptr;
    std::unique_ptr<AsyncEventQueue> queue;
    std::atomic<Listener*> listener{nullptr};
    std::atomic<std::int32_t> listenerUse{0}; // calls of the listener that run now; setListener waits for 0
    std::vector<std::string> groups{""};
    std::map<std::string, std::int32_t> aliasMap;
    std::unique_ptr<ParameterIdSet> automated;
    CurrentPreset preset;
    std::unique_ptr<Settings> ownSettings;
    ParameterCollection interfaceParameters{this};
    std::unique_ptr<ReceivedSources> received;
    std::uint32_t (*exchangeClock)() noexcept; // milliseconds, wraps
    std::uint32_t lastExchange = 0;            // by that clock
    bool exchanged = false;                    // once at least
    std::atomic<Pending> pendingKind{Pending::nothing};
    std::int32_t pendingId = allValuesSmoothed;
    std::atomic<std::int32_t> latencySamples{0};
    const std::thread::id mainThread = std::this_thread::get_id();
    float rate = 44100.0f;
    int layoutIndex = 1;
    std::int32_t ownInstanceId = -1; // until given
    std::string ownInstanceName;
    bool automaticName = true;
    bool joined = false;
    bool initialLoad = false; // the default preset is being loaded
};
