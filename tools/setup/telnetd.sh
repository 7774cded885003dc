#!/usr/bin/env bash
# Prints the path of a telnet daemon for tests: the one that is installed, or one taken out of its Debian package
# into build/telnetd. It is not installed, because that would open this machine's telnet port.
set -euo pipefail

builds=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)/build
unpacked=$builds/telnetd

for daemon in /usr/sbin/in.telnetd "$unpacked/usr/sbin/in.telnetd"; do
    if [[ -x $daemon ]]; then
        echo "$daemon"
        exit 0
    fi
done

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
apt-get -qq -o APT::Sandbox::User=root download telnetd-ssl >&2
mkdir -p "$unpacked"
dpkg -x telnetd-ssl_*.deb "$unpacked"
echo "$unpacked/usr/sbin/in.telnetd"
