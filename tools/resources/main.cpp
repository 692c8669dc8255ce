// zelk-pack: makes what the library embeds out of the sources in resources/.
#include "tools/resources/ArchiveWriter.h"
#include "tools/resources/PresetCatalogue.h"
#include "tools/resources/PresetSource.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::string_view usage = "zelk-pack presets FOLDER FILE    the archive of the factory presets\n"
                                   "zelk-pack page FOLDER FILE       the page that lists them\n"
                                   "zelk-pack map VERSION FILE       the map of preset values of an older version\n"
                                   "zelk-pack embed FILE.cpp NAME=FILE...    a table of embedded files\n";

[[nodiscard]] bool writeAll(const std::string& path, const std::string& bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << bytes;
    file.flush();
    return file.good();
}

// The assembler brings the bytes in: a compiler would take minutes over arrays of that size.
std::string embeddingSource(const std::vector<std::string>& entries) {
    std::ostringstream code;
    std::ostringstream table;
    code << "// Generated: the data that the library carries.\n"
            "#include \"resources/ZelkResources.h\"\n\n";
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::size_t equals = entries[i].find('=');
        const std::string label = "zelk_resource_" + std::to_string(i);
        code << "asm(\".section .rodata\\n.balign 16\\n.globl " << label << "\\n.hidden " << label << "\\n"
             << label << ":\\n.incbin \\\"" << entries[i].substr(equals + 1) << "\\\"\\n.globl " << label
             << "_end\\n.hidden " << label << "_end\\n"
             << label << "_end:\\n.byte 0\\n.previous\\n\");\n"
             << "extern \"C\" const char " << label << "[];\nextern \"C\" const char " << label << "_end[];\n\n";
        table << "        {\"" << entries[i].substr(0, equals) << "\", {" << label << ", static_cast<std::size_t>("
              << label << "_end - " << label << ")}},\n";
    }
    code << "std::span<const EmbeddedResource> zelkResources() {\n"
            "    static const EmbeddedResource table[] = {\n"
         << table.str() << "    };\n    return table;\n}\n";
    return code.str();
}

int run(const std::vector<std::string>& arguments) {
    const std::string command = arguments.empty() ? "" : arguments[0];
    std::string bytes;
    std::string target;
    if (command == "presets" && arguments.size() == 3) {
        bytes = packPresets(arguments[1]);
        target = arguments[2];
    } else if (command == "page" && arguments.size() == 3) {
        bytes = presetPage(readPresetCatalogue(arguments[1]));
        target = arguments[2];
    } else if (command == "map" && arguments.size() == 3) {
        bytes = mapBytes(std::stoi(arguments[1]));
        target = arguments[2];
    } else if (command == "embed" && arguments.size() >= 2) {
        bytes = embeddingSource({arguments.begin() + 2, arguments.end()});
        target = arguments[1];
    } else {
        std::cerr << usage;
        return EXIT_FAILURE;
    }
    if (writeAll(target, bytes))
        return EXIT_SUCCESS;
    std::cerr << "cannot write " << target << '\n';
    return EXIT_FAILURE;
}

} // namespace

int main(int count, char** texts) {
    try {
        return run({texts + 1, texts + count});
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
