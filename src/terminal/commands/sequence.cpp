#include "terminal/commands/sequence.h"

namespace qxterm {

void Parameters::addToMany(std::int16_t value) {
    if (count_ == few_.size()) many_.assign(few_.begin(), few_.end());
    many_.push_back(value);
    ++count_;
}

}  // namespace qxterm
