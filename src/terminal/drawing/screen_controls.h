#pragma once

#include <array>

#include "platform/controls.h"
#include "platform/main_form.h"
#include "platform/picture_box.h"

namespace qxterm {

/// The screen: 80 columns by 25 rows of cells.
extern PictureBox picterm;
/// Its value is the virtual line at the top of the view, 501 when the view is live.
extern ScrollBar vscterm;

inline constexpr std::size_t functionKeyCount = 8;
/// The function-key bar; element n - 1 is button n, whose index is n.
extern std::array<Button, functionKeyCount> CScmdfkey;

}  // namespace qxterm
