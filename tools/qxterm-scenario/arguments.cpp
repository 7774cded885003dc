#include "arguments.h"

#include <charconv>

#include "bytes.h"
#include "script.h"

namespace qxterm::scenario {

Arguments::Arguments(std::string_view line) : original_{line} {
    std::size_t first = 0;
    while (first < line.size() && isBlank(line[first])) ++first;
    std::size_t end = line.size();
    while (end > first && isBlank(line[end - 1])) --end;
    line_ = line.substr(first, end - first);
    place_ = first;
}

std::size_t Arguments::wordStart() const {
    std::size_t at = place_;
    while (at < original_.size() && isBlank(original_[at])) ++at;
    return at;
}

bool Arguments::more() const { return wordStart() < original_.size(); }

std::string_view Arguments::peek() const {
    const std::size_t first = wordStart();
    std::size_t end = first;
    while (end < original_.size() && !isBlank(original_[end])) ++end;
    return std::string_view{original_}.substr(first, end - first);
}

std::string Arguments::word(const char* what) {
    const std::string_view next = peek();
    if (next.empty()) throw ScriptFault{std::string{what} + " is missing"};
    place_ = wordStart() + next.size();
    return std::string{next};
}

std::int32_t Arguments::number(const char* what, std::int32_t smallest, std::int32_t largest) {
    const std::string text = word(what);
    std::int32_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stop != end || value < smallest || value > largest) {
        throw ScriptFault{std::string{what} + ": a number from " + std::to_string(smallest) + " to " +
                          std::to_string(largest) + " is expected, not " + text};
    }
    return value;
}

bool Arguments::onOff() {
    const std::string text = word("\"on\" or \"off\"");
    if (text != "on" && text != "off") throw ScriptFault{"\"on\" or \"off\" is expected, not " + text};
    return text == "on";
}

std::string Arguments::bytes() {
    std::string value = parseBytes(std::string_view{original_}.substr(place_));
    place_ = original_.size();
    return value;
}

std::string Arguments::text() {
    const std::size_t first = place_ < original_.size() ? place_ + 1 : place_;
    place_ = original_.size();
    return original_.substr(first);
}

void Arguments::end() const {
    if (more()) throw ScriptFault{"nothing more is expected: " + std::string{peek()}};
}

}  // namespace qxterm::scenario
