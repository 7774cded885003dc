#pragma once

#include <cstddef>
#include <string>

namespace qxterm::bench {

/// What a full-screen application sends: now and then a whole screen with a frame of line-drawing characters,
/// a title, a table and a key line; in between rows of the table that change, a clock, a reverse-video
/// selection that moves, inserted and deleted lines, and typing into a field.
[[nodiscard]] std::string applicationScreens(std::size_t size);

}  // namespace qxterm::bench
