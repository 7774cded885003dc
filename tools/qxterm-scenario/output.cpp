#include "output.h"

#include <cstdio>

namespace qxterm::scenario {
namespace {

bool printing = true;
/// Something that was printed could not be written.
bool lost = false;

}  // namespace

std::string jsonText(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            text += c;
        } else {
            text += static_cast<char>(0xC0U | (byte >> 6U));
            text += static_cast<char>(0x80U | (byte & 0x3FU));
        }
    }
    return text;
}

void setPrinting(bool on) { printing = on; }

void print(const Json& object) {
    if (!printing) return;
    const std::string line = object.dump() + '\n';
    if (std::fwrite(line.data(), 1, line.size(), stdout) != line.size()) lost = true;
}

bool flushOutput() {
    if (std::fflush(stdout) != 0) lost = true;
    return !lost;
}

}  // namespace qxterm::scenario
