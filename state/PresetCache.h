// An index over a tree of presets: author, description, tags, favourites and the words of each, kept in a file so that
// presets need not be opened at every start. A thread of its own reads those that are new or changed.
// Threads: main; each operation takes the object's lock, which the reading thread shares.
#pragma once

#include "base/CriticalSection.h"
#include "base/NotifyEvent.h"
#include "state/PresetManager.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class PresetCache : public PresetTreeListener, public EventSender, private LockedObject {
public:
    enum class State : std::int32_t { stopping, running, complete };

    // Where a word of a preset comes from, and with it what a match weighs.
    enum class WordClass : std::int32_t { name, author, description, tag };

    struct Source {
        std::vector<std::string> signatures;      // of presets that the product can load
        std::int32_t customValuesFromVersion = 0; // of binary ones; 0: they have no metadata
    };

    static constexpr std::int32_t currentVersion = 4;

    PresetCache(std::string file, Source wanted);
    virtual ~PresetCache(); // stops the reading, saves

    void load();               // what the file and the roots' favourites hold; nothing after damage
    [[nodiscard]] bool save(); // the file, and the favourites of each root
    void sync(const std::vector<Preset*>& presets, const std::vector<std::string>& roots); // begins the reading
    void treeScanned(const std::vector<Preset*>& presets, const std::vector<std::string>& roots) override {
        sync(presets, roots);
    }
    void finish(); // waits until all is read

    void add(const Preset& preset);
    void remove(const Preset& preset);
    bool contains(const Preset& preset);
    bool describe(Preset& preset); // fills in author, description and tags; false: nothing is known
    bool isFavorite(const Preset& preset);
    void setFavorite(const Preset& preset, bool on);
    State state() const noexcept { return workState.load(); } // [any]

    // Paths of the presets that have every word, in any of its forms that begin so; the best first.
    std::vector<std::string> search(std::string_view words);

    // Rewrites the file with these metadata, if it is a preset of ours. False: it stays as it was.
    [[nodiscard]] bool writeMetadata(const Preset& preset);

    NotifyEvent changed; // [the reading thread] all is read

    static std::uint64_t hashOf(std::string_view bytes) noexcept; // FNV-1a

private:
    struct WordUse {
        std::uint64_t preset = 0;
        WordClass where = WordClass::name;
    };

    void stopWorker();
    void readAll();
    bool readOne(std::uint64_t hash); // false: nothing new
    void eachWord(const Preset& preset, const std::function<void(std::string&&, WordClass)>& use) const;
    void index(const Preset& preset);
    void unindex(const Preset& preset);
    void indexAll();
    std::string bytes() const;
    bool parse(std::istream& stream);
    void store(const Preset& preset);

    const std::string path;
    const Source source;
    std::atomic<State> workState{State::complete}; // set to stopping without the lock, so that it is seen at once
    std::thread worker;
    std::unordered_map<std::uint64_t, Preset> entries; // by the hash of the path
    std::unordered_set<std::uint64_t> favorites;
    std::unordered_set<std::uint64_t> waiting; // for the worker
    std::unordered_map<std::string, std::vector<WordUse>> words;
    std::vector<std::string> folders; // roots of the tree
};
