#pragma once

#include <string>

#include "replay_pictures.h"

namespace qxterm::scenario {

/// What is made of a log.
struct ReplayOrder {
    std::string log;       ///< a file; "-" is standard input
    std::string pictures;  ///< a folder; empty: the scenario is printed
    PictureFormats formats;
    BlockRange blocks;
};

/// Prints the scenario, or plays it and writes pictures. Returns the exit status: 0, or 2 when the log cannot
/// be read, is no trace log, or something cannot be written, which is told on standard error.
int replay(const ReplayOrder& order);

}  // namespace qxterm::scenario
