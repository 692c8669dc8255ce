// The command line of one subcommand: what it knows, what was given, and the help text made of both.
// Threads: main.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class Options {
public:
    struct Known {
        std::string name;  // with its dashes: "--block"
        std::string value; // what follows it, "N"; empty: a switch
        std::string help;
        bool repeatable = false;
    };

    Options(std::string commandName, std::string summaryText, std::vector<std::string> positionalNames);

    void add(Known option);

    // Takes the words behind the subcommand. Throws Failure on anything that is not known, missing or given twice.
    void parse(const std::vector<std::string>& words);

    bool wantsHelp() const { return helpAsked; }
    std::string help() const;
    const std::string& command() const { return name; }

    const std::string& positional(std::size_t index) const { return positionals.at(index); }
    bool has(std::string_view option) const;
    std::optional<std::string> text(std::string_view option) const;
    std::vector<std::string> all(std::string_view option) const; // in the order given

    // Throws Failure when the text is no number or out of range.
    double number(std::string_view option, double otherwise, double least, double most) const;
    std::int64_t whole(std::string_view option, std::int64_t otherwise, std::int64_t least, std::int64_t most) const;

private:
    const Known& find(const std::string& word) const;

    std::string name;
    std::string summary;
    std::vector<std::string> expected;
    std::vector<Known> known;
    std::vector<std::string> positionals;
    std::map<std::string, std::vector<std::string>, std::less<>> given;
    bool helpAsked = false;
};
