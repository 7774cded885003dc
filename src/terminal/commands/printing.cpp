#include "terminal/commands/printing.h"

#include <algorithm>
#include <cstring>

#include "diag/checked.h"
#include "terminal/commands/pending_run.h"
#include "terminal/commands/scrolling.h"
#include "terminal/model/output_state.h"

namespace qxterm {
namespace {

void keepLast(char c) {
    if (lastChar.size() == 1) {
        lastChar[0] = c;
    } else {
        lastChar.assign(1, c);
    }
}

/// Appends a run for which there is room.
void appendPending(std::string_view run) {
    const auto waiting = static_cast<std::size_t>(pendingCount);
    if (run.size() == 1) {  // frequent, and not worth a call
        pendingText[waiting] = run.front();
    } else {
        std::memcpy(pendingText.data() + waiting, run.data(), run.size());
    }
    pendingCount = static_cast<std::int16_t>(waiting + run.size());
}

/// A run that comes to the right edge, or does not begin within the line.
[[gnu::noinline]] void acceptAtEdge(std::string_view run) {
    while (!run.empty()) {
        if (curCol + pendingCount >= screenColumns && !modeSet(mode::wrapDisabled)) {
            putBuf();
            curCol = 0;
            lineFeed();
        }
        if (curCol + pendingCount >= screenColumns) {
            flushBuf();
            --curCol;  // the character overwrites the last column
        }
        const auto room = static_cast<std::size_t>(std::max(screenColumns - curCol - pendingCount, 1));
        const std::size_t count = std::min(room, run.size());
        (void)subscript(static_cast<std::int64_t>(pendingCount) + static_cast<std::int64_t>(count), 0,
                        pendingCapacity);
        appendPending(run.substr(0, count));
        run.remove_prefix(count);
    }
}

}  // namespace

void acceptPrintable(std::string_view run) {
    keepLast(run.back());
    // A cursor left of the line is no place within it, and makes this a large number.
    const auto taken = static_cast<std::uint32_t>(curCol + pendingCount);
    if (curCol >= 0 && taken + run.size() <= screenColumns) [[likely]] {
        appendPending(run);
    } else {
        acceptAtEdge(run);
    }
}

bool acceptLine(std::string_view run) {
    if (!storeAtOnce(run)) return false;
    curCol = 0;
    keepLast(run.back());
    lineFeed();
    return true;
}

/// The loop counts the interpreter's own position, which so ends up at the count: bytes before are read
/// again, bytes in between are skipped.
void repeatCharacter(HostInput& input) {
    const std::int32_t count = input.parameters.valueOr(1, 1);
    const std::size_t ownEnd = input.position;
    std::int32_t position = 1;
    for (; position <= count; ++position) {
        if (curCol + pendingCount >= screenColumns) break;
        if (lastChar.empty()) {
            position = count + 1;
            break;
        }
        pendingText[subscript(pendingCount, 0, pendingCapacity - 1)] = lastChar[0];
        ++pendingCount;
    }
    const auto place = static_cast<std::size_t>(position);
    if (place < ownEnd) {
        // One place of a block sends the interpreter back once, or it would meet itself for ever.
        if (input.repeatedAt.empty()) input.repeatedAt.resize(input.data.size() + 1);
        if (input.repeatedAt[ownEnd]) return;
        input.repeatedAt[ownEnd] = true;
        input.yields = true;
    }
    input.position = place;
}

}  // namespace qxterm
