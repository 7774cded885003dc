#include <string_view>

#include "connection/transport_controls.h"
#include "platform/headless/socket.h"
#include "support/program.h"
#include "support/target.h"

// Any bytes from the peer of a telnet session, in arrivals cut as the first byte says. Nothing is sent but
// answers to options.
namespace qxterm::fuzz {
namespace {

bool isAnswer(std::string_view hex) {
    constexpr std::string_view terminalType = "fffa180051585445524dfff0";
    if (hex == terminalType || hex == "fffb18") return true;
    return hex.size() == 6 && hex.substr(0, 4) == "fffc";
}

void run(Input input) {
    Steering steering{input};
    const std::uint8_t seed = steering.byte();
    startSession();
    for (Cutter cutter{steering.rest(), seed}; cutter.more();) {
        headless::socketReceives(comnet2, cutter.next());
        checkTerminal();
    }
    for (const std::string& bytes : sends()) require(isAnswer(bytes), "only answers to options are sent");
}

const Target target{"telnet_session", run};

}  // namespace
}  // namespace qxterm::fuzz
