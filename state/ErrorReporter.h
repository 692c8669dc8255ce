// Keeps the first error of an operation.
// Threads: the one that made it.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

class ErrorReporter {
public:
    void report(std::string text) { // later ones are dropped
        if (errorCode != 0)
            return;
        errorCode = -1;
        errorMessage = std::move(text);
    }
    void clear() {
        errorCode = 0;
        errorMessage.clear();
    }

    std::int32_t code() const noexcept { return errorCode; } // 0: no error, else -1
    const std::string& message() const noexcept { return errorMessage; }
    explicit operator bool() const noexcept { return errorCode != 0; } // true: there is an error

private:
    std::int32_t errorCode = 0;
    std::string errorMessage;
};
