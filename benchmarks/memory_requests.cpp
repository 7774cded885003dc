#include <cstdlib>
#include <new>

#include "benchmark.h"

// Counts the requests of the whole program; what they are served by stays malloc.
namespace {

unsigned long long requests = 0;

void* served(std::size_t size) {
    ++requests;
    void* memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) throw std::bad_alloc{};
    return memory;
}

}  // namespace

void* operator new(std::size_t size) { return served(size); }
void* operator new[](std::size_t size) { return served(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace qxterm::bench {

unsigned long long memoryRequests() { return requests; }

}  // namespace qxterm::bench
