#pragma once

#include <string>
#include <string_view>

namespace qxterm::scenario {

/// Joins the tokens of a byte text: pairs of hexadecimal digits, and strings in double quotes with the
/// escapes \e \r \n \t \b \0 \\ \" \xHH. ScriptFault when there is no token, or one is malformed.
[[nodiscard]] std::string parseBytes(std::string_view text);

/// The same bytes as a byte text: one string.
[[nodiscard]] std::string bytesText(std::string_view bytes);

}  // namespace qxterm::scenario
