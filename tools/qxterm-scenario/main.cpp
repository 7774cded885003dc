// qxterm-scenario: plays scenarios, and turns trace logs into scenarios and pictures.

#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "command_line.h"
#include "player.h"
#include "replay_run.h"

int main(int argc, char** argv) {
    using qxterm::scenario::CommandLine;
    CommandLine line = qxterm::scenario::readCommandLine({argv + 1, argv + argc});
    if (!line.complaint.empty()) {
        std::cerr << line.complaint << "; qxterm-scenario --help tells what there is\n";
        return 2;
    }
    switch (line.task) {
        case CommandLine::Task::help: std::cout << qxterm::scenario::usage; return 0;
        case CommandLine::Task::replay: return qxterm::scenario::replay(line.order);
        default: return qxterm::scenario::play(std::move(line.files), line.lines);
    }
}
