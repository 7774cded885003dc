#pragma once

#include <memory>

#include "platform/controls.h"
#include "platform/form.h"
#include "platform/headless/picture.h"

namespace qxterm {

/// A window in memory. It has no border, no caption bar and no menu bar: its client area is the whole of it.
struct Form::Native {
    TwipsRect place;
};

struct Control::Native {
    TwipsRect place;
    std::unique_ptr<headless::Picture> picture;  ///< of a picture box only
};

}  // namespace qxterm
