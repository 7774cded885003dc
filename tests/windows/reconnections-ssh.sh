#!/usr/bin/env bash
# Fifty sessions one after another in the real window, over the SSH bridge.
exec python3 "$(dirname "${BASH_SOURCE[0]}")/reconnections.py" sshBridge
