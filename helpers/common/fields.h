#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

/// What may stand in a helper's command line. The terminal asks before it starts one; the helpers trust no
/// one who starts them, and ask again: what is not plainly a port, a host or a login name goes no further.
namespace zpt {

/// Bytes of a host or a login name. A host name has 253 at most; what hosts take as a login name is shorter
/// still.
inline constexpr std::size_t longestField = 255;

/// A decimal number from 1 to 65535, digits only.
[[nodiscard]] std::optional<std::uint16_t> parsePort(std::string_view text);

/// True for a host name or address: letters, digits and ".-_:%[]", bytes beyond ASCII (names in other
/// alphabets are left to the look-up), no hyphen in front, not too long. That leaves no room for options,
/// user names or URLs.
[[nodiscard]] bool isHost(std::string_view text);

/// True for a login name: no blank, control character or quotation mark, no hyphen in front, not too long.
/// The empty name is one: the client then uses its own.
[[nodiscard]] bool isLogin(std::string_view text);

}  // namespace zpt
