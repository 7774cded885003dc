#pragma once

// The one place of the helpers that includes the system's headers, so that all files see them in the same
// order and shape.

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif

#include <winsock2.h>

#include <ws2tcpip.h>

#include <windows.h>
