#include "command_line.h"

#include <charconv>
#include <string_view>

namespace qxterm::scenario {
namespace {

/// FIRST-LAST, either of which may be left out; or one number.
bool readRange(std::string_view text, BlockRange& range) {
    const auto number = [](std::string_view part, std::size_t& value) {
        if (part.empty()) return true;
        const auto [stop, error] = std::from_chars(part.data(), part.data() + part.size(), value);
        return error == std::errc{} && stop == part.data() + part.size() && value > 0;
    };
    const std::size_t dash = text.find('-');
    if (dash == std::string_view::npos) {
        if (text.empty() || !number(text, range.first)) return false;
        range.last = range.first;
        return true;
    }
    return text.size() > 1 && number(text.substr(0, dash), range.first) &&
           number(text.substr(dash + 1), range.last) && range.first <= range.last;
}

bool readFormats(std::string_view text, PictureFormats& formats) {
    formats = {};
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find(','));
        text.remove_prefix(std::min(word.size() + 1, text.size()));
        if (word == "text") {
            formats.text = true;
        } else if (word == "svg") {
            formats.svg = true;
        } else {
            return false;
        }
    }
    return formats.text || formats.svg;
}

/// One option with its value. False when it is wrong, which `complaint` says.
bool readOption(const std::string& option, const std::string& value, ReplayOrder& order,
                std::string& complaint) {
    if (option == "--pictures") {
        order.pictures = value;
    } else if (option == "--format") {
        if (!readFormats(value, order.formats)) complaint = "--format: text, svg or text,svg is expected";
    } else if (option == "--blocks") {
        if (!readRange(value, order.blocks)) complaint = "--blocks: FIRST-LAST is expected, numbers from 1";
    } else {
        complaint = "unknown option: " + option;
    }
    return complaint.empty();
}

CommandLine readReplay(const std::vector<std::string>& words) {
    CommandLine line;
    line.task = CommandLine::Task::replay;
    line.order.formats.svg = true;
    if (words.size() < 2 || words[1].empty()) {
        line.complaint = "--replay: the log's name is missing";
        return line;
    }
    line.order.log = words[1];
    bool forPictures = false;
    for (std::size_t n = 2; n < words.size(); n += 2) {
        if (n + 1 == words.size() || words[n + 1].empty()) {
            line.complaint = words[n] + ": a value is missing";
            return line;
        }
        forPictures = forPictures || words[n] != "--pictures";
        if (!readOption(words[n], words[n + 1], line.order, line.complaint)) return line;
    }
    if (forPictures && line.order.pictures.empty()) {
        line.complaint = "--format and --blocks belong to --pictures FOLDER";
    }
    return line;
}

}  // namespace

const char* const usage =
    "qxterm-scenario [--lines] [FILE ...]\n"
    "    Plays scenarios, from standard input when no file is named, and prints what the program did.\n"
    "    --lines             tells each line before it is carried out\n"
    "\n"
    "qxterm-scenario --replay LOG\n"
    "    Turns a trace log of the program (output.txt) into a scenario, and prints it. LOG - is standard "
    "input.\n"
    "\n"
    "qxterm-scenario --replay LOG --pictures FOLDER [--format FORMAT] [--blocks FIRST-LAST]\n"
    "    Plays that scenario and writes the window after each received block: numbered files and a page that "
    "shows\n"
    "    them, index.html. The folder is made, or must be empty.\n"
    "    --format FORMAT     svg (when not given), text, or text,svg\n"
    "    --blocks FIRST-LAST pictures of these blocks only; FIRST- and -LAST do too\n"
    "\n"
    "qxterm-scenario --help\n"
    "\n"
    "A trace log holds all that was typed, passwords too, and so do scenarios that are made from it.\n"
    "Exit status: 0; 2 when a line, a file or the command line is wrong.\n";

CommandLine readCommandLine(const std::vector<std::string>& words) {
    if (!words.empty() && words.front() == "--help") {
        CommandLine line;
        line.task = CommandLine::Task::help;
        return line;
    }
    if (!words.empty() && words.front() == "--replay") return readReplay(words);
    CommandLine line;
    line.files = words;
    if (!words.empty() && words.front() == "--lines") {
        line.lines = Lines::told;
        line.files.erase(line.files.begin());
    }
    return line;
}

}  // namespace qxterm::scenario
