#include "zpt_tnetd/request.h"

#include "common/fields.h"
#include "common/names.h"

namespace zpt {
namespace {

constexpr std::size_t withoutLogin = 4;
constexpr std::size_t withLogin = 5;

Parsed<RelayRequest> refused(const char* why) { return {{}, why}; }

}  // namespace

Parsed<RelayRequest> parseRelayRequest(const std::vector<std::string_view>& arguments) {
    if (arguments.size() != withoutLogin && arguments.size() != withLogin) {
        return refused("expected: 2 LOCALPORT FORWARDPORT IPVERSION LOGIN");
    }
    if (arguments[0] != relayOrder) return refused("the first argument is not 2");
    const auto local = parsePort(arguments[1]);
    const auto forward = parsePort(arguments[2]);
    if (!local) return refused("the local port is not a port number");
    if (!forward) return refused("the forwarded port is not a port number");
    const std::string_view version = arguments[3];
    if (version != "4" && version != "6" && version != "0") return refused("the IP version is not 4, 6 or 0");
    if (arguments.size() == withLogin && !isLogin(arguments[4]))
        return refused("the login name cannot be used");
    return {{*local, *forward}, {}};
}

}  // namespace zpt
