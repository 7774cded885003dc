#include "connection/ssh_fields.h"

#include <algorithm>

#include "common/fields.h"
#include "diag/format_msg.h"

namespace qxterm {
namespace {

/// How much of a text a message shows.
constexpr std::size_t shownOfField = 60;

std::string shown(std::string_view text) {
    std::string result{text.substr(0, shownOfField)};
    std::replace_if(
        result.begin(), result.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, '?');
    return text.size() > shownOfField ? result + "..." : result;
}

std::string lengthComplaint(const char* what, std::string_view text) {
    if (text.size() <= zpt::longestField) return {};
    return formatMsg("The %1 is too long.  It may have up to %2 characters.", what,
                     std::to_string(zpt::longestField));
}

std::string hostComplaint(std::string_view host) {
    if (std::string complaint = lengthComplaint("hostname", host); !complaint.empty()) return complaint;
    if (zpt::isHost(host)) return {};
    return formatMsg(
        "The hostname \"%1\" cannot be used for an SSH connection.  "
        "It must be a name or an address, without blanks and quotation marks.",
        shown(host));
}

std::string loginComplaint(std::string_view login) {
    if (std::string complaint = lengthComplaint("login name", login); !complaint.empty()) return complaint;
    if (zpt::isLogin(login)) return {};
    return formatMsg(
        "The login name \"%1\" cannot be used for an SSH connection.  "
        "It must not begin with a hyphen or hold blanks, quotation marks or control characters.",
        shown(login));
}

}  // namespace

std::string sshFieldComplaint(std::string_view host, std::string_view login, std::string_view sshPort) {
    if (std::string complaint = hostComplaint(host); !complaint.empty()) return complaint;
    if (std::string complaint = loginComplaint(login); !complaint.empty()) return complaint;
    if (zpt::parsePort(sshPort)) return {};
    return formatMsg("The SSH port \"%1\" is not a port number.  It must be a number from 1 to 65535.",
                     shown(sshPort));
}

}  // namespace qxterm
