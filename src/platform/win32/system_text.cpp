#include "platform/system_text.h"

#include <array>

#include "platform/win32/system.h"

namespace qxterm {

std::string socketErrorText(std::int16_t number) {
    std::array<char, 512> buffer{};
    const DWORD length = FormatMessageA(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK, nullptr,
        static_cast<DWORD>(number), 0, buffer.data(), static_cast<DWORD>(buffer.size()), nullptr);
    std::string text{buffer.data(), length};
    while (!text.empty() && (text.back() == ' ' || text.back() == '\r' || text.back() == '\n'))
        text.pop_back();
    return text;
}

}  // namespace qxterm
