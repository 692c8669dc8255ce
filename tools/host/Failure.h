// What the user has to be told, in one line. Thrown by every part of the tool, caught and printed by its main.
#pragma once

#include <stdexcept>

class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};
