#!/usr/bin/env python3
"""Brings the loopback of a new network up, then becomes the command that its arguments name.

`ip link set lo up` by hand: the package that `ip` comes with is not on every machine.
"""

import fcntl
import os
import socket
import struct
import sys

SIOCGIFFLAGS, SIOCSIFFLAGS, IFF_UP = 0x8913, 0x8914, 1  # <linux/sockios.h>, <net/if.h>
REQUEST = "16sH22x"  # struct ifreq: the interface's name, its flags

with socket.socket() as any_socket:
    request = fcntl.ioctl(any_socket, SIOCGIFFLAGS, struct.pack(REQUEST, b"lo", 0))
    flags = struct.unpack(REQUEST, request)[1]
    fcntl.ioctl(any_socket, SIOCSIFFLAGS, struct.pack(REQUEST, b"lo", flags | IFF_UP))
os.execvp(sys.argv[1], sys.argv[1:])
