#pragma once

#include "platform/serial.h"
#include "platform/socket.h"

namespace qxterm {

/// The socket of network and SSH sessions.
extern Socket comnet2;
/// The port of serial and modem sessions.
extern SerialPort comser;

}  // namespace qxterm
