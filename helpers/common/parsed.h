#pragma once

#include <string>

namespace zpt {

/// A command line that was read, or the reason why it cannot be, as a phrase for standard error.
template <class Request>
struct Parsed {
    Request request{};
    std::string complaint;
    [[nodiscard]] bool good() const { return complaint.empty(); }
};

}  // namespace zpt
