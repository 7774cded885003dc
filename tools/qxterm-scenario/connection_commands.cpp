// What comes from the other end of a connection.

#include <array>

#include "commands.h"
#include "connection/transport_controls.h"
#include "platform/headless/serial.h"
#include "platform/headless/socket.h"
#include "program.h"
#include "terminal/interpreter/interpreter.h"

namespace qxterm::scenario {
namespace {

/// Runs what the other end does, unless the program is gone.
template <class Happening>
Action happening(Happening&& what) {
    return [what] {
        if (programRuns()) what();
    };
}

void hostBlock(std::string_view block) {
    Event<std::string_view> arrival;  // a failure that escapes is reported as that of any other event handler
    arrival.connect("processInput", processInput);
    arrival.raise(block);
}

Action host(Arguments& arguments) {
    return happening([bytes = arguments.bytes()] { hostBlock(bytes); });
}

Action socketConnect(Arguments& /*arguments*/) {
    return happening([] { headless::socketConnects(comnet2); });
}

Action socketClose(Arguments& /*arguments*/) {
    return happening([] { headless::socketCloses(comnet2); });
}

Action socketError(Arguments& arguments) {
    const std::int32_t number = arguments.number("N", INT16_MIN, INT16_MAX);
    return happening([=, text = arguments.text()] {
        headless::socketFails(comnet2, static_cast<std::int16_t>(number), text);
    });
}

Action socketData(Arguments& arguments) {
    return happening([bytes = arguments.bytes()] { headless::socketReceives(comnet2, bytes); });
}

Action serialData(Arguments& arguments) {
    return happening([bytes = arguments.bytes()] { headless::serialReceives(comser, bytes, false); });
}

Action serialQuiet(Arguments& arguments) {
    return happening([bytes = arguments.bytes()] { headless::serialReceives(comser, bytes, true); });
}

Action serialCarrier(Arguments& arguments) {
    return happening([on = arguments.onOff()] { headless::setCarrier(comser, on); });
}

Action serialEvent(Arguments& arguments) {
    const std::int32_t event = arguments.number("N", INT16_MIN, INT16_MAX);
    return happening([=] { headless::serialEvent(comser, static_cast<std::int16_t>(event)); });
}

constexpr std::array<Command, 9> connectionTable{{
    {"host", false, host},
    {"socket connect", false, socketConnect},
    {"socket close", false, socketClose},
    {"socket error", false, socketError},
    {"socket data", false, socketData},
    {"serial data", false, serialData},
    {"serial quiet", false, serialQuiet},
    {"serial carrier", false, serialCarrier},
    {"serial event", false, serialEvent},
}};

}  // namespace

std::span<const Command> connectionCommands() { return connectionTable; }

}  // namespace qxterm::scenario
