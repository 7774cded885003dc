#pragma once

#include <string>
#include <string_view>

namespace qxterm {

/// Carriage return and line feed; empty until main has called setCrLf.
extern std::string g_sCrLf;
void setCrLf(std::string_view lineEnd);

/// Fills the placeholders "%1" to "%4" of a message template; "%%" is one "%", "%n" the digits 13, any other
/// "%" vanishes with the character behind it. Substituted text is not searched again.
[[nodiscard]] std::string formatMsg(std::string_view pattern, std::string_view a1 = {},
                                    std::string_view a2 = {}, std::string_view a3 = {},
                                    std::string_view a4 = {});

}  // namespace qxterm
