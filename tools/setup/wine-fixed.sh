#!/bin/sh
# The Wine loader, which wine-env.sh names, with nothing at a random address. Wine needs a page at one certain address, and where
# the heap lies there already the program ends before it has begun: with status 1, without a word, one start in eight thousand.
exec setarch -R "$WINE_LOADER" "$@"
