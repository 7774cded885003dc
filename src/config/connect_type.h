#pragma once

#include <cstdint>

/// Connection types: the values of g_iConnectType and of a profile's connect type.
namespace qxterm::connectType {

inline constexpr std::int16_t net = 0;
inline constexpr std::int16_t serial = 1;
inline constexpr std::int16_t modem = 2;
inline constexpr std::int16_t ssh = 3;
inline constexpr std::int16_t unknown = 4;
inline constexpr std::int16_t loop = 5;

}  // namespace qxterm::connectType
