#include "state/PresetCache.h"

#include "base/BinaryDataReader.h"
#include "base/BinaryDataWriter.h"
#include "base/Utf8.h"
#include "platform/CriticalSections.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "state/FavoritesFile.h"
#include "state/PresetFile.h"
#include "state/PresetMetadata.h"
#include "state/PresetMetadataWriter.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace {

constexpr const char* fileSignature = "tvPC";
constexpr std::int32_t mostTags = 1000;
constexpr std::int64_t mostCacheBytes = 1 << 26;

struct Guard {
    explicit Guard(LockedObject& guarded) : object(guarded) { object.lock(); }
    ~Guard() { object.unlock(); }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;
    LockedObject& object;
};

// Letters and digits, and everything beyond ASCII; in lower case.
std::vector<std::string> wordsOf(std::string_view text) {
    std::vector<std::string> result;
    std::u32string word;
    const auto end = [&] {
        if (!word.empty())
            result.push_back(utf8(word));
        word.clear();
    };
    for (const char32_t point : lowerCasePoints(text)) {
        const bool isLetter = point >= 0x80 || (point >= 'a' && point <= 'z') || (point >= '0' && point <= '9');
        if (isLetter)
            word.push_back(point);
        else
            end();
    }
    end();
    return result;
}

void writePreset(BinaryDataWriter& writer, const Preset& preset) {
    writer.writeString(preset.path);
    writer.writeInt64(preset.fileTime);
    writer.writeString(preset.name);
    writer.writeInt32(preset.bank);
    writer.writeInt32(preset.program);
    writer.writeString(preset.author);
    writer.writeString(preset.description);
    writer.writeInt32(static_cast<std::int32_t>(preset.tags.size()));
    for (const std::string& tag : preset.tags)
        writer.writeString(tag);
}

bool readPreset(BinaryDataReader& reader, Preset& preset) {
    preset.path = reader.readString();
    preset.fileTime = reader.readInt64();
    preset.name = reader.readString();
    preset.bank = reader.readInt32();
    preset.program = reader.readInt32();
    preset.author = reader.readString();
    preset.description = reader.readString();
    const std::int32_t tags = reader.readInt32();
    for (std::int32_t i = 0; i < tags && i < mostTags && reader.good(); ++i)
        preset.tags.push_back(reader.readString());
    return reader.good() && tags >= 0 && tags <= mostTags;
}

} // namespace

std::uint64_t PresetCache::hashOf(std::string_view bytes) noexcept {
    std::uint64_t hash = 0xCBF29CE484222325u;
    for (const char c : bytes)
        hash = (hash ^ static_cast<std::uint8_t>(c)) * 0x100000001B3u;
    return hash;
}

PresetCache::PresetCache(std::string file, Source wanted)
    : LockedObject(createCriticalSection()), path(std::move(file)), source(std::move(wanted)) {}

PresetCache::~PresetCache() {
    stopWorker();
    static_cast<void>(save()); // lost, it is made again from the presets
}

// The file

void PresetCache::load() {
    stopWorker();
    const Guard guard(*this);
    entries.clear();
    favorites.clear();
    words.clear();
    folders.clear();
    std::string content;
    if (!readFile(path, mostCacheBytes, content))
        return;
    std::istringstream stream(std::move(content));
    if (!parse(stream)) {
        entries.clear();
        favorites.clear();
        folders.clear();
    }
    for (const std::string& folder : folders)
        for (const std::string& favorite : readFavorites(folder))
            favorites.insert(hashOf(favorite));
    indexAll();
}

bool PresetCache::parse(std::istream& stream) {
    BinaryDataReader reader(&stream);
    if (reader.readHeader() != fileSignature || reader.version < 1 || reader.version > currentVersion)
        return false;
    const std::int32_t folderCount = reader.version >= 3 ? reader.readInt32() : 0;
    for (std::int32_t i = 0; i < folderCount && reader.good(); ++i)
        folders.push_back(reader.readString());
    const std::int32_t count = reader.readInt32();
    for (std::int32_t i = 0; i < count && reader.good(); ++i) {
        Preset preset;
        if (!readPreset(reader, preset))
            return false;
        const std::uint64_t hash = hashOf(preset.path);
        entries.insert_or_assign(hash, std::move(preset));
    }
    const bool hasFavorites = reader.version == 2 || reader.version == 3;
    const std::int32_t favoriteCount = hasFavorites ? reader.readInt32() : 0;
    for (std::int32_t i = 0; i < favoriteCount && reader.good(); ++i)
        favorites.insert(hashOf(reader.readString()));
    return reader.good() && folderCount >= 0 && count >= 0 && favoriteCount >= 0;
}

std::string PresetCache::bytes() const {
    std::ostringstream stream;
    BinaryDataWriter writer(&stream);
    writer.writeHeader(fileSignature, currentVersion);
    writer.writeInt32(static_cast<std::int32_t>(folders.size()));
    for (const std::string& folder : folders)
        writer.writeString(folder);
    writer.writeInt32(static_cast<std::int32_t>(entries.size()));
    std::vector<const Preset*> sorted; // so that the same tree gives the same file
    for (const auto& [hash, preset] : entries)
        sorted.push_back(&preset);
    std::sort(sorted.begin(), sorted.end(), [](const Preset* a, const Preset* b) { return a->path < b->path; });
    for (const Preset* preset : sorted)
        writePreset(writer, *preset);
    return stream.str();
}

bool PresetCache::save() {
    const Guard guard(*this);
    std::set<std::string> liked;
    std::set<std::string> known;
    for (const auto& [hash, preset] : entries) {
        known.insert(preset.path);
        if (favorites.contains(hash))
            liked.insert(preset.path);
    }
    bool whole = createDirectories(std::string(folderOf(path))) && replaceFile(path, bytes());
    for (const std::string& folder : folders)
        whole = (folder.empty() || writeFavorites(folder, liked, known)) && whole;
    return whole;
}

// The reading

void PresetCache::stopWorker() {
    if (!worker.joinable())
        return;
    State expected = State::running;
    workState.compare_exchange_strong(expected, State::stopping);
    worker.join();
}

void PresetCache::finish() {
    if (worker.joinable())
        worker.join();
}

void PresetCache::sync(const std::vector<Preset*>& presets, const std::vector<std::string>& roots) {
    stopWorker();
    {
        const Guard guard(*this);
        // A root that this cache has not seen brings favourites that somebody may have written by hand.
        for (const std::string& root : roots)
            if (std::find(folders.begin(), folders.end(), root) == folders.end())
                for (const std::string& favorite : readFavorites(root))
                    favorites.insert(hashOf(favorite));
        const bool otherRoots = folders != roots;
        folders = roots;
        std::unordered_set<std::uint64_t> listed;
        waiting.clear();
        for (Preset* preset : presets) {
            const std::uint64_t hash = hashOf(preset->path);
            listed.insert(hash);
            const auto [found, isNew] = entries.try_emplace(hash, *preset);
            found->second.bank = preset->bank;
            found->second.program = preset->program;
            if (isNew || found->second.fileTime != preset->fileTime) {
                waiting.insert(hash);
            } else { // the tree shows at once what was read before
                preset->author = found->second.author;
                preset->description = found->second.description;
                preset->tags = found->second.tags;
            }
            found->second.fileTime = preset->fileTime;
        }
        for (auto at = entries.begin(); at != entries.end();) {
            if (listed.contains(at->first)) {
                ++at;
                continue;
            }
            unindex(at->second);
            at = entries.erase(at);
        }
        if (otherRoots) // the words of subfolders follow the roots
            indexAll();
    }
    workState.store(State::running);
    worker = std::thread([this] { readAll(); });
}

void PresetCache::readAll() {
    std::vector<std::uint64_t> list;
    {
        const Guard guard(*this);
        list.assign(waiting.begin(), waiting.end());
    }
    for (const std::uint64_t hash : list) {
        if (workState.load() == State::stopping)
            return;
        readOne(hash);
    }
    State expected = State::running;
    if (!workState.compare_exchange_strong(expected, State::complete))
        return;
    changed.fire(this);
    if (workState.load() == State::complete)
        static_cast<void>(save());
}

bool PresetCache::readOne(std::uint64_t hash) {
    Preset preset;
    {
        const Guard guard(*this);
        const auto found = entries.find(hash);
        if (found == entries.end() || waiting.erase(hash) == 0)
            return false;
        preset = found->second;
    }
    const std::vector<std::string_view> signatures(source.signatures.begin(), source.signatures.end());
    if (!readPresetMetadata(preset, signatures, source.customValuesFromVersion)) { // without the lock: it is slow
        preset.author.clear();
        preset.description.clear();
        preset.tags.clear();
    }
    const Guard guard(*this);
    store(preset);
    return true;
}

void PresetCache::store(const Preset& preset) {
    remove(preset);
    entries.insert_or_assign(hashOf(preset.path), preset);
    index(preset);
}

// The words

void PresetCache::eachWord(const Preset& preset, const std::function<void(std::string&&, WordClass)>& use) const {
    const auto useAll = [&](std::string_view text, WordClass where) {
        for (std::string& word : wordsOf(text))
            use(std::move(word), where);
    };
    useAll(preset.name, WordClass::name);
    useAll(preset.author, WordClass::author);
    useAll(preset.description, WordClass::description);
    for (const std::string& tag : preset.tags)
        useAll(tag, WordClass::tag);
    for (const std::string& root : folders)
        if (!root.empty() && preset.path.starts_with(root))
            useAll(folderOf(std::string_view(preset.path).substr(root.size())), WordClass::name);
}

void PresetCache::index(const Preset& preset) {
    const std::uint64_t hash = hashOf(preset.path);
    eachWord(preset, [&](std::string&& word, WordClass where) { words[std::move(word)].push_back({hash, where}); });
}

void PresetCache::unindex(const Preset& preset) {
    const std::uint64_t hash = hashOf(preset.path);
    eachWord(preset, [&](std::string&& word, WordClass) {
        const auto found = words.find(word);
        if (found == words.end())
            return;
        std::erase_if(found->second, [hash](const WordUse& use) { return use.preset == hash; });
        if (found->second.empty())
            words.erase(found);
    });
}

void PresetCache::indexAll() {
    words.clear();
    for (const auto& [hash, preset] : entries)
        index(preset);
}

std::vector<std::string> PresetCache::search(std::string_view text) {
    const Guard guard(*this);
    constexpr std::array<int, 4> weights{8, 2, 1, 4};                    // by class
    std::unordered_map<std::uint64_t, std::pair<std::size_t, int>> hits; // words found, weight
    const std::vector<std::string> wanted = wordsOf(text);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        std::unordered_map<std::uint64_t, int> best;
        for (const auto& [word, uses] : words) {
            if (!word.starts_with(wanted[i]))
                continue;
            for (const WordUse& use : uses) {
                int& weight = best[use.preset];
                const int whole = word.size() == wanted[i].size() ? 2 : 1;
                weight = std::max(weight, whole * weights[static_cast<std::size_t>(use.where)]);
            }
        }
        for (const auto& [hash, weight] : best)
            if (auto& [count, sum] = hits[hash]; count == i)
                ++count, sum += weight;
    }
    std::vector<std::pair<int, std::string>> found;
    for (const auto& [hash, hit] : hits)
        if (hit.first == wanted.size())
            found.emplace_back(-hit.second, entries.at(hash).path);
    std::sort(found.begin(), found.end());
    std::vector<std::string> paths;
    for (auto& [weight, foundPath] : found)
        paths.push_back(std::move(foundPath));
    return paths;
}

// Single presets

void PresetCache::add(const Preset& preset) {
    const Guard guard(*this);
    store(preset);
}

void PresetCache::remove(const Preset& preset) {
    const Guard guard(*this);
    const auto found = entries.find(hashOf(preset.path));
    if (found == entries.end())
        return;
    unindex(found->second);
    entries.erase(found);
}

bool PresetCache::contains(const Preset& preset) {
    const Guard guard(*this);
    return entries.contains(hashOf(preset.path));
}

bool PresetCache::describe(Preset& preset) {
    const Guard guard(*this);
    const auto found = entries.find(hashOf(preset.path));
    if (found == entries.end())
        return false;
    preset.author = found->second.author;
    preset.description = found->second.description;
    preset.tags = found->second.tags;
    return true;
}

bool PresetCache::isFavorite(const Preset& preset) {
    const Guard guard(*this);
    return favorites.contains(hashOf(preset.path));
}

void PresetCache::setFavorite(const Preset& preset, bool on) {
    const Guard guard(*this);
    if (on)
        favorites.insert(hashOf(preset.path));
    else
        favorites.erase(hashOf(preset.path));
}

bool PresetCache::writeMetadata(const Preset& preset) {
    const std::vector<std::string_view> signatures(source.signatures.begin(), source.signatures.end());
    if (!writePresetMetadata(preset, signatures, source.customValuesFromVersion))
        return false;
    const Guard guard(*this);
    Preset stored = preset;
    stored.fileTime = fileTimeOf(preset.path);
    store(stored);
    return true;
}
