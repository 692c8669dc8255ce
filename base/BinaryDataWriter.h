// The mirror of BinaryDataReader.
// Threads: the one that made it.
#pragma once

#include <cstdint>
#include <ostream>
#include <string_view>

class BinaryDataWriter {
public:
    explicit BinaryDataWriter(std::ostream* target) noexcept : output(target) {} // not owned; null writes nowhere
    BinaryDataWriter(const BinaryDataWriter&) = delete;
    BinaryDataWriter& operator=(const BinaryDataWriter&) = delete;
    virtual ~BinaryDataWriter() = default;

    void writeHeader(std::string_view signature, std::int32_t version);
    void writeSignature(std::string_view signature); // zero bytes up to four
    void writeString(std::string_view text);
    void writeInt32(std::int32_t value);
    void writeUInt32(std::uint32_t value);
    void writeInt64(std::int64_t value);
    void writeFloat(float value);
    void writeBool(bool value) { writeInt32(value ? 1 : 0); }

    bool good() const noexcept { return output != nullptr && !output->fail(); }
    std::ostream* stream() const noexcept { return output; }

private:
    template <typename Number>
    void writeNumber(Number value);

    std::ostream* output;
};
