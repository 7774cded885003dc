#pragma once

#include "platform/win32/connection.h"

namespace qxterm::win32 {

/// Bytes that one read takes from the system, at most.
inline constexpr std::size_t longestRead = std::size_t{64} * 1024;

/// Finds out what this system tells of an urgent byte that is only announced. Called when the connection
/// stands, before anything is read.
void learnAboutUrgentBytes(Connection& connection);

/// Appends to what has been received what one read returns, without the Synchs, and an urgent byte that
/// stands before or behind it. Returns as recv does; the number is that of the stream's bytes.
int readStream(Connection& connection);

}  // namespace qxterm::win32
