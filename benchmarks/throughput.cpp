#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "benchmark.h"
#include "core.h"
#include "measure.h"
#include "payloads.h"
#include "table.h"

namespace qxterm::bench {
namespace {

constexpr std::size_t payloadSize = 1U << 20U;
constexpr std::array<std::size_t, 2> blockSizes{4096, 65536};
constexpr double shortestRun = 0.06;  // seconds; a run repeats its payload until it is that long

/// One core on one payload: how often a run repeats the payload, and what the runs took.
struct Lane {
    std::unique_ptr<Core> core;
    int repeats = 1;
    std::vector<double> rates;  ///< MB/s of each run

    double feed(const Payload& payload, std::size_t blockSize) {
        const double seconds = secondsOf([&] {
            for (int count = 0; count < repeats; ++count) feedInBlocks(*core, payload.bytes, blockSize);
        });
        return std::max(seconds, 1e-6);
    }

    void prepare(const Payload& payload, std::size_t blockSize) {
        core->reset();
        repeats = 1;
        rates.clear();
        (void)feed(payload, blockSize);  // warms the caches
        repeats = std::max(1, static_cast<int>(shortestRun / feed(payload, blockSize)));
    }

    void run(const Payload& payload, std::size_t blockSize) {
        const double seconds = feed(payload, blockSize);
        rates.push_back(static_cast<double>(payload.bytes.size()) * repeats / seconds / 1e6);
    }

    [[nodiscard]] double rate() const { return median(rates); }
};

enum LaneOf : std::size_t { ours, tsm, vterm, scan, laneCount };

std::array<Lane, laneCount> makeLanes() {
    std::array<Lane, laneCount> lanes;
    lanes[ours].core = makeTerminalCore();
    lanes[tsm].core = makeLibtsmCore();
    lanes[vterm].core = makeLibvtermCore();
    lanes[scan].core = makeScanCore();
    return lanes;
}

std::string rateOf(const Lane& lane) {
    return lane.core == nullptr ? "-" : decimal(lane.rate(), lane.rate() < 100 ? 1 : 0);
}

std::string ratio(const Lane& a, const Lane& b) {
    return a.core == nullptr || b.core == nullptr ? "-" : decimal(a.rate() / b.rate(), 1);
}

}  // namespace

void measureThroughput(const Options& options) {
    const int runs = options.quick ? 3 : 9;
    std::printf("Throughput, MB/s of processor time, median of %d runs, the cores in turn\n\n", runs);
    std::array<Lane, laneCount> lanes = makeLanes();
    Table table{{"payload", "block", "qxterm", "libtsm", "libvterm", "bare scan", "qxterm/libtsm", "goal",
                 "libvterm/libtsm"}};
    for (const Payload& payload : makePayloads(payloadSize)) {
        if (std::string_view{payload.name}.find(options.filter) == std::string_view::npos) continue;
        for (const std::size_t blockSize : blockSizes) {
            for (Lane& lane : lanes) {
                if (lane.core != nullptr) lane.prepare(payload, blockSize);
            }
            for (int run = 0; run < runs; ++run) {
                for (Lane& lane : lanes) {
                    if (lane.core != nullptr) lane.run(payload, blockSize);
                }
            }
            table.addRow({payload.name, std::to_string(blockSize / 1024) + " KiB", rateOf(lanes[ours]),
                          rateOf(lanes[tsm]), rateOf(lanes[vterm]), rateOf(lanes[scan]),
                          ratio(lanes[ours], lanes[tsm]), payload.goal > 0 ? decimal(payload.goal, 1) : "-",
                          ratio(lanes[vterm], lanes[tsm])});
        }
    }
    table.print();
}

}  // namespace qxterm::bench
