#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace qxterm::bench {

/// One kind of host output. The bytes mean the same to every terminal core here: plain ASCII, CR LF line
/// ends, and control sequences that all of them carry out.
struct Payload {
    const char* name;
    const char* what;
    /// How many times faster than libtsm this terminal is meant to be; 0 for payloads without a goal.
    double goal;
    std::string bytes;
};

/// All payloads, each about `size` bytes long; the same bytes at every call.
[[nodiscard]] std::vector<Payload> makePayloads(std::size_t size);

}  // namespace qxterm::bench
