// One small file a key. A writer holds the lock of a second file beside it from reading to renaming, so that writers of
// several processes follow one another; a reader needs no lock, since a rename shows it the old file or the new one.
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/Paths.h"
#include "platform/SettingsStore.h"
#include "platform/SettingsText.h"
#include "platform/posix/PosixFolders.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <time.h>
#include <unistd.h>

namespace {

constexpr std::int64_t largestFile = 1 << 20; // bytes; ours stay below a few thousand
constexpr int lockTries = 200;                // 5 ms apart: the longest that a stuck process holds up the main thread

// Goes with its object, and with the process too when that is killed.
class FileLock {
public:
    explicit FileLock(const std::string& path) : file(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644)) {
        for (int tries = 0; file >= 0 && !held && tries < lockTries; ++tries) {
            held = flock(file, LOCK_EX | LOCK_NB) == 0;
            if (held || (errno != EWOULDBLOCK && errno != EINTR))
                break;
            const timespec pause{0, 5000000}; // 5 ms
            nanosleep(&pause, nullptr);
        }
    }
    ~FileLock() {
        if (file >= 0)
            close(file);
    }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    bool isHeld() const noexcept { return held; }

private:
    const int file;
    bool held = false;
};

std::string fileOf(const SettingsKey& key) {
    const std::string folder = key.root == SettingsKey::Root::user ? userConfigFolder() : machineConfigFolder();
    if (folder.empty() || key.path.empty())
        return {};
    const bool isMakers = key.path.find('/') == std::string::npos; // beside the folders of its products
    return folder + key.path + (isMakers ? "/maker.conf" : ".conf");
}

SettingValues valuesOf(const std::string& file) {
    std::string text;
    return readFile(file, largestFile, text) ? settingsFromText(text) : SettingValues{};
}

} // namespace

bool settingsExist(const SettingsKey& key) {
    return regularFileSize(fileOf(key)) >= 0;
}

SettingValues readSettings(const SettingsKey& key) {
    return valuesOf(fileOf(key));
}

bool writeSettings(const SettingsKey& key, const SettingValues& changed) {
    const std::string file = fileOf(key);
    if (file.empty() || !createDirectories(std::string(folderOf(file))))
        return false;
    const FileLock lock(file + ".lock");
    if (!lock.isHeld())
        return false;
    const SettingValues present = valuesOf(file);
    SettingValues wanted = present;
    for (const auto& [name, value] : changed)
        wanted.insert_or_assign(name, value);
    return (wanted == present && settingsExist(key)) || replaceFile(file, settingsToText(wanted));
}
