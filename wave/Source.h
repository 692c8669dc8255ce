// A producer without input.
// Threads: those of wave::Producer.
#pragma once

#include "wave/Producer.h"

namespace wave {

class Source : public Producer {
public:
    using Producer::Producer;
};

} // namespace wave
