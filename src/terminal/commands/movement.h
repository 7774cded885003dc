#pragma once

#include "terminal/commands/sequence.h"

/// Cursor motion. Each stores and draws what is pending first; carriage return only stores it.
namespace qxterm {

/// BS: one column left, not below 0. Reports as "cursorLeft".
void cursorLeft();
void horizontalTab();   ///< HT
void returnCarriage();  ///< CR

void cursorPosition(const Parameters& parameters);  ///< H, f
void cursorUp(const Parameters& parameters);        ///< A
void cursorDown(const Parameters& parameters);      ///< B
void cursorForward(const Parameters& parameters);   ///< C
void cursorBack(const Parameters& parameters);      ///< D
void backTab(const Parameters& parameters);         ///< Z; error 6 when the count times 8 leaves 16 bits

}  // namespace qxterm
