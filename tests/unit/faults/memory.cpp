#include "faults/memory.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include "platform/headless/recorder.h"

namespace {

std::atomic<bool> planned{false};
std::uint64_t made = 0;
std::uint64_t firstRefused = 0;
std::uint64_t behindRefused = 0;
std::uint64_t refused = 0;

bool refuse() {
    if (!planned.load(std::memory_order_relaxed) || qxterm::headless::OwnMemory::asked()) return false;
    const std::uint64_t number = made++;
    if (number < firstRefused || number >= behindRefused) return false;
    ++refused;
    return true;
}

}  // namespace

void* operator new(std::size_t size) {
    void* const memory = refuse() ? nullptr : std::malloc(size > 0 ? size : 1);
    if (memory == nullptr) throw std::bad_alloc{};
    return memory;
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace qxterm::test {

void planShortage(std::uint64_t after, std::uint64_t count) {
    made = 0;
    refused = 0;
    firstRefused = after;
    behindRefused = count > UINT64_MAX - after ? UINT64_MAX : after + count;
    planned = true;
}

std::uint64_t endShortage() {
    planned = false;
    return made;
}

std::uint64_t refusedRequests() { return refused; }

}  // namespace qxterm::test
