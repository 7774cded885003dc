#include "platform/program.h"

namespace qxterm::program {

const char* separatorBehind(std::string_view folder) { return folder.ends_with('\\') ? "" : "\\"; }

std::string fileIn(std::string_view folder, std::string_view file) {
    return std::string{folder}.append(separatorBehind(folder)).append(file);
}

}  // namespace qxterm::program
