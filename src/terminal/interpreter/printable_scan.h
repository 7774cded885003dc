#pragma once

#include <cstddef>

namespace qxterm {

/// True for the bytes that are collected and shown: 32 to 254.
[[nodiscard]] constexpr bool isPrintable(unsigned char byte) { return byte >= 32 && byte != 255; }

/// Number of printable bytes at the beginning of a text: the length of the run that is stored at once. Looks
/// at eight bytes at a time.
[[nodiscard]] std::size_t printableRun(const char* text, std::size_t length);
/// The same byte by byte: what printableRun is compared with in the tests.
[[nodiscard]] std::size_t printableRunPlain(const char* text, std::size_t length);

}  // namespace qxterm
