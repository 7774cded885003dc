// random-steps: plays scenarios of random commands, with failures planned at random.
//
//   random-steps [--seed N] [--first N] [--steps N] [--length N] [--print]

#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string_view>

#include "player.h"
#include "random-steps/steps.h"
#include "support/whole_program.h"

// Every way to die goes through the signal, which tells what was played.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() { return "abort_on_error=1:handle_abort=0"; }
extern "C" const char* __ubsan_default_options();
extern "C" const char* __ubsan_default_options() { return "abort_on_error=1:print_stacktrace=1"; }

namespace {

struct Order {
    std::uint64_t seed = 1;
    std::uint64_t first = 0;      ///< number of the first scenario
    std::uint64_t steps = 20000;  ///< all scenarios together
    std::uint64_t length = 1500;  ///< of a scenario, in steps
    bool print = false;           ///< each line, before it is carried out
};

volatile std::sig_atomic_t playing = 0;
std::uint64_t seedPlayed = 0;

void tellAndDie(int /*signal*/) {
    std::fprintf(stderr, "random-steps: failed in: --seed %llu --first %llu (add --print)\n",
                 static_cast<unsigned long long>(seedPlayed), static_cast<unsigned long long>(playing));
    std::signal(SIGABRT, SIG_DFL);
    std::abort();
}

bool readNumber(const char* text, std::uint64_t& number) {
    const char* end = text + std::strlen(text);
    const auto [stop, error] = std::from_chars(text, end, number);
    return error == std::errc{} && stop == end;
}

bool readOrder(int count, char** arguments, Order& order) {
    for (int at = 1; at < count; ++at) {
        const std::string_view word = arguments[at];
        std::uint64_t* const number = word == "--seed"     ? &order.seed
                                      : word == "--first"  ? &order.first
                                      : word == "--steps"  ? &order.steps
                                      : word == "--length" ? &order.length
                                                           : nullptr;
        if (word == "--print") {
            order.print = true;
        } else if (number == nullptr || ++at == count || !readNumber(arguments[at], *number)) {
            return false;
        }
    }
    return order.length > 0;
}

}  // namespace

int main(int count, char** arguments) {
    Order order;
    if (!readOrder(count, arguments, order)) {
        std::fputs("Usage: random-steps [--seed N] [--first N] [--steps N] [--length N] [--print]\n", stderr);
        return 2;
    }
    std::signal(SIGABRT, tellAndDie);
    seedPlayed = order.seed;
    std::uint64_t done = 0;
    std::uint64_t scenario = order.first;
    for (; done < order.steps; ++scenario) {
        playing = static_cast<std::sig_atomic_t>(scenario);
        qxterm::fuzz::Steps steps{order.seed, scenario, static_cast<std::uint32_t>(order.length),
                                  order.print ? stdout : nullptr};
        if (qxterm::scenario::playQuietly(steps, qxterm::fuzz::keepRecord) != 0) {
            std::fprintf(stderr, "random-steps: line %zu of scenario %llu cannot be played\n", steps.line(),
                         static_cast<unsigned long long>(scenario));
            return 1;
        }
        done += steps.line();
    }
    const double seconds = static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
    std::printf("%llu steps in %llu scenarios, seed %llu, %.0f s of processor time\n",
                static_cast<unsigned long long>(done),
                static_cast<unsigned long long>(scenario - order.first),
                static_cast<unsigned long long>(order.seed), seconds);
    const qxterm::fuzz::Tally& tally = qxterm::fuzz::tally();
    std::printf("  %llu starts, %llu failures planned, %llu steps in dialogs, %llu in sessions\n  sessions:",
                static_cast<unsigned long long>(tally.starts), static_cast<unsigned long long>(tally.faults),
                static_cast<unsigned long long>(tally.inDialogs),
                static_cast<unsigned long long>(tally.inSession));
    int at = 0;
    const char* separator = "";
    for (const char* type : {"net", "serial", "modem", "ssh", "unknown", "loop"}) {
        std::printf("%s %llu %s", separator,
                    static_cast<unsigned long long>(tally.sessions[static_cast<std::size_t>(at++)]), type);
        separator = ",";
    }
    std::printf("\n");
    return 0;
}
