#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/process.h"

/// Helper processes that exist on paper only.
namespace qxterm::headless {

/// Starting this helper fails from now on.
void failHelper(std::string_view name);
/// The helper has ended by itself: at once when it runs, else each time as soon as it is started.
void exitHelper(std::string_view name);
/// How long the first helper of a session takes to open its forwarded port, in virtual milliseconds from its
/// start; negative: for ever. 0 after a reset.
void setForwardDelay(std::int64_t milliseconds);
/// True when the forwarded port of the helper that was started last is open.
[[nodiscard]] bool forwardOpen();
/// What the helper of this name, which is recorded, found in its environment; empty when it found nothing
/// under the variable.
[[nodiscard]] std::string helperEnvironment(std::string_view helper, std::string_view variable);

/// Forgets the running helpers, without a record.
void dropHelpers();
/// Helpers start and run, and forward at once.
void resetHelpers();

}  // namespace qxterm::headless
