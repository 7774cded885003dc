#pragma once

#include <cstdint>
#include <span>

namespace qxterm {

/// Select graphic rendition (m): changes the current attribute by each parameter in turn; none is 0.
void selectGraphicRendition(std::span<const std::int16_t> parameters);

}  // namespace qxterm
