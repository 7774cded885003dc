#include <cstdio>
#include <cstring>

#include "benchmark.h"
#include "machine.h"

namespace {

constexpr const char* usage =
    "Usage: benchmarks [--quick] [--filter TEXT]\n"
    "  --quick        fewer runs: rough numbers\n"
    "  --filter TEXT  only payloads whose name holds TEXT\n";

}  // namespace

int main(int count, char** arguments) {
    using namespace qxterm::bench;
    Options options;
    for (int at = 1; at < count; ++at) {
        if (std::strcmp(arguments[at], "--quick") == 0) {
            options.quick = true;
        } else if (std::strcmp(arguments[at], "--filter") == 0 && at + 1 < count) {
            options.filter = arguments[++at];
        } else {
            const bool help = std::strcmp(arguments[at], "--help") == 0;
            std::fputs(usage, help ? stdout : stderr);
            return help ? 0 : 2;
        }
    }
    std::printf("%s\n\n", machineText().c_str());
    measureThroughput(options);
    countDrawingCalls(options);
    countAllocations(options);
    measureBlockLength(options);
    measureCarriedSequences(options);
    measureKey(options);
    return 0;
}
