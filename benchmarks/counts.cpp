#include <array>
#include <cstdio>
#include <string>

#include "benchmark.h"
#include "core.h"
#include "payloads.h"
#include "platform/headless/picture_box.h"
#include "table.h"

namespace qxterm::bench {
namespace {

constexpr std::size_t payloadSize = 1U << 20U;
constexpr std::array<std::size_t, 3> blockSizes{64, 4096, 65536};

template <class Count>
void forEachPayload(const Options& options, Count&& count) {
    const auto core = makeTerminalCore();
    for (const Payload& payload : makePayloads(payloadSize)) {
        if (std::string_view{payload.name}.find(options.filter) == std::string_view::npos) continue;
        for (const std::size_t blockSize : blockSizes) {
            core->reset();
            count(*core, payload, blockSize);
        }
    }
}

}  // namespace

void countDrawingCalls(const Options& options) {
    std::printf("Drawing calls for each payload of 1 MiB\n\n");
    Table table{{"payload", "block", "text", "characters", "fill", "clear", "invert", "line", "scroll"}};
    forEachPayload(options, [&](Core& core, const Payload& payload, std::size_t blockSize) {
        headless::clearDrawCounts();
        feedInBlocks(core, payload.bytes, blockSize);
        const headless::DrawCounts& counts = headless::drawCounts();
        table.addRow({payload.name, std::to_string(blockSize), std::to_string(counts.text),
                      std::to_string(counts.characters), std::to_string(counts.fill),
                      std::to_string(counts.clear), std::to_string(counts.invert),
                      std::to_string(counts.line), std::to_string(counts.scroll)});
    });
    table.print();
}

void countAllocations(const Options& options) {
    std::printf("Memory requests while a payload of 1 MiB is interpreted, after a first time\n\n");
    Table table{{"payload", "block", "first time", "requests"}};
    forEachPayload(options, [&](Core& core, const Payload& payload, std::size_t blockSize) {
        const auto start = memoryRequests();
        feedInBlocks(core, payload.bytes, blockSize);
        const auto warm = memoryRequests();
        feedInBlocks(core, payload.bytes, blockSize);
        table.addRow({payload.name, std::to_string(blockSize), std::to_string(warm - start),
                      std::to_string(memoryRequests() - warm)});
    });
    table.print();
}

}  // namespace qxterm::bench
