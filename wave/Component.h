// Base of everything in the graph.
// Threads: construction and destruction with the audio excluded.
#pragma once

#include "wave/Environment.h"

namespace wave {

// Owned by its creator. Destroying a component never destroys what it reads from.
class Component {
public:
    explicit Component(Environment& owner) noexcept : environment(owner) {}
    Component(const Component&) = delete;
    Component& operator=(const Component&) = delete;
    virtual ~Component() = default;

    Environment& environment;
};

} // namespace wave
