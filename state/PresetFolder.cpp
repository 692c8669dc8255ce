#include "state/PresetFolder.h"

#include "base/NumberText.h"
#include "base/Utf8.h"
#include "platform/Clock.h"
#include "platform/Paths.h"

#include <algorithm>
#include <utility>

namespace {

bool isSpace(char c) noexcept {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// The lower-case form is made once a name, not once a comparison.
template <typename Item, typename Before>
void sortByName(std::vector<std::unique_ptr<Item>>& items, Before&& before) {
    std::vector<std::pair<std::u32string, std::unique_ptr<Item>>> keyed;
    keyed.reserve(items.size());
    for (std::unique_ptr<Item>& item : items) {
        std::u32string lower = lowerCasePoints(before.nameOf(*item));
        keyed.emplace_back(std::move(lower), std::move(item));
    }
    std::sort(keyed.begin(), keyed.end(), [&](const auto& a, const auto& b) {
        if (before.keyOf(*a.second) != before.keyOf(*b.second))
            return before.keyOf(*a.second) < before.keyOf(*b.second);
        // Names that differ in case only still stand in one order, whatever order the system lists them in.
        return a.first != b.first ? a.first < b.first : before.pathOf(*a.second) < before.pathOf(*b.second);
    });
    for (std::size_t i = 0; i < items.size(); ++i)
        items[i] = std::move(keyed[i].second);
}

struct FolderOrder {
    static const std::string& nameOf(const PresetFolder& folder) { return folder.name(); }
    static const std::string& pathOf(const PresetFolder& folder) { return folder.path(); }
    static std::int32_t keyOf(const PresetFolder& folder) { return folder.sortKey(); }
};

struct PresetOrder {
    static const std::string& nameOf(const Preset& preset) { return preset.name; }
    static const std::string& pathOf(const Preset& preset) { return preset.path; }
    static std::int32_t keyOf(const Preset&) { return 0; }
};

} // namespace

PresetFolder::PresetFolder(std::string_view folder, std::string_view wantedExtension, std::int32_t budgetMs)
    : fileExtension(wantedExtension) {
    scan(folder, budgetMs);
}

void PresetFolder::scan(std::string_view folder, std::int32_t budgetMs) {
    Ancestors ancestors;
    scan(std::string(folder), budgetMs, ancestors); // a copy: the text may be our own path
}

void PresetFolder::scan(std::string_view folder, std::int32_t budgetMs, Ancestors& ancestors) {
    const std::unique_ptr<IntervalTimer> timer = createIntervalTimer();
    folders.clear();
    files.clear();
    folderPath = folder.empty() ? std::string() : withTrailingSeparator(folder);
    takeNameFromPath();
    if (folderPath.empty() || budgetMs < 1)
        return;
    // A link may lead back to a folder that is being scanned, and on from there for ever.
    FolderIdentity identity;
    if (!identifyFolder(folderPath, identity) || ancestors.size() > deepest ||
        std::find(ancestors.begin(), ancestors.end(), identity) != ancestors.end())
        return;
    ancestors.push_back(identity);
    scanFolders(budgetMs, *timer, ancestors);
    scanFiles();
    ancestors.pop_back();
}

void PresetFolder::takeNameFromPath() {
    std::string_view last = folderPath;
    if (!last.empty())
        last.remove_suffix(1);
    folderName = validUtf8(fileNameOf(last));
    key = withoutSortKey;
    if (!folderName.starts_with('_'))
        return;
    std::int64_t number = 0;
    std::size_t end = 1 + readWhole(std::string_view(folderName).substr(1), number);
    key = static_cast<std::int32_t>(std::clamp<std::int64_t>(number, INT32_MIN, INT32_MAX));
    while (end < folderName.size() && isSpace(folderName[end]))
        ++end;
    folderName.erase(0, end);
}

void PresetFolder::scanFolders(std::int32_t budgetMs, const IntervalTimer& timer, Ancestors& ancestors) {
    const auto entries = enumerateFolder(folderPath, FileEnumerator::Filter::directories);
    while (entries->next()) {
        std::unique_ptr<PresetFolder> found(new PresetFolder(fileExtension));
        const auto passed = static_cast<std::int32_t>(std::min<std::uint32_t>(timer.elapsed(), INT32_MAX));
        found->scan(folderPath + entries->name(), budgetMs - passed, ancestors);
        folders.push_back(std::move(found));
    }
    sortByName(folders, FolderOrder());
}

void PresetFolder::scanFiles() {
    const auto entries = enumerateFolder(folderPath, FileEnumerator::Filter::files, fileExtension);
    while (entries->next()) {
        auto found = std::make_unique<Preset>();
        const std::string_view file = entries->name();
        found->name = validUtf8(file.substr(0, file.size() - fileExtension.size()));
        found->path = folderPath + entries->name();
        found->fileTime = entries->fileTime();
        files.push_back(std::move(found));
    }
    sortByName(files, PresetOrder());
}

void PresetFolder::appendTo(std::vector<Preset*>& list) const {
    for (const auto& folder : folders)
        folder->appendTo(list);
    for (const auto& preset : files)
        list.push_back(preset.get());
}
