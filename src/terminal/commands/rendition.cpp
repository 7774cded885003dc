#include "terminal/commands/rendition.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include "terminal/commands/pending_run.h"
#include "terminal/drawing/text_look.h"
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

/// What the parameters do to the current attribute: each keeps some of its bits and sets others.
struct Changes {
    std::array<Packed, 50> kept{};
    std::array<Packed, 50> set{};

    constexpr void keepAndSet(int parameter, Packed keptBits, Packed setBits) {
        kept[static_cast<std::size_t>(parameter)] = keptBits;
        set[static_cast<std::size_t>(parameter)] = setBits;
    }
    constexpr void setFlag(int parameter, std::int16_t flag) {
        keepAndSet(parameter, ~Packed{0}, pack({flag, 0, 0}));
    }
    constexpr void clearFlags(int parameter, std::int16_t flags) {
        keepAndSet(parameter, ~pack({flags, 0, 0}), 0);
    }
    constexpr void setFg(int parameter, std::int16_t index) {
        keepAndSet(parameter, ~pack({0, -1, 0}), pack({0, index, 0}));
    }
    constexpr void setBg(int parameter, std::int16_t index) {
        keepAndSet(parameter, ~pack({0, 0, -1}), pack({0, 0, index}));
    }
};

/// By parameter; those that are not named, and all that lie beyond, change nothing.
constexpr Changes changes = [] {
    Changes all;
    all.kept.fill(~Packed{0});
    all.keepAndSet(0, pack({attrFlag::shiftOut, 0, 0}), pack(defaultAttrTriple));
    all.setFlag(1, attrFlag::bold);
    all.setFlag(4, attrFlag::underline);
    all.setFlag(blinkOn, attrFlag::blink);
    all.setFlag(7, attrFlag::reverse);
    all.setFlag(8, attrFlag::invisible);
    all.clearFlags(22, -1);  // every flag, shift-out included
    all.clearFlags(24, attrFlag::underline);
    all.clearFlags(25, attrFlag::blink);
    all.clearFlags(27, attrFlag::blink | attrFlag::reverse);
    all.clearFlags(28, attrFlag::invisible);
    for (std::int16_t index = 0; index < 8; ++index) {
        all.setFg(30 + index, index);
        all.setBg(40 + index, index);
    }
    all.setFg(39, defaultAttrTriple.fg);
    all.setBg(49, defaultAttrTriple.bg);
    return all;
}();

Packed changed(Packed attr, std::size_t parameter) {
    if (parameter >= changes.set.size()) return attr;
    return (attr & changes.kept[parameter]) | changes.set[parameter];
}

/// Registers the timer of blinking text. It is never removed: clearing the flag stops nothing.
void startTextBlink() { addTimer(timerRepeated, timerAction::blinkText, textBlinkPeriod); }

void shift(bool out) {
    flushBuf();
    curAttr =
        static_cast<std::int16_t>(out ? (curAttr | attrFlag::shiftOut) : (curAttr & ~attrFlag::shiftOut));
}

}  // namespace

void shiftOut() { shift(true); }

void shiftIn() { shift(false); }

void selectGraphicRendition(const Parameters& parameters) {
    flushBuf();
    Packed attr = pack({curAttr, curFg, curBg});
    if (parameters.values().empty()) attr = changed(attr, 0);
    for (const std::int16_t value : parameters.values()) {
        const auto parameter = static_cast<std::size_t>(value);
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
