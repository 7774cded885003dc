#include "connection/ssh_fields.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "diag/format_msg.h"

namespace qxterm {
namespace {

/// A host name has 253 characters at most; what hosts take as a login name is shorter still.
constexpr std::size_t longestField = 255;
/// How much of a text a message shows.
constexpr std::size_t shownOfField = 60;

constexpr unsigned char lastAscii = 0x7F;

bool isAlphanumeric(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

/// Names in other alphabets are left to the look-up.
bool fitsHost(char c) {
    constexpr std::string_view others = ".-_:%[]";
    return isAlphanumeric(c) || others.find(c) != std::string_view::npos ||
           static_cast<unsigned char>(c) > lastAscii;
}

bool fitsLogin(char c) {
    constexpr std::string_view quotes = "\"'`";
    const auto code = static_cast<unsigned char>(c);
    return code > ' ' && code != lastAscii && quotes.find(c) == std::string_view::npos;
}

std::string shown(std::string_view text) {
    std::string result{text.substr(0, shownOfField)};
    std::replace_if(
        result.begin(), result.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, '?');
    return text.size() > shownOfField ? result + "..." : result;
}

std::string lengthComplaint(const char* what, std::string_view text) {
    if (text.size() <= longestField) return {};
    return formatMsg("The %1 is too long.  It may have up to %2 characters.", what,
                     std::to_string(longestField));
}

std::string hostComplaint(std::string_view host) {
    if (std::string complaint = lengthComplaint("hostname", host); !complaint.empty()) return complaint;
    if (!host.empty() && host.front() != '-' && std::all_of(host.begin(), host.end(), fitsHost)) return {};
    return formatMsg(
        "The hostname \"%1\" cannot be used for an SSH connection.  "
        "It must be a name or an address, without blanks and quotation marks.",
        shown(host));
}

std::string loginComplaint(std::string_view login) {
    if (std::string complaint = lengthComplaint("login name", login); !complaint.empty()) return complaint;
    if (std::all_of(login.begin(), login.end(), fitsLogin) && !login.starts_with('-')) return {};
    return formatMsg(
        "The login name \"%1\" cannot be used for an SSH connection.  "
        "It must not begin with a hyphen or hold blanks, quotation marks or control characters.",
        shown(login));
}

bool isPort(std::string_view text) {
    std::uint16_t port = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, port);
    return error == std::errc{} && stop == end && port != 0;
}

}  // namespace

std::string sshFieldComplaint(std::string_view host, std::string_view login, std::string_view sshPort) {
    if (std::string complaint = hostComplaint(host); !complaint.empty()) return complaint;
    if (std::string complaint = loginComplaint(login); !complaint.empty()) return complaint;
    if (isPort(sshPort)) return {};
    return formatMsg("The SSH port \"%1\" is not a port number.  It must be a number from 1 to 65535.",
                     shown(sshPort));
}

}  // namespace qxterm
