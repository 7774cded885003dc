#pragma once

namespace qxterm {

/// Select graphic rendition (m): changes the current attribute by each parameter in turn.
void selectGraphicRendition();

}  // namespace qxterm
