// JSON text, written from the outside in: objects and lists are opened and closed, values stand in between.
// Threads: any.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class JsonWriter {
public:
    void openObject(std::string_view key = {}) { open(key, '{'); }
    void openList(std::string_view key = {}) { open(key, '['); }
    void close(); // what was opened last

    // The key is empty inside lists. Numbers that JSON does not know become null.
    void text(std::string_view key, std::string_view value);
    void number(std::string_view key, double value);
    void whole(std::string_view key, std::int64_t value);
    void truth(std::string_view key, bool value);
    void texts(std::string_view key, const std::vector<std::string>& values);

    const std::string& result() const { return written; }

private:
    void open(std::string_view key, char bracket);
    void begin(std::string_view key);
    void quote(std::string_view value);

    std::string written;
    std::string closing;     // the brackets that are still open, innermost last
    bool needsComma = false; // before the next value
};
