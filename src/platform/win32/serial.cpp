#include "platform/serial.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "platform/run_time_error.h"
#include "platform/win32/message_window.h"
#include "platform/win32/serial_line.h"
#include "platform/win32/serial_settings.h"

namespace qxterm {

/// A serial control's settings and its line while it is open; made with the first use and kept for good.
struct SerialPort::Native {
    explicit Native(SerialPort& control) : owner{control} {}
    SerialPort& owner;
    std::int16_t port = 1;
    std::string settings = "9600,n,8,1";
    Handshaking handshaking = Handshaking::none;
    std::int16_t inputLength = 0;
    std::int16_t carrierTimeout = 0;  // seconds
    std::int16_t commEvent = 0;
    std::string received;
    std::unique_ptr<win32::SerialLine> line;
    bool carrier = false;
    ULONGLONG breakBegan = 0;  // milliseconds since the system's start; 0 without a break
};

namespace win32 {
namespace {

using Port = SerialPort::Native;

/// Bytes kept here unread; beyond them they wait in the port, where handshaking can stop the sender.
constexpr std::size_t receiveLimit = std::size_t{1024} * 1024;
constexpr DWORD portBuffer = 65536;
/// Milliseconds. The tick that ends a break may come at once after its begin; the other end takes a break
/// that is shorter than a character or two for a faulty character.
constexpr ULONGLONG shortestBreak = 250;

std::vector<std::unique_ptr<Port>>& ports() {
    static std::vector<std::unique_ptr<Port>> all;
    return all;
}

void raise(Port& port, std::int16_t event) {
    port.commEvent = event;
    port.owner.onComm.raise();
}

void clearBreak(Port& port) {
    KillTimer(messageWindow(), timerBreak);
    if (port.breakBegan == 0) return;
    port.breakBegan = 0;
    port.line->setBreak(false);
}

void shut(Port& port) {
    KillTimer(messageWindow(), timerCarrier);
    // Not every driver ends a break with the port.
    if (port.line != nullptr) clearBreak(port);
    port.line.reset();
    port.received.clear();
    port.carrier = false;
}

/// The port was pulled out: to the program that is a lost carrier.
void vanished(Port& port) {
    shut(port);
    raise(port, commEvents::carrierDetect);
}

/// Fetches what is waiting as far as there is room. False when the port is gone.
bool fetch(Port& port) {
    if (port.received.size() >= receiveLimit) return true;
    const bool ok = port.line->readWaiting(port.received);
    if (ok) port.line->receiveHandled();
    return ok;
}

void carrierChanged(Port& port) {
    const bool now = port.line->carrier();
    if (now == port.carrier) return;
    port.carrier = now;
    if (now) KillTimer(messageWindow(), timerCarrier);
    raise(port, commEvents::carrierDetect);
}

void serialMessage(UINT /*message*/, WPARAM wParam, LPARAM lParam) {
    for (const auto& one : ports()) {
        Port& port = *one;
        const auto its = [&] { return port.line != nullptr && port.line->token() == wParam; };
        if (!its()) continue;
        if ((lParam & lineNews::gone) != 0 || !fetch(port)) {
            vanished(port);
            return;
        }
        if ((lParam & lineNews::received) != 0 && !port.received.empty()) raise(port, commEvents::receive);
        // The handler may have closed the port.
        if ((lParam & lineNews::carrier) != 0 && its()) carrierChanged(port);
        return;
    }
}

void carrierTimer(UINT /*message*/, WPARAM wParam, LPARAM /*lParam*/) {
    if (wParam != timerCarrier) return;
    KillTimer(messageWindow(), timerCarrier);
    for (const auto& port : ports()) {
        if (port->line != nullptr && !port->carrier) raise(*port, commEvents::carrierTimeout);
    }
}

void breakTimer(UINT /*message*/, WPARAM wParam, LPARAM /*lParam*/) {
    if (wParam != timerBreak) return;
    for (const auto& port : ports()) {
        if (port->line != nullptr) clearBreak(*port);
    }
}

void beginBreak(Port& port) {
    KillTimer(messageWindow(), timerBreak);
    port.breakBegan = GetTickCount64();
    port.line->setBreak(true);
}

void endBreak(Port& port) {
    const ULONGLONG lasted = GetTickCount64() - port.breakBegan;
    if (lasted >= shortestBreak) {
        clearBreak(port);
    } else {
        const auto rest = static_cast<UINT>(shortestBreak - lasted);
        // Without a timer a short break is better than one that never ends.
        if (SetTimer(messageWindow(), timerBreak, rest, nullptr) == 0) clearBreak(port);
    }
}

Port& portOf(SerialPort& control) {
    if (control.native == nullptr) {
        static const bool subscribed = (handleMessages(wmSerial, wmSerial, serialMessage),
                                        handleMessages(WM_TIMER, WM_TIMER, carrierTimer),
                                        handleMessages(WM_TIMER, WM_TIMER, breakTimer), true);
        (void)subscribed;
        ports().push_back(std::make_unique<Port>(control));
        control.native = ports().back().get();
    }
    return *control.native;
}

KernelHandle openDevice(std::int16_t number) {
    const std::string name = "\\\\.\\COM" + std::to_string(number);
    KernelHandle device = zpt::validHandle(CreateFileA(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                                       OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr));
    if (!device) throw RunTimeError{errors::deviceUnavailable};
    return device;
}

void configure(HANDLE handle, const Port& port) {
    DCB control{};
    control.DCBlength = sizeof control;
    if (GetCommState(handle, &control) == 0) throw RunTimeError{errors::deviceUnavailable};
    const bool ok =
        applySettings(control, port.settings, port.handshaking) && SetCommState(handle, &control) != 0;
    if (!ok) throw RunTimeError{errors::invalidProcedureCall};
    SetupComm(handle, portBuffer, portBuffer);
    // A read gives at once what is there.
    COMMTIMEOUTS times{};
    times.ReadIntervalTimeout = MAXDWORD;
    SetCommTimeouts(handle, &times);
    PurgeComm(handle, PURGE_RXCLEAR | PURGE_TXCLEAR);
}

void open(Port& port) {
    static std::uint32_t lastToken = 0;
    KernelHandle device = openDevice(port.port);
    configure(device.get(), port);
    ++lastToken;
    port.line = std::make_unique<SerialLine>(std::move(device), lastToken);
    port.carrier = port.line->carrier();
    constexpr UINT second = 1000;
    if (port.carrierTimeout <= 0 || port.carrier) return;
    if (SetTimer(messageWindow(), timerCarrier, static_cast<UINT>(port.carrierTimeout) * second, nullptr) ==
        0) {
        // Nothing would end the wait for a modem that says nothing.
        port.line.reset();
        throw RunTimeError{errors::outOfMemory};
    }
}

}  // namespace
}  // namespace win32

using namespace win32;

void SerialPort::setCommPort(std::int16_t port) { portOf(*this).port = port; }
void SerialPort::setSettings(std::string_view settings) { portOf(*this).settings = settings; }

void SerialPort::setHandshaking(std::int16_t handshaking) {
    portOf(*this).handshaking = static_cast<Handshaking>(std::clamp<std::int16_t>(handshaking, 0, 3));
}

void SerialPort::setInputLength(std::int16_t length) { portOf(*this).inputLength = length; }
void SerialPort::setCarrierTimeout(std::int16_t seconds) { portOf(*this).carrierTimeout = seconds; }

void SerialPort::setPortOpen(bool wanted) {
    Port& port = portOf(*this);
    if (wanted == portOpen()) return;
    if (wanted) {
        open(port);
    } else {
        shut(port);
    }
}

bool SerialPort::portOpen() const { return native != nullptr && native->line != nullptr; }

void SerialPort::setBreak(bool on) {
    if (!portOpen()) return;
    if (on) {
        beginBreak(*native);
    } else {
        endBreak(*native);
    }
}

bool SerialPort::carrierHolding() const { return portOpen() && native->carrier; }
std::int16_t SerialPort::commEvent() const { return native != nullptr ? native->commEvent : std::int16_t{0}; }

std::int32_t SerialPort::inBufferCount() const {
    // Only what was announced: what is not yet is the receive event's to take.
    if (!portOpen()) return 0;
    return static_cast<std::int32_t>(native->received.size());
}

std::string SerialPort::input() {
    if (!portOpen()) return {};
    (void)fetch(*native);
    const std::size_t length =
        native->inputLength > 0 ? static_cast<std::size_t>(native->inputLength) : native->received.size();
    std::string result = native->received.substr(0, length);
    native->received.erase(0, result.size());
    // What had no room may come now.
    (void)fetch(*native);
    return result;
}

void SerialPort::output(std::string_view text) {
    if (portOpen()) native->line->write(text);
}

}  // namespace qxterm
