#include "platform/serial.h"

#include <memory>
#include <vector>

#include "platform/headless/clock.h"
#include "platform/headless/failures.h"
#include "platform/headless/recorder.h"
#include "platform/headless/serial.h"
#include "platform/hex_text.h"

namespace qxterm {

struct SerialPort::Native {
    std::int16_t port = 1;
    std::string settings = "9600,n,8,1";
    std::int16_t handshaking = 0;
    std::int16_t inputLength = 0;
    bool open = false;
    std::uint32_t opening = 0;  ///< counts the openings
    bool carrier = false;
    std::int16_t event = 0;
    std::string received;
};

}  // namespace qxterm

namespace qxterm::headless {
namespace {

bool portsBusy = false;

std::vector<std::pair<SerialPort*, std::unique_ptr<SerialPort::Native>>>& ports() {
    static std::vector<std::pair<SerialPort*, std::unique_ptr<SerialPort::Native>>> all;
    return all;
}

SerialPort::Native& stateOf(SerialPort& port) {
    if (port.native == nullptr) {
        ports().emplace_back(&port, std::make_unique<SerialPort::Native>());
        port.native = ports().back().second.get();
    }
    return *port.native;
}

/// The port was pulled out, as is found when time passes: to the program that is a lost carrier.
void vanishLater(SerialPort& port) {
    happenNext([&port, opening = stateOf(port).opening] {
        SerialPort::Native& state = stateOf(port);
        if (!state.open || state.opening != opening) return;
        state.open = false;
        state.carrier = false;
        state.received.clear();
        serialEvent(port, commEvents::carrierDetect);
    });
}

}  // namespace

void serialReceives(SerialPort& port, std::string_view bytes, bool quietly) {
    if (!port.portOpen()) return;
    stateOf(port).received += bytes;
    if (!quietly) serialEvent(port, commEvents::receive);
}

void setCarrier(SerialPort& port, bool on) {
    SerialPort::Native& state = stateOf(port);
    if (state.carrier == on) return;
    state.carrier = on;
    if (state.open) serialEvent(port, commEvents::carrierDetect);
}

void serialEvent(SerialPort& port, std::int16_t event) {
    stateOf(port).event = event;
    port.onComm.raise();
}

void setPortsBusy(bool busy) { portsBusy = busy; }

void resetSerialPorts() {
    for (auto& [port, state] : ports()) port->native = nullptr;
    ports().clear();
}

}  // namespace qxterm::headless

namespace qxterm {

using headless::stateOf;

void SerialPort::setCommPort(std::int16_t port) { stateOf(*this).port = port; }

void SerialPort::setSettings(std::string_view settings) { stateOf(*this).settings = settings; }

void SerialPort::setHandshaking(std::int16_t handshaking) { stateOf(*this).handshaking = handshaking; }

void SerialPort::setInputLength(std::int16_t length) { stateOf(*this).inputLength = length; }

void SerialPort::setCarrierTimeout(std::int16_t /*seconds*/) {}  // event 1007 comes from the script

void SerialPort::setPortOpen(bool wanted) {
    Native& state = stateOf(*this);
    if (state.open == wanted) return;
    if (!wanted) {
        state.open = false;
        state.received.clear();
        headless::record("serial", [&] { return headless::Fields{{"op", "close"}}; });
        return;
    }
    headless::raiseIfPlanned(headless::Point::serialOpen);
    if (headless::portsBusy) throw RunTimeError{errors::deviceUnavailable};
    headless::raiseIfPlanned(headless::Point::serialSettings);
    state.open = true;
    ++state.opening;
    headless::record("serial", [&] {
        return headless::Fields{{"op", "open"},
                                {"port", state.port},
                                {"settings", state.settings},
                                {"handshaking", state.handshaking}};
    });
}

bool SerialPort::portOpen() const { return native != nullptr && native->open; }

void SerialPort::setBreak(bool on) {
    if (portOpen() && !headless::fails(headless::Point::serialBreak))
        headless::record("serial", [&] { return headless::Fields{{"op", "break"}, {"value", on}}; });
}

bool SerialPort::carrierHolding() const {
    return portOpen() && !headless::fails(headless::Point::serialCarrier) && native->carrier;
}

std::int16_t SerialPort::commEvent() const { return native == nullptr ? std::int16_t{0} : native->event; }

std::int32_t SerialPort::inBufferCount() const {
    return portOpen() ? static_cast<std::int32_t>(native->received.size()) : 0;
}

std::string SerialPort::input() {
    if (!portOpen()) return {};
    if (headless::fails(headless::Point::serialRead)) {
        headless::vanishLater(*this);
        return {};
    }
    const auto wanted = static_cast<std::size_t>(native->inputLength);
    const std::size_t length = native->inputLength <= 0 ? native->received.size() : wanted;
    std::string text = native->received.substr(0, length);
    native->received.erase(0, text.size());
    return text;
}

void SerialPort::output(std::string_view text) {
    if (!portOpen()) return;
    if (headless::fails(headless::Point::serialWrite)) {
        headless::vanishLater(*this);
        return;
    }
    headless::record("send", [&] { return headless::Fields{{"to", "serial"}, {"bytes", hexText(text)}}; });
}

}  // namespace qxterm
