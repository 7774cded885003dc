#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// Checks of what arrives on a helper's command line. The helpers trust no one who starts them: what is not
/// plainly a port, a host or a login name goes no further.
namespace zpt {

/// A decimal number from 1 to 65535, digits only.
[[nodiscard]] std::optional<std::uint16_t> parsePort(std::string_view text);

/// True for a host name or address: letters, digits and ".-_:%[]", bytes beyond ASCII, up to 255 of them, no
/// hyphen in front. That leaves no room for options, user names or URLs.
[[nodiscard]] bool isHost(std::string_view text);

/// True for a login name: no blank, control character or quotation mark, up to 255 bytes, no hyphen in front.
/// The empty name is one: the client then uses its own.
[[nodiscard]] bool isLogin(std::string_view text);

}  // namespace zpt
