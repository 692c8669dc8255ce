#include "base/BinaryDataWriter.h"

#include <algorithm>
#include <array>
#include <bit>

template <typename Number>
void BinaryDataWriter::writeNumber(Number value) {
    if (output == nullptr)
        return;
    auto bytes = std::bit_cast<std::array<char, sizeof(Number)>>(value);
    if constexpr (std::endian::native == std::endian::big)
        std::reverse(bytes.begin(), bytes.end());
    output->write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

void BinaryDataWriter::writeSignature(std::string_view signature) {
    std::array<char, 4> bytes{};
    std::copy_n(signature.begin(), std::min(signature.size(), bytes.size()), bytes.begin());
    if (output != nullptr)
        output->write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

void BinaryDataWriter::writeHeader(std::string_view signature, std::int32_t version) {
    writeSignature(signature);
    writeInt32(version);
}

void BinaryDataWriter::writeString(std::string_view text) {
    writeInt32(static_cast<std::int32_t>(text.size()));
    if (output != nullptr)
        output->write(text.data(), static_cast<std::streamsize>(text.size()));
}

void BinaryDataWriter::writeInt32(std::int32_t value) {
    writeNumber(value);
}

void BinaryDataWriter::writeUInt32(std::uint32_t value) {
    writeNumber(value);
}

void BinaryDataWriter::writeInt64(std::int64_t value) {
    writeNumber(value);
}

void BinaryDataWriter::writeFloat(float value) {
    writeNumber(value);
}
