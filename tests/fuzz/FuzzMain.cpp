// One reader under libFuzzer; the build names it.
#include "tests/fuzz/Readers.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ZELK_FUZZED_READER({reinterpret_cast<const char*>(data), size});
    return 0;
}
