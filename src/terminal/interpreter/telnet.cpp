#include "terminal/interpreter/telnet.h"

#include <array>
#include <initializer_list>
#include <string>

#include "diag/error_trap.h"
#include "terminal/interpreter/sequences.h"

namespace qxterm {
namespace {

using Byte = unsigned char;

constexpr Byte subnegotiationEnd = 240;
constexpr Byte subnegotiation = 250;
constexpr Byte will = 251;
constexpr Byte wont = 252;
constexpr Byte doOption = 253;
constexpr Byte dont = 254;
constexpr Byte silentDo = 0;  // answered as DO
constexpr Byte terminalType = 24;
constexpr Byte typeIs = 0;

void reply(std::initializer_list<Byte> bytes) { answerHost(std::string(bytes.begin(), bytes.end())); }

void answerOption(Byte option) { reply({control::telnet, option == terminalType ? will : wont, option}); }

void answerSubnegotiation(Byte option) {
    if (option != terminalType) return;
    reply({control::telnet, subnegotiation, terminalType, typeIs, 'Q', 'X', 'T', 'E', 'R', 'M',
           control::telnet, subnegotiationEnd});
}

void ignoreOption(Byte /*option*/) {}

/// The commands that an option must follow.
struct Row {
    Byte command;
    void (*verb)(Byte option);
};
constexpr std::array commands{
    Row{silentDo, answerOption}, Row{subnegotiation, answerSubnegotiation},
    Row{doOption, answerOption}, Row{will, ignoreOption},
    Row{wont, ignoreOption},     Row{dont, ignoreOption},
};

const Row* rowOf(Byte command) {
    for (const Row& row : commands) {
        if (row.command == command) return &row;
    }
    return nullptr;
}

}  // namespace

void doTelnet(HostInput& input) {
    trapped("doTelnet", [&] {
        const std::size_t following = input.data.size() - input.position;
        const Row* const row = following > 0 ? rowOf(input.next()) : nullptr;
        if (following == 0 || (following == 1 && row != nullptr)) {
            input.waitForMore();
            return;
        }
        // The byte behind any command is skipped, also where telnet has none there; the interpreter meets the
        // rest of a subnegotiation as ordinary data.
        input.position += following >= 2 ? 2 : 1;
        if (row != nullptr) row->verb(static_cast<Byte>(input.data[input.position - 1]));
    });
}

}  // namespace qxterm
