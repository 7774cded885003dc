#include "bytes.h"

#include "platform/hex_text.h"
#include "script.h"

namespace qxterm::scenario {
namespace {

/// Value of a hexadecimal digit, -1 for another character.
int digitValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

/// The byte of the two digits at a place.
char byteAt(std::string_view text, std::size_t place) {
    const int high = place < text.size() ? digitValue(text[place]) : -1;
    const int low = place + 1 < text.size() ? digitValue(text[place + 1]) : -1;
    if (high < 0 || low < 0) throw ScriptFault{"bytes: a pair of hexadecimal digits is expected"};
    return static_cast<char>(high * 16 + low);
}

/// Reads the escape behind a backslash; place stands on the character behind it and is left behind the
/// escape.
char escapeAt(std::string_view text, std::size_t& place) {
    if (place == text.size()) throw ScriptFault{"bytes: the string has no closing quotation mark"};
    const char c = text[place++];
    switch (c) {
        case 'e': return '\x1b';
        case 'r': return '\r';
        case 'n': return '\n';
        case 't': return '\t';
        case 'b': return '\b';
        case '0': return '\0';
        case '\\':
        case '"': return c;
        case 'x': place += 2; return byteAt(text, place - 2);
        default: throw ScriptFault{std::string{"bytes: unknown escape \\"} + c};
    }
}

/// Appends the string whose opening quotation mark stands at `place`; leaves it behind the closing one.
void appendString(std::string_view text, std::size_t& place, std::string& bytes) {
    ++place;
    while (place < text.size() && text[place] != '"') {
        const char c = text[place++];
        bytes += c == '\\' ? escapeAt(text, place) : c;
    }
    if (place >= text.size()) throw ScriptFault{"bytes: the string has no closing quotation mark"};
    ++place;
}

}  // namespace

std::string parseBytes(std::string_view text) {
    std::string bytes;
    bool any = false;
    std::size_t place = 0;
    for (;;) {
        while (place < text.size() && isBlank(text[place])) ++place;
        if (place == text.size()) break;
        any = true;
        if (text[place] == '"') {
            appendString(text, place, bytes);
            if (place < text.size() && !isBlank(text[place])) {
                throw ScriptFault{"bytes: a blank is expected behind a string"};
            }
        } else {
            for (; place < text.size() && !isBlank(text[place]); place += 2) bytes += byteAt(text, place);
        }
    }
    if (!any) throw ScriptFault{"bytes are missing"};
    return bytes;
}

std::string bytesText(std::string_view bytes) {
    std::string text{'"'};
    for (const char c : bytes) {
        switch (c) {
            case '\x1b': text += "\\e"; break;
            case '\r': text += "\\r"; break;
            case '\n': text += "\\n"; break;
            case '\t': text += "\\t"; break;
            case '\b': text += "\\b"; break;
            case '\\':
            case '"':
                text += '\\';
                text += c;
                break;
            default:
                if (c >= ' ' && c <= '~') {
                    text += c;
                } else {
                    text += "\\x" + hexText({&c, 1});
                }
                break;
        }
    }
    return text + '"';
}

}  // namespace qxterm::scenario
