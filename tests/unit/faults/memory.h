#pragma once

#include <cstdint>
#include <string_view>

/// Makes the system refuse memory: the unit tests' own operator new asks here.
namespace qxterm::test {

/// From now on counts requests for memory. Behind so many of them so many fail, then all is given again.
void planShortage(std::uint64_t after, std::uint64_t count);
/// No more fail. Returns how many have been made since the plan.
std::uint64_t endShortage();
/// How many have failed since the plan.
[[nodiscard]] std::uint64_t refusedRequests();

/// From now on looks at what is given back, of the pieces that were asked for since: whether this text is in
/// it.
void watchReturned(std::string_view text);
/// No more. Returns how many pieces held the text when they were given back.
std::uint64_t endWatch();

}  // namespace qxterm::test
