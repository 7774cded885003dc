#include "connection/telnet.h"

#include <initializer_list>
#include <string>

#include "connection/send.h"
#include "connection/transport_controls.h"
#include "diag/error_trap.h"

namespace qxterm {
namespace {

using Byte = unsigned char;

constexpr Byte subnegotiationEnd = 240;
constexpr Byte subnegotiation = 250;
constexpr Byte will = 251;
constexpr Byte wont = 252;
constexpr Byte doOption = 253;
constexpr Byte dont = 254;
constexpr Byte iac = 255;
constexpr Byte silentDo = 0;  // answered as DO
constexpr Byte terminalType = 24;
constexpr Byte typeIs = 0;

void reply(std::initializer_list<Byte> bytes) {
    if (comnet2.connected()) sendBytes(std::string(bytes.begin(), bytes.end()));
}

void answerOption(Byte option) { reply({iac, option == terminalType ? will : wont, option}); }

void answerSubnegotiation(Byte option) {
    if (option != terminalType) return;
    reply({iac, subnegotiation, terminalType, typeIs, 'Q', 'X', 'T', 'E', 'R', 'M', iac, subnegotiationEnd});
}

bool needsOption(Byte command) {
    switch (command) {
        case doOption:
        case will:
        case wont:
        case dont:
        case subnegotiation:
        case silentDo: return true;
        default: return false;
    }
}

}  // namespace

void doTelnet(std::string_view data, std::int32_t& position, std::int32_t length, bool& carried) {
    carried = false;
    trapped("doTelnet", [&] {
        const auto byteAt = [&](std::int32_t at) {
            return static_cast<Byte>(data[static_cast<std::size_t>(at) - 1]);
        };
        const std::int32_t commandAt = position + 1;
        const std::int32_t optionAt = position + 2;
        if (commandAt > length || (optionAt > length && needsOption(byteAt(commandAt)))) {
            position = length + 1;
            carried = true;
            return;
        }
        const Byte command = byteAt(commandAt);
        // The byte behind any command is skipped, also where telnet has none there; the interpreter meets the
        // rest of a subnegotiation as ordinary data.
        position = optionAt > length ? commandAt : optionAt;
        if (command == subnegotiation) {
            answerSubnegotiation(byteAt(optionAt));
        } else if (command == doOption || command == silentDo) {
            answerOption(byteAt(optionAt));
        }
    });
}

}  // namespace qxterm
