#pragma once

#include <cstdint>
#include <functional>
#include <span>

namespace zpt {

/// What stands for a process that the system does not tell.
constexpr std::uint32_t unknownProcess = 0;

/// Whether who answers at an address may be taken for the client. owners: the processes that listen there, by
/// their identifiers; there must be one, and none of them a stranger, for the system decides who of them
/// answers. One that the system does not tell is none. ofClient: whether a process is the client or something
/// that it started.
[[nodiscard]] bool clientAnswers(std::span<const std::uint32_t> owners,
                                 const std::function<bool(std::uint32_t)>& ofClient);

}  // namespace zpt
