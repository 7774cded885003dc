#include "zpt_ssh/last_words.h"

namespace zpt {
namespace {

bool blank(std::string_view text) { return text.find_first_not_of(' ') == std::string_view::npos; }

}  // namespace

void LastWords::feed(std::string_view text) {
    for (const char c : text) {
        if (c == '\n' || c == '\r') {
            if (!blank(current_)) last_ = current_;
            current_.clear();
        } else if (static_cast<unsigned char>(c) >= ' ' && current_.size() < longestLine) {
            current_ += c;
        }
    }
}

std::string LastWords::line() const { return blank(current_) ? last_ : current_; }

}  // namespace zpt
