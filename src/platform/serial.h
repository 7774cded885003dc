#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/event.h"

namespace qxterm {

class Form;

enum class Handshaking : std::int16_t { none = 0, xonXoff = 1, rts = 2, rtsXonXoff = 3 };

/// Values of commEvent.
namespace commEvents {
inline constexpr std::int16_t receive = 2;
inline constexpr std::int16_t carrierDetect = 5;
inline constexpr std::int16_t carrierTimeout = 1007;
}  // namespace commEvents

/// The serial communications control: one port, driven by the window's messages.
class SerialPort {
public:
    constexpr SerialPort(Form& form, const char* name) : form_{form}, name_{name} {}
    SerialPort(const SerialPort&) = delete;
    SerialPort& operator=(const SerialPort&) = delete;

    /// 1 is COM1. Taken at the next opening.
    void setCommPort(std::int16_t port);
    /// "baud,parity,data,stop", as "9600,n,8,1". Taken at the next opening.
    void setSettings(std::string_view settings);
    void setHandshaking(std::int16_t handshaking);
    /// 0: input() returns all that is waiting.
    void setInputLength(std::int16_t length);
    /// Carrier-detect time-out in seconds, 0 for none.
    void setCarrierTimeout(std::int16_t seconds);
    /// Opens or closes the port. Opening: error 68 when the port is missing or in use, 5 when the settings
    /// cannot be set. Closing a closed port and opening an open one do nothing.
    void setPortOpen(bool wanted);
    [[nodiscard]] bool portOpen() const;
    /// Break state of the line; nothing on a closed port. Once begun, a break stays on the line for 250 ms at
    /// least; closing the port ends it.
    void setBreak(bool on);
    [[nodiscard]] bool carrierHolding() const;
    [[nodiscard]] std::int16_t commEvent() const;
    /// Number of characters that have come and been announced; 0 on a closed port.
    [[nodiscard]] std::int32_t inBufferCount() const;
    [[nodiscard]] std::string input();
    /// Sends the text; bytes sent to a closed port are dropped.
    void output(std::string_view text);
    [[nodiscard]] const char* name() const { return name_; }
    [[nodiscard]] Form& form() const { return form_; }

    Event<> onComm;

    struct Native;
    Native* native = nullptr;

private:
    Form& form_;
    const char* name_;
};

}  // namespace qxterm
