#include "model/host_bytes.h"

#include <string_view>

namespace qxterm::test {
namespace {

char anyOf(Choices& choices, std::string_view from) {
    return from[choices.below(static_cast<std::uint32_t>(from.size()))];
}

std::string number(Choices& choices) {
    static const std::string extremes[] = {"0",  "1",  "23",    "24",    "25",   "79",
                                           "80", "81", "32767", "32768", "99999"};
    switch (choices.below(16)) {
        case 0: return "";
        case 1: return extremes[choices.below(11)];
        case 2:
        case 3: return std::to_string(choices.below(100));
        default: return std::to_string(choices.below(26));
    }
}

std::string text(Choices& choices) {
    const std::uint32_t longest = choices.oneIn(5) ? 200 : 20;
    std::string all(1 + choices.below(longest), ' ');
    const bool oneKind = choices.oneIn(3);
    const bool blanks = choices.oneIn(10);
    const char kind = static_cast<char>(' ' + choices.below(95));
    for (char& c : all) {
        if (blanks) continue;
        c = oneKind ? kind
                    : static_cast<char>(choices.oneIn(8) ? 127 + choices.below(128) : 32 + choices.below(95));
    }
    return all;
}

std::string functionKey(Choices& choices) {
    const std::uint32_t length = choices.below(5);
    std::string all = "\x1b[" + std::to_string(choices.below(10)) + ';' + std::to_string(length) + ';' +
                      std::to_string(choices.below(3)) + 'q';
    if (choices.oneIn(10)) return all;  // label and string do not come
    for (std::uint32_t at = 0; at < 16 + length; ++at) all += static_cast<char>(choices.below(256));
    return all;
}

std::string mode(Choices& choices) {
    static const std::string modes[] = {"5", "6", "7", "10", "11", "12", "13", "25", "4", "99", "6;7", "5;5"};
    const bool marker = !choices.oneIn(12);
    std::string which = modes[choices.below(12)];
    // Suspended drawing hides everything that comes behind it.
    if (which == "10" && !choices.oneIn(4)) return "\x1b[?10l";
    return std::string{"\x1b["} + (marker ? "?" : "") + which + anyOf(choices, "hl");
}

std::string controlSequence(Choices& choices, const HostLimits& limits) {
    switch (choices.below(16)) {
        case 0: return mode(choices);
        case 1: return std::string{"\x1b[4"} + anyOf(choices, "hl");
        case 2:
        case 3:
            return "\x1b[" + std::to_string(1 + choices.below(24)) + ';' +
                   std::to_string(1 + choices.below(80)) + 'H';
        case 4: return functionKey(choices);
        case 5: {
            const std::uint32_t column = limits.columnsOutside ? choices.below(90) : 1 + choices.below(80);
            return "\x1b[1;" + std::to_string(column) + 'x';
        }
        case 6:
            if (!limits.repeats) break;
            return "\x1b[" + number(choices) + 'b';
        case 7: {
            const std::uint32_t top = 1 + choices.below(24);
            return "\x1b[" + std::to_string(top) + ';' + std::to_string(top + choices.below(24)) + 'r';
        }
        case 8: return std::string{"\x1b["} + anyOf(choices, "012") + 'p';
        default: break;
    }
    std::string all = "\x1b[";
    if (choices.oneIn(30)) all += '?';
    for (std::uint32_t left = choices.below(4), at = 0; at < left; ++at)
        all += (at > 0 ? ";" : "") + number(choices);
    return all + anyOf(choices, "HfrJKABCDLMmmmmmm@PZhlpncu");
}

std::string graphicRendition(Choices& choices) {
    static const std::string all[] = {"",   "0",  "1",  "4",  "5",  "7",  "8",  "22", "24",    "25",
                                      "27", "28", "39", "49", "31", "32", "44", "46", "1;4;7", "33;45"};
    return "\x1b[" + all[choices.below(20)] + 'm';
}

std::string escape(Choices& choices) {
    switch (choices.below(8)) {
        case 0: return std::string{"\x1b("} + anyOf(choices, "AB01}X");
        case 1: return std::string{"\x1b#"} + anyOf(choices, "3456879");
        case 2: return std::string{"\x1b"} + anyOf(choices, "QR=>ZcN");
        default: return std::string{"\x1b"} + anyOf(choices, "78DEM");
    }
}

std::string telnet(Choices& choices) {
    using namespace std::string_literals;
    switch (choices.below(6)) {
        case 0: return "\xff\xfd\x18"s;
        case 1: return "\xff\xfa\x18\x01\xff\xf0"s;
        case 2: return "\xff"s + static_cast<char>(choices.below(256));
        default: return "\xff"s + anyOf(choices, "\xfb\xfc\xfd\xfe") + static_cast<char>(choices.below(256));
    }
}

std::string piece(Choices& choices, const HostLimits& limits) {
    switch (choices.below(16)) {
        case 0:
        case 1:
        case 2:
        case 3: return text(choices);
        case 4: return "\r\n";
        case 5:
        case 6: return {anyOf(choices, std::string_view{"\0\a\b\t\n\v\f\r\x0e\x0f\x1c\n\n\r\b\t", 16})};
        case 7: return escape(choices);
        case 8:
        case 9: return graphicRendition(choices);
        case 10: return limits.telnet && choices.oneIn(3) ? telnet(choices) : "\n";
        default: return controlSequence(choices, limits);
    }
}

}  // namespace

std::string hostBytes(Choices& choices, const HostLimits& limits) {
    std::string all;
    for (std::uint32_t left = 1 + choices.below(6); left > 0; --left) all += piece(choices, limits);
    if (choices.oneIn(12)) all.resize(choices.below(static_cast<std::uint32_t>(all.size()) + 1));
    return all;
}

}  // namespace qxterm::test
