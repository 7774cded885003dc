#pragma once

#include <string>

#include "platform/controls.h"
#include "platform/form.h"

namespace qxterm {

/// A window in memory. It has no border, no caption bar and no menu bar: its client area is the whole of it.
struct Form::Native {
    TwipsRect place;
};

struct Control::Native {
    TwipsRect place;
    float points = 10;   ///< font size of a picture box
    std::string face{};  ///< and its font's name
};

}  // namespace qxterm
