#pragma once

#include <vector>

namespace qxterm {
class Form;
}

namespace qxterm::headless {

/// The forms that are loaded, in the order in which they were.
[[nodiscard]] const std::vector<Form*>& loadedForms();

}  // namespace qxterm::headless
