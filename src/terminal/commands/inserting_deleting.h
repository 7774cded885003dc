#pragma once

#include <cstdint>
#include <string_view>

#include "terminal/commands/sequence.h"

/// Inserting and deleting characters and lines.
namespace qxterm {

/// Inserts text at the cursor, shifting the rest of the line right; the inserted cells take the word. Reports
/// as "insChars".
void insChars(std::string_view text, std::int16_t count, std::int16_t word);
/// Deletes count characters at the cursor, shifting the rest left and blanking the freed cells. Reports as
/// "delChars".
void delChars(std::int16_t count);

void insertCharacters(const Parameters& parameters);  ///< @
void deleteCharacters(const Parameters& parameters);  ///< P
/// L: blank lines at the cursor's row; nothing while the cursor stands outside the region. Inserting the
/// whole rest of the region changes no line.
void insertLines(const Parameters& parameters);
/// M: lines at the cursor's row, at most one less than the rest of the region; nothing outside the region.
void deleteLines(const Parameters& parameters);

}  // namespace qxterm
