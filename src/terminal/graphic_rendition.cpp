#include "terminal/graphic_rendition.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include "terminal/attributes.h"
#include "terminal/scrolling.h"
#include "timers/timer_registry.h"

namespace qxterm {
namespace {

constexpr std::int16_t textBlinkPeriod = 500;  // ms
constexpr std::int16_t blinkOn = 5;

/// A triple as one number: flags, foreground and background in 16 bits each, from the lowest bit up.
using Packed = std::uint64_t;

constexpr Packed pack(const AttrTriple& triple) {
    const auto part = [](std::int16_t value) { return Packed{static_cast<std::uint16_t>(value)}; };
    return part(triple.flags) | part(triple.fg) << 16U | part(triple.bg) << 32U;
}

constexpr AttrTriple unpack(Packed packed) {
    const auto part = [](Packed bits) { return static_cast<std::int16_t>(static_cast<std::uint16_t>(bits)); };
    return {part(packed), part(packed >> 16U), part(packed >> 32U)};
}

/// What a parameter does to the current attribute: it keeps these bits and sets those.
struct Change {
    Packed kept = ~Packed{0};
    Packed set = 0;
};

constexpr Change setsFlag(std::int16_t flag) { return {.set = pack({flag, 0, 0})}; }
constexpr Change clearsFlags(std::int16_t flags) { return {.kept = ~pack({flags, 0, 0})}; }
constexpr Change setsFg(std::int16_t index) {
    return {.kept = ~pack({0, -1, 0}), .set = pack({0, index, 0})};
}
constexpr Change setsBg(std::int16_t index) {
    return {.kept = ~pack({0, 0, -1}), .set = pack({0, 0, index})};
}

/// By parameter; those that are not named, and all that lie beyond, change nothing.
constexpr auto changes = [] {
    std::array<Change, 50> all{};
    all[0] = {.kept = pack({attrFlag::shiftOut, 0, 0}), .set = pack(defaultAttrTriple)};
    all[1] = setsFlag(attrFlag::bold);
    all[4] = setsFlag(attrFlag::underline);
    all[blinkOn] = setsFlag(attrFlag::blink);
    all[7] = setsFlag(attrFlag::reverse);
    all[8] = setsFlag(attrFlag::invisible);
    all[22] = clearsFlags(-1);  // every flag, shift-out included
    all[24] = clearsFlags(attrFlag::underline);
    all[25] = clearsFlags(attrFlag::blink);
    all[27] = clearsFlags(attrFlag::blink | attrFlag::reverse);
    all[28] = clearsFlags(attrFlag::invisible);
    for (std::int16_t index = 0; index < 8; ++index) {
        all[30 + static_cast<std::size_t>(index)] = setsFg(index);
        all[40 + static_cast<std::size_t>(index)] = setsBg(index);
    }
    all[39] = setsFg(defaultAttrTriple.fg);
    all[49] = setsBg(defaultAttrTriple.bg);
    return all;
}();

Packed changed(Packed attr, std::int16_t parameter) {
    const auto number = static_cast<std::size_t>(parameter);  // none is negative
    if (number >= changes.size()) return attr;
    return (attr & changes[number].kept) | changes[number].set;
}

/// Registers the timer of blinking text. It is never removed: clearing the flag stops nothing.
void startTextBlink() { addTimer(timerRepeated, timerAction::blinkText, textBlinkPeriod); }

}  // namespace

void selectGraphicRendition(std::span<const std::int16_t> parameters) {
    flushBuf();
    Packed attr = pack({curAttr, curFg, curBg});
    if (parameters.empty()) attr = changed(attr, 0);
    for (const std::int16_t parameter : parameters) {
        attr = changed(attr, parameter);
        if (parameter == blinkOn) [[unlikely]] {
            setCurrentAttr(unpack(attr));
            startTextBlink();
        }
    }
    setCurrentAttr(unpack(attr));
    currentAttrChanged();
}

}  // namespace qxterm
