#include "common/quoting.h"

namespace zpt {

std::string quoted(std::string_view argument) {
    if (!argument.empty() && argument.find_first_of(" \t\n\v\"") == std::string_view::npos) {
        return std::string{argument};
    }
    std::string result = "\"";
    std::size_t backslashes = 0;
    for (const char c : argument) {
        if (c == '\\') {
            ++backslashes;
            continue;
        }
        // Only in front of a quotation mark does a backslash stand for more than itself.
        result.append(c == '"' ? backslashes * 2 + 1 : backslashes, '\\');
        backslashes = 0;
        result += c;
    }
    result.append(backslashes * 2, '\\');
    result += '"';
    return result;
}

std::string commandLine(std::string_view program, const std::vector<std::string>& arguments) {
    std::string line = quoted(program);
    for (const std::string& argument : arguments) line += ' ' + quoted(argument);
    return line;
}

}  // namespace zpt
