#include "platform/system_text.h"

#include <array>
#include <utility>

#include "platform/headless/failures.h"

namespace qxterm {
namespace {

/// Windows' own words for the socket errors that a session can meet.
constexpr std::array<std::pair<std::int16_t, const char*>, 18> texts{{
    {10013, "An attempt was made to access a socket in a way forbidden by its access permissions."},
    {10022, "An invalid argument was supplied."},
    {10024, "Too many open sockets."},
    {10035, "A non-blocking socket operation could not be completed immediately."},
    {10048, "Only one usage of each socket address (protocol/network address/port) is normally permitted."},
    {10049, "The requested address is not valid in its context."},
    {10050, "A socket operation encountered a dead network."},
    {10051, "A socket operation was attempted to an unreachable network."},
    {10053, "An established connection was aborted by the software in your host machine."},
    {10054, "An existing connection was forcibly closed by the remote host."},
    {10055,
     "An operation on a socket could not be performed because the system lacked sufficient buffer space or "
     "because "
     "a queue was full."},
    {10057,
     "A request to send or receive data was disallowed because the socket is not connected and (when sending "
     "on a "
     "datagram socket using a sendto call) no address was supplied."},
    {10060,
     "A connection attempt failed because the connected party did not properly respond after a period of "
     "time, or "
     "established connection failed because connected host has failed to respond."},
    {10061, "No connection could be made because the target machine actively refused it."},
    {10065, "A socket operation was attempted to an unreachable host."},
    {11001, "No such host is known."},
    {11002,
     "This is usually a temporary error during hostname resolution and means that the local server did not "
     "receive "
     "a response from an authoritative server."},
    {11004, "The requested name is valid, but no data of the requested type was found."},
}};

}  // namespace

std::string socketErrorText(std::int16_t number) {
    const bool told = !headless::fails(headless::Point::socketText);
    for (const auto& [known, text] : texts) {
        if (told && known == number) return text;
    }
    return "Socket error " + std::to_string(number);
}

}  // namespace qxterm
