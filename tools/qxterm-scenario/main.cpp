// qxterm-scenario [FILE ...]: plays scenarios, from standard input when no file is named.

#include <string>
#include <vector>

#include "player.h"

int main(int argc, char** argv) { return qxterm::scenario::play({argv + 1, argv + argc}); }
