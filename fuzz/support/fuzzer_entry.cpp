#include <cstddef>
#include <cstdint>

#include "support/target.h"

// What libFuzzer calls: the one target that this program was linked with.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    qxterm::fuzz::Target::first()->run({data, size});
    return 0;
}
