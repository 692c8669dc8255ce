#include "base/BinaryDataReader.h"

#include <algorithm>
#include <array>
#include <bit>

template <typename Number>
Number BinaryDataReader::readNumber() {
    std::array<char, sizeof(Number)> bytes{};
    if (!good() || !input->read(bytes.data(), static_cast<std::streamsize>(bytes.size())))
        return Number{};
    if constexpr (std::endian::native == std::endian::big)
        std::reverse(bytes.begin(), bytes.end());
    return std::bit_cast<Number>(bytes);
}

std::string BinaryDataReader::readSignature() {
    std::array<char, 4> bytes{};
    if (!good() || !input->read(bytes.data(), static_cast<std::streamsize>(bytes.size())))
        return {};
    return {bytes.data(), bytes.size()};
}

std::string BinaryDataReader::readHeader() {
    std::string signature = readSignature();
    version = readInt32();
    if (!good())
        return {};
    return signature;
}

std::string BinaryDataReader::readString() {
    std::int32_t left = readInt32();
    if (left < 1)
        return {};
    if (left > longestString) {
        input->setstate(std::ios::failbit);
        return {};
    }
    std::string text;
    std::array<char, 4096> piece;
    while (left > 0) {
        const std::int32_t wanted = std::min(left, static_cast<std::int32_t>(piece.size()));
        if (!input->read(piece.data(), wanted))
            return {};
        text.append(piece.data(), static_cast<std::size_t>(wanted));
        left -= wanted;
    }
    return text;
}

std::int32_t BinaryDataReader::readInt32() {
    return readNumber<std::int32_t>();
}

std::uint32_t BinaryDataReader::readUInt32() {
    return readNumber<std::uint32_t>();
}

std::int64_t BinaryDataReader::readInt64() {
    return readNumber<std::int64_t>();
}

float BinaryDataReader::readFloat() {
    return readNumber<float>();
}

bool BinaryDataReader::readBool() {
    return readInt32() != 0;
}

void BinaryDataReader::skip(std::int64_t bytes) {
    if (good())
        input->ignore(bytes);
}
