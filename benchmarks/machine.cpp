#include "machine.h"

#include <thread>

namespace qxterm::bench {

std::string machineText() {
    std::string text = std::to_string(std::thread::hardware_concurrency()) + " cores, ";
#if defined(__clang__)
    text += "clang " __clang_version__;
#elif defined(__GNUC__)
    text += "g++ " __VERSION__;
#else
    text += "another compiler";
#endif
#if defined(__OPTIMIZE__)
    text += ", optimised";
#else
    text += ", not optimised: the numbers mean nothing";
#endif
    return text;
}

}  // namespace qxterm::bench
