// The PNG form of a canvas: 8 bits a colour, no palette, every row filtered by the row above it.
#include "tools/host/Canvas.h"
#include "tools/host/Failure.h"

#include <zlib.h>

namespace {

std::string bigEndian(std::size_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>((value >> shift) & 0xff);
    return bytes;
}

std::string chunk(const std::string& type, const std::string& data) {
    const std::string body = type + data;
    const uLong sum = crc32(0, reinterpret_cast<const Bytef*>(body.data()), static_cast<uInt>(body.size()));
    return bigEndian(data.size()) + body + bigEndian(sum);
}

std::string compressed(const std::string& data) {
    uLongf size = compressBound(static_cast<uLong>(data.size()));
    std::string result(size, '\0');
    if (compress2(reinterpret_cast<Bytef*>(result.data()), &size, reinterpret_cast<const Bytef*>(data.data()),
                  static_cast<uLong>(data.size()), Z_BEST_COMPRESSION) != Z_OK)
        throw Failure("cannot pack the picture: no memory");
    result.resize(size);
    return result;
}

} // namespace

std::string Canvas::png() const {
    constexpr char filterUp = 2; // the difference to the row above: grids and plain ground become zeros
    std::string rows;
    for (std::size_t y = 0; y < height; ++y) {
        rows += filterUp;
        for (std::size_t x = 0; x < width; ++x) {
            const Colour here = pixels[y * width + x];
            const Colour above = y == 0 ? Colour{} : pixels[(y - 1) * width + x];
            rows += static_cast<char>(here.red - above.red);
            rows += static_cast<char>(here.green - above.green);
            rows += static_cast<char>(here.blue - above.blue);
        }
    }
    const std::string header = bigEndian(width) + bigEndian(height) + std::string("\x08\x02\x00\x00\x00", 5);
    return "\x89PNG\r\n\x1a\n" + chunk("IHDR", header) + chunk("IDAT", compressed(rows)) + chunk("IEND", "");
}
