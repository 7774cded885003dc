#!/usr/bin/env bash
# Prints the path of a telnet daemon for tests: the one of Debian's package, taken out of it into build/telnetd. The
# package is not installed, because that would open this machine's telnet port.
set -euo pipefail

builds=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)/build
unpacked=$builds/telnetd
starter=$unpacked/start

if [[ -x $starter ]]; then
    echo "$starter"
    exit 0
fi

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
apt-get -qq -o APT::Sandbox::User=root download telnetd-ssl >&2
mkdir -p "$unpacked"
dpkg -x telnetd-ssl_*.deb "$unpacked"

# It refuses to start without a certificate, though it never shows it to a client that does not ask for it.
certificate=$unpacked/certificate.pem
openssl req -x509 -newkey rsa:2048 -nodes -days 3650 -subj /CN=localhost -keyout key.pem -out own.pem 2>openssl.log || {
    cat openssl.log >&2
    exit 1
}
cat key.pem own.pem >"$certificate"
chmod 600 "$certificate"

cat >start <<START
#!/bin/sh
exec $(printf %q "$unpacked/usr/sbin/in.telnetd") -z cert=$(printf %q "$certificate") -z key=$(printf %q "$certificate") "\$@"
START
chmod 755 start
mv start "$starter"
echo "$starter"
