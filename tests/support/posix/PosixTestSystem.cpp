#include "tests/support/TestSystem.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/stat.h>

std::string makeTestFolder(std::string_view purpose) {
    std::string name = (std::filesystem::temp_directory_path() / purpose).string() + "-XXXXXX";
    if (mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    return name;
}

std::string nativePath(std::string_view path) {
    return std::string(path);
}

struct HomeRedirection::Former {
    static constexpr std::array<const char*, 3> names{"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"};
    std::array<std::optional<std::string>, names.size()> values;
};

HomeRedirection::HomeRedirection(const std::string& home) : former(std::make_unique<Former>()) {
    for (std::size_t i = 0; i < Former::names.size(); ++i) {
        const char* const value = std::getenv(Former::names[i]);
        former->values[i] = value != nullptr ? std::optional<std::string>(value) : std::nullopt;
        unsetenv(Former::names[i]);
    }
    setenv("HOME", home.c_str(), 1);
}

HomeRedirection::~HomeRedirection() {
    for (std::size_t i = 0; i < Former::names.size(); ++i)
        former->values[i] ? setenv(Former::names[i], former->values[i]->c_str(), 1) : unsetenv(Former::names[i]);
}

TestModule::TestModule(const char* path) : handle(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {
    if (handle == nullptr)
        throw std::runtime_error(dlerror());
}

TestModule::~TestModule() {
    dlclose(handle);
}

const void* TestModule::symbol(const char* name) const {
    return dlsym(handle, name);
}

struct SavingFails::Former {
    rlimit limit{};
    void (*handler)(int) = nullptr;
};

SavingFails::SavingFails(const std::string&, std::size_t bytes) : former(std::make_unique<Former>()) {
    former->handler = std::signal(SIGXFSZ, SIG_IGN);
    if (getrlimit(RLIMIT_FSIZE, &former->limit) != 0)
        throw std::runtime_error("no limit for files");
    const rlimit tight{bytes, former->limit.rlim_max};
    if (setrlimit(RLIMIT_FSIZE, &tight) != 0)
        throw std::runtime_error("no limit for files");
}

SavingFails::~SavingFails() {
    setrlimit(RLIMIT_FSIZE, &former->limit);
    std::signal(SIGXFSZ, former->handler);
}

bool makePipe(const std::string& path) {
    return mkfifo(path.c_str(), 0600) == 0;
}

bool linkFolder(const std::string& folder, const std::string& link) {
    std::error_code error;
    std::filesystem::create_directory_symlink(folder, link, error);
    return !error;
}

const bool fileNamesAreBytes = true;
