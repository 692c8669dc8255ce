// Reads little-endian numbers, texts and block headers from a byte stream. A read never throws: it leaves the stream's
// fail state set and gives zero or the empty text, so that a caller asks once, at the end of its block.
// Threads: the one that made it.
#pragma once

#include <cstdint>
#include <istream>
#include <string>

class BinaryDataReader {
public:
    // Longer texts are those of a damaged file. The memory for a text grows with the bytes that really come.
    static constexpr std::int32_t longestString = 1 << 20;

    explicit BinaryDataReader(std::istream* source) noexcept : input(source) {} // not owned; null reads as failed
    BinaryDataReader(const BinaryDataReader&) = delete;
    BinaryDataReader& operator=(const BinaryDataReader&) = delete;
    virtual ~BinaryDataReader() = default;

    std::string readHeader();    // the signature, always four characters; also sets version. Empty: the stream failed
    std::string readSignature(); // without a version
    std::string readString();
    std::int32_t readInt32();
    std::uint32_t readUInt32();
    std::int64_t readInt64();
    float readFloat();
    bool readBool();
    void skip(std::int64_t bytes);

    bool good() const noexcept { return input != nullptr && !input->fail(); }
    std::istream* stream() const noexcept { return input; }

    std::int32_t version = -1; // of the block that is read

private:
    template <typename Number>
    Number readNumber();

    std::istream* input;
};
