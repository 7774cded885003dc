#pragma once

#include <string>
#include <string_view>

namespace qxterm::program {

/// The folder that holds the program file; a trailing backslash only for a drive's root.
[[nodiscard]] std::string folder();
/// What stands between a folder and a file in it: a backslash, or nothing when the folder ends in one.
[[nodiscard]] const char* separatorBehind(std::string_view folder);
/// The full name of a file in a folder, with or without a backslash at the folder's end; of the folder
/// itself, with that backslash, when the file is empty.
[[nodiscard]] std::string fileIn(std::string_view folder, std::string_view file);
/// The command-line text behind the program's name, leading and trailing blanks removed.
[[nodiscard]] std::string commandLine();
/// Ends the program without a window (a failed start-up).
void end();

/// Appends the text and CR LF to "output.txt" in the current directory. Error 70, 75 or 76 when it cannot be
/// written.
void appendTrace(std::string_view line);

}  // namespace qxterm::program
