#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "benchmark.h"
#include "core.h"
#include "machine.h"
#include "payloads.h"

namespace {

constexpr const char* usage =
    "Usage: benchmarks [--quick] [--filter TEXT]\n"
    "  --quick        fewer runs: rough numbers\n"
    "  --filter TEXT  only payloads whose name holds TEXT\n"
    "  --feed FILE    measures nothing: hands the file to the terminal, in blocks of 64 KiB\n"
    "  --write FOLDER measures nothing: writes each payload into a file there\n";

/// Where instructions are counted: the terminal at work, without its start.
[[gnu::noinline]] void countedFeed(qxterm::bench::Core& terminal, const std::string& bytes) {
    qxterm::bench::feedInBlocks(terminal, bytes, 65536);
}

int feedFile(const char* name) {
    std::ifstream file{name, std::ios::binary};
    const std::string bytes{std::istreambuf_iterator<char>{file}, {}};
    if (bytes.empty()) {
        std::fprintf(stderr, "benchmarks: nothing to read in %s\n", name);
        return 2;
    }
    const auto terminal = qxterm::bench::makeTerminalCore();
    terminal->reset();
    qxterm::bench::feedInBlocks(*terminal, bytes, 65536);  // warms up: what is allocated once
    countedFeed(*terminal, bytes);
    return 0;
}

int writePayloads(const std::string& folder) {
    constexpr std::size_t size = 256U * 1024U;
    for (const qxterm::bench::Payload& payload : qxterm::bench::makePayloads(size)) {
        std::ofstream file{folder + '/' + payload.name, std::ios::binary};
        file << payload.bytes;
        if (!file.flush()) {
            std::fprintf(stderr, "benchmarks: cannot write into %s\n", folder.c_str());
            return 2;
        }
    }
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    using namespace qxterm::bench;
    Options options;
    for (int at = 1; at < count; ++at) {
        if (std::strcmp(arguments[at], "--quick") == 0) {
            options.quick = true;
        } else if (std::strcmp(arguments[at], "--filter") == 0 && at + 1 < count) {
            options.filter = arguments[++at];
        } else if (std::strcmp(arguments[at], "--feed") == 0 && at + 1 < count) {
            return feedFile(arguments[at + 1]);
        } else if (std::strcmp(arguments[at], "--write") == 0 && at + 1 < count) {
            return writePayloads(arguments[at + 1]);
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
