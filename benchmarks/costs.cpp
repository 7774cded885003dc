#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include "benchmark.h"
#include "core.h"
#include "headless-session/session.h"
#include "measure.h"
#include "payloads.h"
#include "platform/main_form.h"
#include "table.h"
#include "terminal/interpreter/interpreter.h"

namespace qxterm::bench {
namespace {

constexpr std::size_t enoughBytes = 1U << 19U;  ///< fewer are too short to be timed

std::string sizeText(std::size_t bytes) {
    if (bytes >= 1U << 20U) return std::to_string(bytes >> 20U) + " MiB";
    return bytes >= 1024 ? std::to_string(bytes / 1024) + " KiB" : std::to_string(bytes) + " B";
}

/// Median time of several calls, in nanoseconds for each of `bytes`.
template <class Routine>
double nanosecondsPerByte(int runs, std::size_t bytes, Routine&& routine) {
    std::vector<double> seconds;
    for (int run = 0; run < runs; ++run) seconds.push_back(secondsOf(routine));
    return median(seconds) * 1e9 / static_cast<double>(bytes);
}

void feedByteByByte(std::string_view bytes) {
    for (std::size_t at = 0; at < bytes.size(); ++at) processInput(bytes.substr(at, 1));
}

}  // namespace

void measureBlockLength(const Options& options) {
    std::printf("Cost of one block against its length, nanoseconds for a byte\n\n");
    const int runs = options.quick ? 3 : 7;
    constexpr std::size_t largest = 16U << 20U;
    std::vector<Payload> payloads = makePayloads(largest);
    std::vector<std::size_t> sizes;
    for (std::size_t size = 4096; size <= largest; size *= 8) sizes.push_back(size);
    if (sizes.back() != largest) sizes.push_back(largest);

    std::vector<std::string> headings{"payload"};
    for (const std::size_t size : sizes) headings.push_back(sizeText(size));
    headings.emplace_back("longest/shortest");
    Table table{headings};
    for (const Payload& payload : payloads) {
        if (std::string_view{payload.name}.find(options.filter) == std::string_view::npos) continue;
        headless::startProgram();
        std::vector<std::string> row{payload.name};
        double first = 0;
        double last = 0;
        for (const std::size_t size : sizes) {
            const std::string_view block = std::string_view{payload.bytes}.substr(0, size);
            const int blocks = static_cast<int>(std::max<std::size_t>(1, enoughBytes / size));
            processInput(block);
            last = nanosecondsPerByte(size > (1U << 20U) ? std::min(runs, 3) : 3 * runs,
                                      block.size() * static_cast<std::size_t>(blocks), [&] {
                                          for (int count = 0; count < blocks; ++count) processInput(block);
                                      });
            if (first == 0) first = last;
            row.push_back(decimal(last, 2));
        }
        row.push_back(decimal(last / first, 2));
        table.addRow(row);
    }
    table.print();
}

void measureCarriedSequences(const Options& options) {
    if (!options.filter.empty()) return;
    std::printf("Cost of a sequence that arrives byte by byte, nanoseconds for a byte\n\n");
    struct Sequence {
        const char* name;
        std::string_view head;
        char filler;
        std::string_view end;
        std::size_t longest;
    };
    constexpr std::size_t mebibyte = 1U << 20U;
    // The longest text that is carried is 1 MiB, its first and last bytes included.
    const std::array<Sequence, 3> sequences{
        {{"parameters", "\x1b[", ';', "m", mebibyte - 3},
         {"unknown, then text", "\x1b[1z", 'x', "\x1b[m", mebibyte},
         {"telnet sub-negotiation", "\xff\xfa\x18", 'x', "\xff\xf0", mebibyte}}};
    Table table{{"sequence", "1 KiB", "16 KiB", "256 KiB", "1 MiB"}};
    for (const Sequence& sequence : sequences) {
        std::vector<std::string> row{sequence.name};
        for (const std::size_t size :
             {std::size_t{1024}, std::size_t{16384}, std::size_t{262144}, mebibyte}) {
            headless::startProgram();
            std::string bytes{sequence.head};
            bytes.append(std::min(size, sequence.longest) - 3, sequence.filler);
            bytes += sequence.end;
            const int times = static_cast<int>(std::max<std::size_t>(1, enoughBytes / bytes.size()));
            const double cost = nanosecondsPerByte(options.quick ? 1 : 3,
                                                   bytes.size() * static_cast<std::size_t>(times), [&] {
                                                       for (int count = 0; count < times; ++count)
                                                           feedByteByByte(bytes);
                                                   });
            row.push_back(decimal(cost, 1));
        }
        table.addRow(row);
    }
    table.print();
}

void measureKey(const Options& options) {
    if (!options.filter.empty()) return;
    std::printf("From a key to the socket's send, microseconds\n\n");
    constexpr int keys = 20000;
    headless::startSession();
    std::vector<double> times;
    times.reserve(keys);
    for (int key = 0; key < keys; ++key) {
        const auto code = static_cast<std::int16_t>('a' + key % 26);
        times.push_back(shortSecondsOf([&] { frmterm.onKeyPress.raise(code); }) * 1e6);
    }
    std::sort(times.begin(), times.end());
    Table table{{"median", "99 of 100", "longest"}};
    table.addRow({decimal(times[keys / 2], 3), decimal(times[keys * 99 / 100], 3), decimal(times.back(), 3)});
    table.print();
}

}  // namespace qxterm::bench
