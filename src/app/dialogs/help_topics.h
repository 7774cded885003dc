#pragma once

#include <cstdint>

/// Context numbers of the help file's pages.
namespace qxterm::helpTopic {

inline constexpr std::int32_t profiles = 4010;
inline constexpr std::int32_t options = 4020;
inline constexpr std::int32_t technicalSupport = 4044;

}  // namespace qxterm::helpTopic
