#include "platform/program.h"

namespace qxterm::program {

std::string fileIn(std::string_view folder, std::string_view file) {
    std::string name{folder};
    if (!folder.ends_with('\\')) name += '\\';
    return name += file;
}

}  // namespace qxterm::program
