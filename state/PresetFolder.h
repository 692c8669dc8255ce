// A picture of one folder of presets and all below it, in a fixed order.
// Threads: main.
#pragma once

#include "base/IntervalTimer.h"
#include "platform/FileEnumerator.h"
#include "state/Preset.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class PresetFolder {
public:
    static constexpr std::int32_t scanBudgetMs = 2500;
    static constexpr std::int32_t withoutSortKey = 10000;
    static constexpr std::size_t deepest = 32; // folders below the top one

    // Scans. The extension has its dot.
    PresetFolder(std::string_view folder, std::string_view wantedExtension, std::int32_t budgetMs = scanBudgetMs);
    PresetFolder(const PresetFolder&) = delete;
    PresetFolder& operator=(const PresetFolder&) = delete;
    virtual ~PresetFolder() = default;

    // What lies beyond the budget stays listed, as empty. An empty path lists nothing.
    void scan(std::string_view folder, std::int32_t budgetMs = scanBudgetMs);

    const std::string& name() const noexcept { return folderName; } // without "_10 "
    void setName(std::string_view wanted) { folderName = wanted; }
    const std::string& path() const noexcept { return folderPath; } // ends in a separator
    const std::string& extension() const noexcept { return fileExtension; }
    std::int32_t sortKey() const noexcept { return key; }
    bool empty() const noexcept { return folders.empty() && files.empty(); }
    const std::vector<std::unique_ptr<PresetFolder>>& subfolders() const noexcept { return folders; }
    const std::vector<std::unique_ptr<Preset>>& presets() const noexcept { return files; }

    void appendTo(std::vector<Preset*>& list) const; // what lies deeper comes first

private:
    using Ancestors = std::vector<FolderIdentity>;

    explicit PresetFolder(std::string_view wantedExtension) : fileExtension(wantedExtension) {}
    void scan(std::string_view folder, std::int32_t budgetMs, Ancestors& ancestors);
    void takeNameFromPath();
    void scanFolders(std::int32_t budgetMs, const IntervalTimer& timer, Ancestors& ancestors);
    void scanFiles();

    std::vector<std::unique_ptr<PresetFolder>> folders; // sorted
    std::vector<std::unique_ptr<Preset>> files;         // sorted
    std::string folderName;
    std::string folderPath;
    const std::string fileExtension;
    std::int32_t key = withoutSortKey;
};
