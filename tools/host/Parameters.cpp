#include "tools/host/Parameters.h"

#include "base/NumberText.h"
#include "tools/host/Failure.h"
#include "tools/host/FilePath.h"
#include "tools/host/TextTools.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>

namespace {

std::string nameOf(const clap_param_info& info) {
    return trimmed({info.name, std::find(info.name, info.name + CLAP_NAME_SIZE, '\0')});
}

std::string moduleOf(const clap_param_info& info) {
    return trimmed({info.module, std::find(info.module, info.module + CLAP_PATH_SIZE, '\0')});
}

// Names and values may hold the separator themselves: the first cut that gives a known name counts, else the first.
std::size_t nameEnd(std::string_view text, char separator, const Parameters& parameters) {
    for (std::size_t cut = text.find(separator); cut != std::string_view::npos; cut = text.find(separator, cut + 1)) {
        if (parameters.knows(text.substr(0, cut)))
            return cut;
    }
    return text.find(separator);
}

void addValue(EventList& events, const Parameters& parameters, std::uint64_t frame, std::string_view name,
              std::string_view text) {
    const clap_param_info& parameter = parameters.find(name);
    if ((parameter.flags & CLAP_PARAM_IS_READONLY) != 0)
        throw Failure("\"" + nameOf(parameter) + "\" can only be read");
    events.addValue(frame, parameter, parameters.valueOf(parameter, trimmed(text)));
}

} // namespace

Parameters::Parameters(const PluginInstance& wanted)
    : instance(wanted), table(wanted.extension<clap_plugin_params>(CLAP_EXT_PARAMS)) {
    const std::uint32_t count = table == nullptr ? 0 : table->count(instance.clap());
    for (std::uint32_t i = 0; i < count; ++i) {
        clap_param_info info{};
        if (!table->get_info(instance.clap(), i, &info))
            throw Failure("the plug-in does not describe its parameter " + std::to_string(i));
        infos.push_back(info);
    }
}

std::vector<const clap_param_info*> Parameters::matches(std::string_view name) const {
    std::vector<const clap_param_info*> found;
    const std::string wanted = trimmed(name);
    for (const clap_param_info& info : infos) {
        if (sameWord(nameOf(info), wanted) || sameWord(moduleOf(info) + "/" + nameOf(info), wanted))
            found.push_back(&info);
    }
    return found;
}

bool Parameters::knows(std::string_view name) const {
    return matches(name).size() == 1;
}

const clap_param_info& Parameters::find(std::string_view name) const {
    const std::vector<const clap_param_info*> found = matches(name);
    if (found.size() == 1)
        return *found.front();
    if (found.size() > 1)
        throw Failure("several parameters are named \"" + trimmed(name) + "\"; say which: \"" + moduleOf(*found[0]) +
                      "/" + nameOf(*found[0]) + "\" or \"" + moduleOf(*found[1]) + "/" + nameOf(*found[1]) + "\"");
    std::vector<std::string> names;
    for (const clap_param_info& info : infos)
        names.push_back(nameOf(info));
    throw Failure("there is no parameter \"" + trimmed(name) + "\"" + suggestion(trimmed(name), names));
}

double Parameters::valueOf(const clap_param_info& parameter, const std::string& text) const {
    double value = 0.0;
    const bool understood = table->text_to_value(instance.clap(), parameter.id, text.c_str(), &value);
    const std::string range = textOf(parameter, parameter.min_value) + " to " + textOf(parameter, parameter.max_value);
    if (!understood || std::isnan(value))
        throw Failure("\"" + nameOf(parameter) + "\" does not understand \"" + text + "\"; it takes " + range);
    if (value < parameter.min_value || value > parameter.max_value)
        throw Failure("\"" + text + "\" is out of the range of \"" + nameOf(parameter) + "\", " + range);
    return value;
}

std::string Parameters::textOf(const clap_param_info& parameter, double value) const {
    std::array<char, 1024> text{};
    if (!table->value_to_text(instance.clap(), parameter.id, value, text.data(), text.size()))
        return {};
    return {text.data(), std::find(text.begin(), text.end() - 1, '\0')};
}

double Parameters::current(const clap_param_info& parameter) const {
    double value = parameter.default_value;
    static_cast<void>(table->get_value(instance.clap(), parameter.id, &value));
    return value;
}

void addAssignment(EventList& events, const Parameters& parameters, const std::string& assignment) {
    const std::size_t equals = nameEnd(assignment, '=', parameters);
    if (equals == std::string::npos)
        throw Failure("\"" + assignment + "\" is not of the form NAME=TEXT");
    addValue(events, parameters, 0, std::string_view(assignment).substr(0, equals),
             std::string_view(assignment).substr(equals + 1));
}

void addAutomation(EventList& events, const Parameters& parameters, const std::string& path, double sampleRate) {
    std::ifstream file(filePath(path));
    if (!file)
        throw Failure("cannot read " + path);
    std::string raw;
    for (int number = 1; std::getline(file, raw); ++number) {
        const std::string line = trimmed(raw);
        if (line.empty() || line.front() == '#')
            continue;
        try {
            const std::size_t comma = line.find(',');
            double seconds = 0.0;
            if (comma == std::string::npos || !wholeNumber(trimmed(line.substr(0, comma)), seconds))
                throw Failure("the line does not start with a number of seconds and a comma");
            if (seconds < 0.0 || seconds > 1e9)
                throw Failure("the time " + shortestText(seconds) + " s is out of range");
            const std::string rest = line.substr(comma + 1);
            const std::size_t nameLength = nameEnd(rest, ',', parameters);
            if (nameLength == std::string::npos)
                throw Failure("the line is not of the form \"seconds, parameter, value\"");
            addValue(events, parameters, static_cast<std::uint64_t>(std::llround(seconds * sampleRate)),
                     std::string_view(rest).substr(0, nameLength), std::string_view(rest).substr(nameLength + 1));
        } catch (const Failure& failure) {
            throw Failure(path + ", line " + std::to_string(number) + ": " + failure.what());
        }
    }
    if (file.bad())
        throw Failure("cannot read " + path);
}
