#include "script.h"

#include <fstream>
#include <iostream>
#include <iterator>

#include "output.h"

namespace qxterm::scenario {
namespace {

constexpr const char* standardInput = "<stdin>";

bool saysNothing(const std::string& line) {
    for (const char c : line) {
        if (!isBlank(c)) return c == '#';
    }
    return true;
}

}  // namespace

Script::Script(std::vector<std::string> files) : files_{std::move(files)} {
    if (files_.empty()) files_.emplace_back(standardInput);
}

bool Script::openNext() {
    if (nextFile_ == files_.size()) return false;
    name_ = files_[nextFile_++];
    position_ = 0;
    line_ = 0;
    content_.clear();
    fromInput_ = name_ == standardInput;
    if (fromInput_) return true;
    std::ifstream file{name_, std::ios::binary};
    content_.assign(std::istreambuf_iterator<char>{file}, {});
    if (!file.is_open() || file.bad()) throw ScriptFault{"the file cannot be read", name_};
    return true;
}

bool Script::takeLine(std::string& line) {
    if (fromInput_) {
        // Whoever writes the lines may wait for what the last one has printed. What is lost is told at the
        // end.
        (void)flushOutput();
        fromInput_ = static_cast<bool>(std::getline(std::cin, line));
        return fromInput_;
    }
    if (position_ >= content_.size()) return false;
    std::size_t end = content_.find('\n', position_);
    if (end == std::string::npos) end = content_.size();
    line.assign(content_, position_, end - position_);
    position_ = end + 1;
    return true;
}

bool Script::next(std::string& line) {
    do {
        while (!takeLine(line)) {
            if (!openNext()) return false;
        }
        if (!line.empty() && line.back() == '\r') line.pop_back();
        ++line_;
    } while (saysNothing(line));
    return true;
}

}  // namespace qxterm::scenario
