#include "host/ClapState.h"

#include "host/ClapGuard.h"
#include "host/ClapPluginAdapter.h"

#include <array>

namespace {

constexpr std::size_t largestState = std::size_t{16} << 20; // bytes; a host without end must not fill the memory

bool save(const clap_plugin* plugin, const clap_ostream* stream) noexcept {
    return stream != nullptr && stream->write != nullptr &&
           clapGuard(false, [&] { return ClapPluginAdapter::of(plugin).saveState(*stream); });
}

bool load(const clap_plugin* plugin, const clap_istream* stream) noexcept {
    return stream != nullptr && stream->read != nullptr &&
           clapGuard(false, [&] { return ClapPluginAdapter::of(plugin).loadState(*stream); });
}

} // namespace

const clap_plugin_state clapState{save, load};

bool writeClapStream(const clap_ostream& stream, std::string_view bytes) {
    while (!bytes.empty()) {
        const std::int64_t written = stream.write(&stream, bytes.data(), bytes.size());
        if (written < 1 || static_cast<std::uint64_t>(written) > bytes.size())
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool readClapStream(const clap_istream& stream, std::string& bytes) {
    std::array<char, 2048> piece;
    while (bytes.size() <= largestState) {
        const std::int64_t count = stream.read(&stream, piece.data(), piece.size());
        if (count == 0)
            return true;
        if (count < 0 || count > static_cast<std::int64_t>(piece.size()))
            return false;
        bytes.append(piece.data(), static_cast<std::size_t>(count));
    }
    return false;
}
