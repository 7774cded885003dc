#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace qxterm::scenario {

/// Objects keep their keys in the order in which they are set.
using Json = nlohmann::ordered_json;

/// A text of the program, one character a byte, as JSON knows it: bytes above 127 become the characters
/// U+0080 to U+00FF.
[[nodiscard]] std::string jsonText(std::string_view bytes);

/// Prints one object as one line, unless printing is switched off.
void print(const Json& object);
void setPrinting(bool on);
/// Hands what was printed to the system. False when standard output could not take all of it.
[[nodiscard]] bool flushOutput();

}  // namespace qxterm::scenario
