#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "line_source.h"
#include "platform/headless/recorder.h"

namespace qxterm::scenario {

/// Whether each line is told before it is carried out, so that one can see which line printed what.
enum class Lines { untold, told };

/// Plays the files one after another in one program. Returns the exit status: 0 at the end of the scenario, 2
/// after a line that could not be carried out, which is told on standard error.
int play(std::vector<std::string> files, Lines lines);

/// Plays the lines of any source and prints nothing; what the program does goes to the sink.
int playQuietly(LineSource& source, headless::Sink sink);

/// Queues a command that was read for a yield to come; each yield that the interpreter makes carries one out.
void queueForYield(std::string_view line);

}  // namespace qxterm::scenario
