#pragma once

#include <string_view>

namespace qxterm::bench {

struct Options {
    bool quick = false;
    /// Payloads whose name holds this text; all while it is empty.
    std::string_view filter;
};

/// MB/s of all cores, interleaved, and the ratios to libtsm beside the goals.
void measureThroughput(const Options& options);
/// Number of drawing calls for each payload and block size. The same on every machine.
void countDrawingCalls(const Options& options);
/// Memory requests while each payload is interpreted. The same on every machine.
void countAllocations(const Options& options);
/// Cost of one block of output against its length.
void measureBlockLength(const Options& options);
/// Cost of a sequence that arrives byte by byte.
void measureCarriedSequences(const Options& options);
/// Time from a key to the socket's send.
void measureKey(const Options& options);

/// Memory requests of this program so far (operator new).
[[nodiscard]] unsigned long long memoryRequests();

}  // namespace qxterm::bench
