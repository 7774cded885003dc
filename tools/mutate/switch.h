#pragma once

// Included before everything else in a build that holds many mutants at once: QXTERM_MUTANT names the one
// that is on. With QXTERM_MUTANTS_REACHED=FILE none is, and byte n of that file becomes 1 when the place of
// mutant n is reached.

extern "C" int mutantChosen;
extern "C" bool mutantReached(int number);

[[nodiscard]] constexpr bool mutantOn(int number) {
    if (__builtin_is_constant_evaluated()) return false;
    if (mutantChosen == number) return true;
    return mutantChosen < 0 && mutantReached(number);
}
