#include "connection/send.h"

#include <cstdint>
#include <span>
#include <vector>

#include "connection/transport_controls.h"
#include "diag/error_trap.h"
#include "diag/trace_log.h"

namespace qxterm {
namespace {

constexpr const char* sentHeading = "BYTES<<";

}  // namespace

void sendBytes(std::string_view bytes) {
    trapped("sendBytes", [&] {
        logBytes(sentHeading, bytes);
        const std::vector<std::uint8_t> block(bytes.begin(), bytes.end());
        comnet2.send(std::span{block});
    });
}

void sendText(std::string_view text) {
    trapped("sendText", [&] {
        logBytes(sentHeading, text);
        comnet2.send(text);
    });
}

void sendSerial(std::string_view text) {
    trapped("sendSerial", [&] {
        logBytes(sentHeading, text);
        comser.output(text);
    });
}

}  // namespace qxterm
