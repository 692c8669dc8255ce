#include "tools/host/Options.h"

#include "base/NumberText.h"
#include "tools/host/Failure.h"
#include "tools/host/TextTools.h"

#include <algorithm>
#include <cmath>
#include <utility>

Options::Options(std::string commandName, std::string summaryText, std::vector<std::string> positionalNames)
    : name(std::move(commandName)), summary(std::move(summaryText)), expected(std::move(positionalNames)) {}

void Options::add(Known option) {
    known.push_back(std::move(option));
}

const Options::Known& Options::find(const std::string& word) const {
    const auto found =
        std::find_if(known.begin(), known.end(), [&](const Known& option) { return option.name == word; });
    if (found != known.end())
        return *found;
    std::vector<std::string> names;
    for (const Known& option : known)
        names.push_back(option.name);
    throw Failure(name + " has no option \"" + word + "\"" + suggestion(word, names));
}

void Options::parse(const std::vector<std::string>& words) {
    bool optionsEnded = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (!optionsEnded && (word == "--help" || word == "-h")) {
            helpAsked = true;
            return;
        }
        if (!optionsEnded && word == "--") {
            optionsEnded = true;
            continue;
        }
        if (optionsEnded || word.size() < 2 || word.front() != '-') {
            positionals.push_back(word);
            continue;
        }
        const std::size_t equals = word.starts_with("--") ? word.find('=') : std::string::npos;
        const Known& option = find(word.substr(0, equals));
        std::string value;
        if (equals != std::string::npos) {
            if (option.value.empty())
                throw Failure(option.name + " takes no value");
            value = word.substr(equals + 1);
        } else if (!option.value.empty()) {
            if (i + 1 == words.size())
                throw Failure(option.name + " needs a value: " + option.name + " " + option.value);
            value = words[++i];
        }
        std::vector<std::string>& values = given[option.name];
        if (!values.empty() && !option.repeatable && !option.value.empty())
            throw Failure(option.name + " was given twice");
        values.push_back(value);
    }
    if (positionals.size() < expected.size())
        throw Failure(name + " needs " + expected[positionals.size()] + "; see \"zelk-host " + name + " --help\"");
    if (positionals.size() > expected.size())
        throw Failure(name + " does not know what to do with \"" + positionals[expected.size()] + "\"");
}

std::string Options::help() const {
    std::string text = "zelk-host " + name;
    for (const std::string& positional : expected)
        text += " " + positional;
    text += " [options]\n\n" + summary + "\n\nOptions:\n";
    std::size_t width = 0;
    for (const Known& option : known)
        width = std::max(width, option.name.size() + 1 + option.value.size());
    for (const Known& option : known) {
        std::string left = option.name + (option.value.empty() ? "" : " " + option.value);
        left.resize(width, ' ');
        text += "  " + left + "  ";
        for (const char c : option.help) {
            text += c;
            if (c == '\n')
                text.append(width + 4, ' ');
        }
        text += "\n";
    }
    return text;
}

bool Options::has(std::string_view option) const {
    return given.find(option) != given.end();
}

std::optional<std::string> Options::text(std::string_view option) const {
    const auto found = given.find(option);
    return found == given.end() ? std::nullopt : std::optional(found->second.back());
}

std::vector<std::string> Options::all(std::string_view option) const {
    const auto found = given.find(option);
    return found == given.end() ? std::vector<std::string>() : found->second;
}

double Options::number(std::string_view option, double otherwise, double least, double most) const {
    const std::optional<std::string> wanted = text(option);
    if (!wanted)
        return otherwise;
    double value = 0.0;
    if (!wholeNumber(*wanted, value))
        throw Failure(std::string(option) + " needs a number, not \"" + *wanted + "\"");
    if (value < least || value > most)
        throw Failure(std::string(option) + " " + *wanted + " is not within " + shortestText(least) + " to " +
                      shortestText(most));
    return value;
}

std::int64_t Options::whole(std::string_view option, std::int64_t otherwise, std::int64_t least,
                            std::int64_t most) const {
    const double value =
        number(option, static_cast<double>(otherwise), static_cast<double>(least), static_cast<double>(most));
    if (value != std::floor(value))
        throw Failure(std::string(option) + " needs a whole number, not \"" + *text(option) + "\"");
    return static_cast<std::int64_t>(value);
}
