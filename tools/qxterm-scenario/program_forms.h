#pragma once

#include <span>
#include <string>
#include <string_view>

#include "platform/controls.h"
#include "platform/form.h"

namespace qxterm::scenario {

/// Every form of the program.
[[nodiscard]] std::span<Form* const> programForms();
/// The form with a name, or null.
[[nodiscard]] Form* formNamed(std::string_view name);
/// A control's name in scripts and dumps: "NAME", or "NAME(INDEX)" for one of a control array.
[[nodiscard]] std::string scriptName(const Control& control);

}  // namespace qxterm::scenario
