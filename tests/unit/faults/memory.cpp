#include "faults/memory.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
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

/// A piece of memory asked for while what is given back is watched.
struct Piece {
    const char* memory;
    std::size_t size;
};
std::atomic<bool> watching{false};
std::string_view sought;
std::array<Piece, 64> pieces;
std::size_t pieceCount = 0;
std::uint64_t held = 0;

void notePiece(void* memory, std::size_t size) {
    if (!watching.load(std::memory_order_relaxed)) return;
    if (pieceCount == pieces.size()) std::abort();  // more than a watch is meant for
    pieces[pieceCount++] = {static_cast<const char*>(memory), size};
}

void lookAt(void* memory) {
    if (!watching.load(std::memory_order_relaxed)) return;
    const auto end = pieces.begin() + static_cast<std::ptrdiff_t>(pieceCount);
    const auto at = std::find_if(pieces.begin(), end, [&](const Piece& p) { return p.memory == memory; });
    if (at == end) return;
    if (std::string_view{at->memory, at->size}.find(sought) != std::string_view::npos) ++held;
    *at = pieces[--pieceCount];
}

}  // namespace

void* operator new(std::size_t size) {
    void* const memory = refuse() ? nullptr : std::malloc(size > 0 ? size : 1);
    if (memory == nullptr) throw std::bad_alloc{};
    notePiece(memory, size);
    return memory;
}

void operator delete(void* memory) noexcept {
    lookAt(memory);
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    lookAt(memory);
    std::free(memory);
}

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

void watchReturned(std::string_view text) {
    sought = text;
    pieceCount = 0;
    held = 0;
    watching = true;
}

std::uint64_t endWatch() {
    watching = false;
    return held;
}

}  // namespace qxterm::test
