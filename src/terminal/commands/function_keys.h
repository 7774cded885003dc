#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "terminal/commands/sequence.h"
#include "terminal/drawing/screen_controls.h"

namespace qxterm {

inline constexpr std::size_t labelLength = 16;  ///< two lines of 8 characters
inline constexpr std::size_t labelBanks = 2;

using KeyLabels = std::array<std::array<char, labelLength>, functionKeyCount>;
using KeyStrings = std::array<std::string, functionKeyCount>;

/// Labels and strings of the two banks; element n - 1 belongs to key n.
extern std::array<KeyLabels, labelBanks> fkeyLabels;
extern std::array<KeyStrings, labelBanks> fkeyStrings;
/// The bank that F1 to F8 send from, 0 or 1. Set by the host's select command only.
extern std::int16_t fkeyBank;

/// Default labels and strings in both banks, bank 0 selected, bar hidden. Called by main.
void initFunctionKeys();
/// The function-key part of a reset: default labels in bank 0, bank 1 on the buttons (which shows the bar),
/// default strings in both banks.
void resetFunctionKeys();

/// Puts a bank's labels on the buttons and shows the bar. Error 9 for another bank than 0 and 1.
void showKeyLabels(std::int16_t bank);
/// Sets or clears the bar's bit of the mode word. The window follows with layOutKeyBar.
void showKeyBar();
void hideKeyBar();
/// Lays the window out again when what it shows differs from the bar's bit; called at the end of a block,
/// before the interpreter yields, and by whoever changes the bit elsewhere. A host that shows and hides the
/// bar thousands of times in one block so costs one layout.
void layOutKeyBar();
void selectLabelBank(const Parameters& parameters);  ///< p
void programFunctionKey(HostInput& input);           ///< q

}  // namespace qxterm
