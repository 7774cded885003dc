#include "terminal/graphic_rendition.h"

#include <cstdint>

#include "terminal/attributes.h"
#include "terminal/scrolling.h"
#include "terminal/sequence_parser.h"
#include "timers/timer_registry.h"

namespace qxterm {
namespace {

constexpr std::int16_t textBlinkPeriod = 500;  // ms

void setFlag(std::int16_t flag) { curAttr = static_cast<std::int16_t>(curAttr | flag); }
void clearFlags(std::int16_t flags) { curAttr = static_cast<std::int16_t>(curAttr & ~flags); }

void apply(std::int16_t parameter) {
    switch (parameter) {
        case 0: {
            const auto shiftOut = static_cast<std::int16_t>(curAttr & attrFlag::shiftOut);
            setCurrentAttr(defaultAttrTriple);
            setFlag(shiftOut);
            break;
        }
        case 1: setFlag(attrFlag::bold); break;
        case 4: setFlag(attrFlag::underline); break;
        case 5:
            setFlag(attrFlag::blink);
            addTimer(timerRepeated, timerAction::blinkText,
                     textBlinkPeriod);  // never removed: clearing the flag stops nothing
            break;
        case 7: setFlag(attrFlag::reverse); break;
        case 8: setFlag(attrFlag::invisible); break;
        case 22: curAttr = 0; break;  // every flag, shift-out included
        case 24: clearFlags(attrFlag::underline); break;
        case 25: clearFlags(attrFlag::blink); break;
        case 27: clearFlags(attrFlag::blink | attrFlag::reverse); break;
        case 28: clearFlags(attrFlag::invisible); break;
        case 39: curFg = defaultAttrTriple.fg; break;
        case 49: curBg = defaultAttrTriple.bg; break;
        default: {
            const int tens = parameter / 10;
            const int index = parameter % 10;
            if ((tens != 3 && tens != 4) || index > 7) break;
            (tens == 3 ? curFg : curBg) = static_cast<std::int16_t>(index);
            break;
        }
    }
}

}  // namespace

void selectGraphicRendition() {
    flushBuf();
    if (escParams.empty()) escParams.push_back(0);
    for (const std::int16_t parameter : escParams) apply(parameter);
    doAttr(curAttr, curFg, curBg);
}

}  // namespace qxterm
