#include "zpt_ssh/port_owners.h"

#include <algorithm>

namespace zpt {

bool clientAnswers(std::span<const std::uint32_t> owners,
                   const std::function<bool(std::uint32_t)>& ofClient) {
    return !owners.empty() && std::ranges::all_of(owners, [&](std::uint32_t owner) {
        return owner == unknownProcess || ofClient(owner);
    });
}

}  // namespace zpt
