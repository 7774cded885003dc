#include "terminal/control_sequences.h"

#include <algorithm>
#include <array>

#include "diag/checked.h"
#include "diag/error_trap.h"
#include "terminal/attributes.h"
#include "terminal/cursor_commands.h"
#include "terminal/function_keys.h"
#include "terminal/graphic_rendition.h"
#include "terminal/interpreter_state.h"
#include "terminal/line_commands.h"
#include "terminal/mode_commands.h"
#include "terminal/screen_operations.h"
#include "terminal/scrolling.h"
#include "terminal/sequence_parser.h"

namespace qxterm {
namespace {

SequenceParser parser;

enum class Outcome : std::uint8_t { done, unfinished, unknown };

/// Parameter 1, or the default when there is none.
std::int16_t first(std::int16_t fallback) { return escParams.empty() ? fallback : escParams[0]; }

void eraseInDisplay() {
    flushBuf();
    const std::int16_t what = first(0);
    if (what == 1) scrErase(0, lastColumn, 0, curRow);
    if (what == 0 || what == 1) scrErase(curCol, lastColumn, curRow, curRow);
    if (what == 0) scrErase(0, lastColumn, curRow + 1, pageRows - 1);
    if (what == 2) scrErase(0, lastColumn, 0, pageRows - 1);
}

void eraseInLine() {
    flushBuf();
    switch (first(0)) {
        case 0: scrErase(curCol, lastColumn, curRow, curRow); break;
        case 1: scrErase(0, curCol, curRow, curRow); break;
        case 2: scrErase(0, lastColumn, curRow, curRow); break;
        default: break;
    }
}

void selectLabelBank() {
    const std::int16_t bank = first(0);
    if (bank == 0 || bank == 1) {
        showKeyLabels(bank);
        fkeyBank = bank;
    } else if (bank == 2) {
        hideKeyBar();
    }
}

void insertCharacters() {
    flushBuf();
    const auto count = toInt16(std::min<std::int32_t>(first(1), screenColumns - curCol));
    static constexpr auto blanks = [] {
        std::array<char, screenColumns + 1> all{};
        all.fill(' ');
        return all;
    }();
    insChars({blanks.data(), static_cast<std::size_t>(std::clamp<std::int32_t>(count, 0, screenColumns))},
             count, defaultAttr);
}

/// Function-key programming: label and string stand behind the final character.
Outcome programFunctionKey(Interpretation& input) {
    escParams.resize(std::max<std::size_t>(escParams.size(), 4), 0);
    const std::int16_t key = escParams[0];
    if (key < 1 || key > static_cast<std::int16_t>(functionKeyCount)) return Outcome::done;
    const auto announced = static_cast<std::size_t>(escParams[1]);
    const auto behind = static_cast<std::size_t>(input.position);
    if (input.data.size() - behind < labelLength + announced) return Outcome::unfinished;
    input.position += static_cast<std::int32_t>(labelLength + announced);
    programKey(key, escParams[2], input.data.substr(behind, labelLength),
               input.data.substr(behind + labelLength, announced));
    return Outcome::done;
}

/// Repeats the last character. The loop counts the interpreter's own position, which so ends up at the count
/// plus one: bytes before are read again, bytes in between are skipped.
void repeatCharacter(Interpretation& input) {
    const std::int32_t count = first(1);
    const std::int32_t ownFinal = input.position;
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
    if (position < ownFinal) {
        // One place of a block sends the interpreter back once, or it would meet itself for ever.
        if (input.repeatedAt.empty()) input.repeatedAt.resize(input.data.size() + 1);
        const auto place = static_cast<std::size_t>(ownFinal);
        if (input.repeatedAt[place]) return;
        input.repeatedAt[place] = true;
        input.wentBack = true;
    }
    input.position = position;
}

Outcome dispatch(Interpretation& input, char final) {
    switch (final) {
        case 'H':
        case 'f': cursorPosition(escParams); break;
        case 'r': setRegion(); break;
        case 'J': eraseInDisplay(); break;
        case 'K': eraseInLine(); break;
        case 'A': cursorUp(); break;
        case 'B': cursorDown(); break;
        case 'C': cursorForward(); break;
        case 'D': cursorBack(); break;
        case 'L': insertLines(first(1)); break;
        case 'M': deleteLines(first(1)); break;
        case 'm': selectGraphicRendition(escParams); break;
        case 'h': changeModes(true); break;
        case 'l': changeModes(false); break;
        case 'p': selectLabelBank(); break;
        case 'q': return programFunctionKey(input);
        case 'x': toStatusRow(); break;
        case '@': insertCharacters(); break;
        case 'P':
            flushBuf();
            delChars(first(1));
            break;
        case 'b': repeatCharacter(input); break;
        case 'Z': backTab(); break;
        default: return Outcome::unknown;
    }
    return Outcome::done;
}

}  // namespace

std::size_t doOrdinarySequence(std::string_view data, std::size_t introducer) {
    std::size_t at = introducer + 1;
    if (at == data.size() || data[at] != '[' || detail::faultPlanned) return introducer;
    OrdinaryParameters parameters;
    if (!parameters.read(data, ++at)) return introducer;
    const char final = data[at];
    if (final != 'H' && final != 'm') return introducer;
    trapped("doEscBracket", [&] {
        final == 'H' ? cursorPosition(parameters.values()) : selectGraphicRendition(parameters.values());
    });
    return at + 1;
}

bool doEscBracket(Interpretation& input) {
    bool carried = false;
    ErrorTrap trap{"doEscBracket"};
    trap.run([&] {
        const std::int32_t introducer = input.position - 1;
        auto at = static_cast<std::size_t>(input.position);
        const bool resume = input.resumed && introducer == 1;
        input.resumed = false;
        if (resume) {
            at = parser.readSoFar();
        } else {
            parser.start();
        }
        bool complete = false;
        try {
            complete = parser.readParameters(input.data, at);
        } catch (const RunTimeError&) {
            input.position = static_cast<std::int32_t>(at) + 1;
            throw;
        }
        parser.setReadSoFar(at + 1 - static_cast<std::size_t>(introducer));
        input.position = static_cast<std::int32_t>(at) + 1;
        const Outcome outcome = complete ? dispatch(input, input.data[at]) : Outcome::unfinished;
        if (outcome == Outcome::done) return;
        if (outcome == Outcome::unfinished) input.position = input.length() + 1;
        trap.step([&] {
            if (std::min(input.position, input.length()) - introducer + 1 > longestCarry)
                throw RunTimeError{errors::outOfMemory};
        });
        carried = true;
    });
    return carried;
}

}  // namespace qxterm
