#include "tests/fuzz/Readers.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace {

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// A few bytes or words changed, the end cut off or doubled.
std::string damaged(std::string bytes, std::mt19937& random) {
    const std::uint32_t words[] = {0, 0x7FFFFFFF, 0xFFFFFFFF, 0x80000000, 0x7FC00000, 0x10000};
    for (auto changes = 1 + random() % 3; changes > 0 && !bytes.empty(); --changes) {
        const std::size_t place = random() % bytes.size();
        switch (random() % 4) {
        case 0:
            bytes[place] = static_cast<char>(random());
            break;
        case 1:
            for (std::size_t i = 0; i < 4 && place / 4 * 4 + i < bytes.size(); ++i)
                bytes[place / 4 * 4 + i] = static_cast<char>(words[random() % std::size(words)] >> (8 * i));
            break;
        case 2:
            bytes.resize(place);
            break;
        default:
            bytes.insert(place, bytes.substr(0, random() % 64));
        }
    }
    return bytes;
}

TEST(FuzzedReaders, StandEveryExampleAndDamagedFormsOfIt) {
    const char* const given = std::getenv("SEED");
    const unsigned seed = given != nullptr ? static_cast<unsigned>(std::atoi(given)) : std::random_device()();
    SCOPED_TRACE(testing::Message() << "SEED=" << seed);
    std::mt19937 random(seed);
    for (const fuzz::Reader& reader : fuzz::readers) {
        std::size_t examples = 0;
        for (const auto& entry :
             std::filesystem::directory_iterator(std::filesystem::path(ZELK_FUZZ_CORPUS) / reader.name)) {
            const std::string bytes = contentOf(entry.path());
            reader.read(bytes);
            for (int i = 0; i < 20; ++i)
                reader.read(damaged(bytes, random));
            ++examples;
        }
        EXPECT_GE(examples, 2u) << reader.name;
    }
}

} // namespace
