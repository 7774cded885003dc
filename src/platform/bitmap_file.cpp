#include "platform/bitmap_file.h"

#include <cstdint>
#include <cstdlib>

namespace qxterm {
namespace {

constexpr std::size_t fileHeader = 14;  // bytes
constexpr std::size_t pictureHeader = 40;
constexpr std::size_t bytesOfColour = 4;
constexpr std::int64_t mostPixels = 16384;  // each way
constexpr std::uint64_t bitsOfUnit = 32;    // rows begin at whole units

/// The number that `size` bytes make, the lowest first.
std::uint64_t numberAt(std::string_view file, std::size_t at, std::size_t size) {
    std::uint64_t number = 0;
    for (std::size_t i = size; i > 0; --i)
        number = number << 8U | static_cast<std::uint8_t>(file[at + i - 1]);
    return number;
}

std::int64_t lengthAt(std::string_view file, std::size_t at) {
    return static_cast<std::int32_t>(numberAt(file, at, sizeof(std::int32_t)));
}

bool usualDepth(std::uint64_t bits) {
    return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

}  // namespace

std::optional<BitmapParts> partsOfBitmap(std::string_view file) {
    if (file.size() < fileHeader + pictureHeader || file.substr(0, 2) != "BM") return std::nullopt;
    const std::uint64_t pixels = numberAt(file, 10, 4);
    const std::uint64_t header = numberAt(file, 14, 4);
    const std::int64_t width = lengthAt(file, 18);
    const std::int64_t height = std::abs(lengthAt(file, 22));  // negative: from the top downward
    const std::uint64_t depth = numberAt(file, 28, 2);
    const std::uint64_t compression = numberAt(file, 30, 4);
    const std::uint64_t colours = numberAt(file, 46, 4);
    if (header != pictureHeader || compression != 0 || !usualDepth(depth)) return std::nullopt;
    if (width < 1 || width > mostPixels || height < 1 || height > mostPixels) return std::nullopt;

    const std::uint64_t all = depth <= 8 ? std::uint64_t{1} << depth : 0;
    // Fewer than all may be given; none stands for all.
    if (colours > (depth <= 8 ? all : 256)) return std::nullopt;
    const std::uint64_t table = (colours > 0 ? colours : all) * bytesOfColour;
    const std::uint64_t row = (static_cast<std::uint64_t>(width) * depth + bitsOfUnit - 1) / bitsOfUnit * 4;
    const std::uint64_t size = row * static_cast<std::uint64_t>(height);
    if (pixels < fileHeader + header + table || pixels > file.size() || size > file.size() - pixels)
        return std::nullopt;
    return BitmapParts{fileHeader, static_cast<std::size_t>(header + table), static_cast<std::size_t>(pixels),
                       static_cast<std::size_t>(size)};
}

}  // namespace qxterm
