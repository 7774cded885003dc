#include "terminal/interpreter/sequence_tables.h"

#include <array>
#include <span>

#include "terminal/commands/bell.h"
#include "terminal/commands/erasing.h"
#include "terminal/commands/function_keys.h"
#include "terminal/commands/ignored.h"
#include "terminal/commands/inserting_deleting.h"
#include "terminal/commands/modes.h"
#include "terminal/commands/movement.h"
#include "terminal/commands/printing.h"
#include "terminal/commands/rendition.h"
#include "terminal/commands/reset.h"
#include "terminal/commands/saving.h"
#include "terminal/commands/scrolling.h"
#include "terminal/commands/status_row.h"

namespace qxterm {
namespace {

struct Row {
    unsigned char final;
    Verb verb;
};

constexpr std::array controls{
    Row{7, verb<ringBell>},         // BEL
    Row{8, verb<cursorLeft>},       // BS
    Row{9, verb<horizontalTab>},    // HT
    Row{10, verb<feedLine>},        // LF
    Row{13, verb<returnCarriage>},  // CR
    Row{14, verb<shiftOut>},        // SO
    Row{15, verb<shiftIn>},         // SI
};

/// Behind ESC; "[" begins a control sequence.
constexpr std::array escapeSequences{
    Row{'7', verb<saveCursor>},
    Row{'8', verb<restoreCursor>},
    Row{'D', verb<index>},
    Row{'E', verb<nextLine>},
    Row{'M', verb<reverseIndex>},
    Row{'c', verb<resetTerminal>},
    Row{'#', verb<fillOrLineSize>},
    Row{'(', verb<designateCharacterSet>},
    Row{')', verb<designateCharacterSet>},
    Row{'Q', verb<doNothing>},
    Row{'R', verb<doNothing>},
    Row{'=', verb<doNothing>},
    Row{'>', verb<doNothing>},
};

/// Behind ESC, "[" and the parameters.
constexpr std::array controlSequences{
    Row{'H', verb<cursorPosition>},   Row{'f', verb<cursorPosition>},
    Row{'A', verb<cursorUp>},         Row{'B', verb<cursorDown>},
    Row{'C', verb<cursorForward>},    Row{'D', verb<cursorBack>},
    Row{'Z', verb<backTab>},          Row{'x', verb<toStatusRow>},
    Row{'r', verb<setRegion>},        Row{'J', verb<eraseInDisplay>},
    Row{'K', verb<eraseInLine>},      Row{'@', verb<insertCharacters>},
    Row{'P', verb<deleteCharacters>}, Row{'L', verb<insertLines>},
    Row{'M', verb<deleteLines>},      Row{'m', verb<selectGraphicRendition>},
    Row{'h', verb<setModes>},         Row{'l', verb<resetModes>},
    Row{'p', verb<selectLabelBank>},  Row{'q', verb<programFunctionKey>},
    Row{'b', verb<repeatCharacter>},
};

using ByByte = std::array<Verb, 256>;

constexpr ByByte byByte(std::span<const Row> rows) {
    ByByte table{};
    for (const Row& row : rows) table[row.final] = row.verb;
    return table;
}

constexpr ByByte ofControls = byByte(controls);
constexpr ByByte ofEscapeSequences = byByte(escapeSequences);
constexpr ByByte ofControlSequences = byByte(controlSequences);

}  // namespace

Verb controlVerb(unsigned char byte) { return ofControls[byte]; }
Verb escapeVerb(unsigned char byte) { return ofEscapeSequences[byte]; }
Verb controlSequenceVerb(unsigned char final) { return ofControlSequences[final]; }

}  // namespace qxterm
