#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace qxterm {

/// Where the parts of a bitmap file lie, in bytes from its beginning.
struct BitmapParts {
    std::size_t description;  ///< header and colour table
    std::size_t descriptionSize;
    std::size_t pixels;
    std::size_t pixelsSize;
};

/// The parts of an uncompressed bitmap, or nothing when that is not one or not all of it is there: the
/// system's own reader may look for pixels behind the end. Called by the loader of pictures.
[[nodiscard]] std::optional<BitmapParts> partsOfBitmap(std::string_view file);

}  // namespace qxterm
