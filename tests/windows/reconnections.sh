#!/usr/bin/env bash
# Fifty sessions one after another in the real window, over a serial line and over the SSH bridge.
exec python3 "${BASH_SOURCE[0]%.sh}.py"
