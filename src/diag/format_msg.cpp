#include "diag/format_msg.h"

#include "diag/error_trap.h"

namespace qxterm {

std::string g_sCrLf;

std::string formatMsg(std::string_view pattern, std::string_view a1, std::string_view a2, std::string_view a3,
                      std::string_view a4) {
    constexpr std::size_t longestRest = 9999;  // characters kept behind a placeholder
    std::string output;
    trapped("formatMsg", [&] {
        std::string_view rest = pattern;
        for (;;) {
            const std::size_t percent = rest.find('%');
            output += rest.substr(0, percent);
            if (percent == std::string_view::npos) return;
            if (percent + 1 < rest.size()) {
                switch (rest[percent + 1]) {
                    case '1': output += a1; break;
                    case '2': output += a2; break;
                    case '3': output += a3; break;
                    case '4': output += a4; break;
                    case '%': output += '%'; break;
                    case 'n': output += "13"; break;  // the number in decimal, not a line break
                    default: break;
                }
            }
            rest = percent + 2 < rest.size() ? rest.substr(percent + 2, longestRest) : std::string_view{};
        }
    });
    return output;
}

void setCrLf(std::string_view lineEnd) { g_sCrLf = lineEnd; }

}  // namespace qxterm
